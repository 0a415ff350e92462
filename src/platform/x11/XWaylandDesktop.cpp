#include "platform/x11/XWaylandDesktop.h"

#include <xcb/xinput.h>

#include <algorithm>

namespace randblatt {

namespace {

bool isLeave(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_LEAVE_NOTIFY)
        return true;
    // Qt's windows get the extension's events. Another extension's costs a question, no more.
    return type == XCB_GE_GENERIC &&
           reinterpret_cast<const xcb_ge_generic_event_t &>(event).event_type == XCB_INPUT_LEAVE;
}

} // namespace

XWaylandDesktop::XWaylandDesktop(QObject *parent)
    : X11Desktop(parent)
{
    connect(&motion(), &PointerMotion::moved, this, &XWaylandDesktop::comeBack);
}

std::optional<QPointF> XWaylandDesktop::pointerLocation() const
{
    const auto pointer = queryPointer();
    if (!pointer)
        return std::nullopt;
    // Over a window of the compositor's the server keeps the last position, but on no window. That it is on
    // one again is of no account without a movement: a window may have come to lie there.
    if (pointer->window == XCB_NONE) {
        m_lost = pointer;
        motion().watch();
    } else if (m_lost && m_lost->pixel != pointer->pixel) {
        m_lost.reset();
    }
    return m_lost ? std::nullopt : layout().pixelInCore(pointer->pixel);
}

void XWaylandDesktop::watchPointer(const QList<PointerArea> &areas)
{
    std::vector<std::unique_ptr<TriggerStrip>> strips;
    for (const PointerArea &area : areas) {
        // A strip cannot let a click through.
        if (area.yieldsToClicks)
            continue;
        const QRect native = layout().inNative(area.rect);
        for (const Monitor &monitor : layout().monitors()) {
            const QList<QRect> rects = triggerStrips(native, monitor.native);
            for (const QRect &rect : rects) {
                const auto present = std::find_if(m_strips.begin(), m_strips.end(), [&](const auto &strip) {
                    return strip != nullptr && strip->rect() == rect;
                });
                strips.push_back(present != m_strips.end() ? std::move(*present)
                                                           : std::make_unique<TriggerStrip>(rect));
            }
        }
    }
    m_strips = std::move(strips);
}

bool XWaylandDesktop::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result)
{
    // At once, before a window that comes or goes gives the lost pointer another place.
    if (eventType == "xcb_generic_event_t" && isLeave(*static_cast<const xcb_generic_event_t *>(message)))
        static_cast<void>(pointerLocation());
    return X11Desktop::nativeEventFilter(eventType, message, result);
}

void XWaylandDesktop::comeBack(quint32 sequence)
{
    if (!m_lost)
        return;
    // A movement from before the loss may be told after it. Sequence numbers wrap around.
    if (static_cast<qint32>(sequence - m_lost->sequence) >= 0)
        m_lost.reset();
    else
        motion().watch();
}

} // namespace randblatt
