#include "platform/x11/SelectionWatcher.h"

#include <QCoreApplication>

#include <xcb/xfixes.h>

#include <cstdlib>

namespace randblatt {

SelectionWatcher::SelectionWatcher(const QByteArray &name, Scope scope, QObject *parent)
    : QObject(parent)
    , m_selection(m_x11.atom(scope == Scope::screen ? name + QByteArray::number(m_x11.screenNumber()) : name))
{
    const xcb_query_extension_reply_t *fixes = xcb_get_extension_data(m_x11.xcb(), &xcb_xfixes_id);
    if (fixes && fixes->present) {
        m_selectionNotify = fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
        // The server refuses the extension's requests before it was asked for its version.
        xcb_discard_reply(m_x11.xcb(), xcb_xfixes_query_version(m_x11.xcb(), 1, 0).sequence);
        xcb_xfixes_select_selection_input(m_x11.xcb(), m_x11.root(), m_selection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
    m_hasOwner = askOwner() != XCB_NONE;
}

bool SelectionWatcher::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) != m_selectionNotify)
        return false;
    const auto *notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
    if (notify->selection != m_selection)
        return false;
    const bool hasOwner = askOwner() != XCB_NONE;
    if (hasOwner != m_hasOwner) {
        m_hasOwner = hasOwner;
        Q_EMIT ownerChanged();
    }
    if (notify->subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER && notify->owner != XCB_NONE)
        Q_EMIT taken();
    return false;
}

std::optional<QColor> SelectionWatcher::ownerColor(const QByteArray &property) const
{
    const xcb_window_t owner = askOwner();
    const QList<quint32> numbers =
        owner == XCB_NONE ? QList<quint32>() : m_x11.numbers(owner, m_x11.atom(property));
    if (numbers.size() < 3)
        return std::nullopt;
    const auto part = [&](qsizetype index) { return static_cast<quint16>(numbers[index]); };
    return QColor(QRgba64::fromRgba64(part(0), part(1), part(2), 0xffff));
}

xcb_window_t SelectionWatcher::askOwner() const
{
    const auto cookie = xcb_get_selection_owner(m_x11.xcb(), m_selection);
    xcb_get_selection_owner_reply_t *reply = xcb_get_selection_owner_reply(m_x11.xcb(), cookie, nullptr);
    const xcb_window_t owner = reply ? reply->owner : xcb_window_t(XCB_NONE);
    std::free(reply);
    return owner;
}

} // namespace randblatt
