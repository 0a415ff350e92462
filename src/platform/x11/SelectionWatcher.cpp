#include "platform/x11/SelectionWatcher.h"

#include <QCoreApplication>

#include <xcb/xfixes.h>

#include <cstdlib>

namespace randblatt {

SelectionWatcher::SelectionWatcher(const QByteArray &prefix, QObject *parent)
    : QObject(parent)
    , m_selection(m_x11.atom(prefix + QByteArray::number(m_x11.screenNumber())))
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
    m_hasOwner = askOwner();
}

bool SelectionWatcher::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) != m_selectionNotify)
        return false;
    if (reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event)->selection != m_selection)
        return false;
    const bool hasOwner = askOwner();
    if (hasOwner != m_hasOwner) {
        m_hasOwner = hasOwner;
        Q_EMIT ownerChanged();
    }
    return false;
}

bool SelectionWatcher::askOwner() const
{
    const auto cookie = xcb_get_selection_owner(m_x11.xcb(), m_selection);
    xcb_get_selection_owner_reply_t *reply = xcb_get_selection_owner_reply(m_x11.xcb(), cookie, nullptr);
    const bool hasOwner = reply && reply->owner != XCB_NONE;
    std::free(reply);
    return hasOwner;
}

} // namespace randblatt
