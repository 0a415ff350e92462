#include "platform/x11/X11Connection.h"

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace randblatt {

namespace {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

constexpr quint32 longestProperty = 4096;

quintptr resource(const char *name)
{
    return reinterpret_cast<quintptr>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration(name));
}

QList<quint32> read(xcb_connection_t *xcb, xcb_get_property_cookie_t cookie)
{
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

} // namespace

X11Connection::X11Connection()
    : m_xcb(qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection())
    , m_root(static_cast<xcb_window_t>(resource("rootwindow")))
    , m_screenNumber(static_cast<int>(resource("x11screen")))
{
}

QSize X11Connection::rootSize() const
{
    // The connection's set-up data keeps the size from the time of connecting.
    const Owned<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(m_xcb, xcb_get_geometry(m_xcb, m_root), nullptr));
    return reply ? QSize(reply->width, reply->height) : QSize();
}

xcb_atom_t X11Connection::atom(const QByteArray &name) const
{
    if (const auto known = m_atoms.constFind(name); known != m_atoms.cend())
        return *known;
    const auto cookie = xcb_intern_atom(m_xcb, false, static_cast<quint16>(name.size()), name.constData());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_xcb, cookie, nullptr));
    return m_atoms[name] = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

bool X11Connection::isOwn(xcb_window_t window) const
{
    const xcb_setup_t *setup = xcb_get_setup(m_xcb);
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

QList<xcb_window_t> X11Connection::children(const QList<xcb_window_t> &parents) const
{
    QList<xcb_query_tree_cookie_t> cookies;
    for (const xcb_window_t parent : parents)
        cookies.append(xcb_query_tree(m_xcb, parent));
    QList<xcb_window_t> found;
    for (const auto cookie : std::as_const(cookies)) {
        const Owned<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(m_xcb, cookie, nullptr));
        if (!reply)
            continue;
        const xcb_window_t *windows = xcb_query_tree_children(reply.get());
        found.append(QList<xcb_window_t>(windows, windows + xcb_query_tree_children_length(reply.get())));
    }
    return found;
}

bool X11Connection::isMapped(xcb_window_t window) const
{
    const Owned<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(m_xcb, xcb_get_window_attributes(m_xcb, window), nullptr));
    return reply && reply->map_state != XCB_MAP_STATE_UNMAPPED;
}

QList<quint32> X11Connection::numbers(xcb_window_t window, xcb_atom_t property) const
{
    return numbers(QList{window}, property).first();
}

QList<QList<quint32>> X11Connection::numbers(const QList<xcb_window_t> &windows, xcb_atom_t property) const
{
    QList<xcb_get_property_cookie_t> cookies;
    for (const xcb_window_t window : windows)
        cookies.append(
            xcb_get_property(m_xcb, false, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty));
    QList<QList<quint32>> values;
    for (const auto cookie : std::as_const(cookies))
        values.append(read(m_xcb, cookie));
    return values;
}

void X11Connection::setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                               const QList<quint32> &numbers) const
{
    xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<quint32>(numbers.size()), numbers.constData());
}

void X11Connection::listen(xcb_window_t window, quint32 events) const
{
    const Owned<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(m_xcb, xcb_get_window_attributes(m_xcb, window), nullptr));
    if (!reply || (reply->your_event_mask & events) == events)
        return;
    const quint32 mask = reply->your_event_mask | events;
    const auto cookie = xcb_change_window_attributes_checked(m_xcb, window, XCB_CW_EVENT_MASK, &mask);
    xcb_discard_reply(m_xcb, cookie.sequence);
}

void X11Connection::tellWindowManager(xcb_window_t window, xcb_atom_t type,
                                      const std::array<quint32, 5> &data) const
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.cbegin(), data.cend(), message.data.data32);
    xcb_send_event(m_xcb, false, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_xcb);
}

xcb_timestamp_t X11Connection::timestamp() const
{
    return static_cast<xcb_timestamp_t>(
        reinterpret_cast<quintptr>(QGuiApplication::platformNativeInterface()->nativeResourceForScreen(
            "gettimestamp", QGuiApplication::primaryScreen())));
}

bool X11Connection::isSupported(const QByteArray &name) const
{
    return checkWindow() != XCB_NONE && numbers(m_root, atom("_NET_SUPPORTED")).contains(atom(name));
}

QByteArray X11Connection::windowManager() const
{
    const auto cookie = xcb_get_property(m_xcb, false, checkWindow(), atom("_NET_WM_NAME"),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_xcb, cookie, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

xcb_window_t X11Connection::checkWindow() const
{
    // The root window's properties outlive a window manager; its check window does not.
    const xcb_atom_t check = atom("_NET_SUPPORTING_WM_CHECK");
    const QList<quint32> window = numbers(m_root, check);
    const bool isAlive = window.size() == 1 && numbers(window.first(), check) == window;
    return isAlive ? window.first() : xcb_window_t(XCB_NONE);
}

} // namespace randblatt
