#include "platform/x11/XWaylandDesktop.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace randblatt {

namespace {

constexpr int fixedPoint = 1 << 16;

/// Where the pointer left a window of ours for none, in pixels; none for another event.
std::optional<QPoint> placeOfLoss(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_LEAVE_NOTIFY) {
        const auto &leave = reinterpret_cast<const xcb_leave_notify_event_t &>(event);
        if (leave.detail == XCB_NOTIFY_DETAIL_ANCESTOR && leave.mode == XCB_NOTIFY_MODE_NORMAL)
            return QPoint(leave.root_x, leave.root_y);
    } else if (type == XCB_GE_GENERIC) {
        // Qt's windows get the extension's events. No other that Qt asks for has this number.
        const auto &leave = reinterpret_cast<const xcb_input_leave_event_t &>(event);
        if (leave.event_type == XCB_INPUT_LEAVE && leave.detail == XCB_INPUT_NOTIFY_DETAIL_ANCESTOR &&
            leave.mode == XCB_INPUT_NOTIFY_MODE_NORMAL)
            return QPoint(leave.root_x / fixedPoint, leave.root_y / fixedPoint);
    }
    return std::nullopt;
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
    if (pointer->window == XCB_NONE)
        lose(*pointer);
    else if (m_lost && m_lost->pixel != pointer->pixel)
        m_lost.reset();
    return m_lost ? std::nullopt : layout().pixelInCore(pointer->pixel);
}

void XWaylandDesktop::watchPointer(const QList<PointerArea> &areas)
{
    QList<QRect> rects;
    for (const PointerArea &area : areas) {
        // A strip that comes to lie below the pointer makes the server miss that it leaves: only what lies at
        // the screens' borders all the time, and the docks between them and the panel.
        if (area.yieldsToClicks) {
            rects.append(dockStrips(area.rect));
            continue;
        }
        const QRect native = layout().inNative(area.rect);
        for (const Monitor &monitor : layout().monitors())
            rects.append(triggerStrips(native, monitor.native));
    }
    std::vector<std::unique_ptr<TriggerStrip>> strips;
    for (const QRect &rect : std::as_const(rects)) {
        const auto present = std::find_if(m_strips.begin(), m_strips.end(), [&](const auto &strip) {
            return strip != nullptr && strip->rect() == rect;
        });
        strips.push_back(present != m_strips.end() ? std::move(*present)
                                                   : std::make_unique<TriggerStrip>(rect));
    }
    m_strips = std::move(strips);
}

QList<QRect> XWaylandDesktop::dockStrips(const QRectF &area) const
{
    QList<QRect> strips;
    const QList<Screen> all = screens();
    for (const Screen &screen : all) {
        const QRectF &frame = screen.frame;
        const QRectF &visible = screen.visibleFrame;
        // Without the outermost pixels, where a pointer may rest that has revealed the panel.
        const QRect border = layout().inNative(frame).adjusted(1, 1, -1, -1);
        for (const QRectF &dock : {QRectF(frame.topLeft(), QPointF(visible.left(), frame.bottom())),
                                   QRectF(QPointF(visible.right(), frame.top()), frame.bottomRight())}) {
            const QRect strip = layout().inNative(area & dock) & border;
            if (!dock.isEmpty() && area.intersects(dock) && !strip.isEmpty())
                strips.append(strip);
        }
    }
    return strips;
}

bool XWaylandDesktop::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result)
{
    if (eventType == "xcb_generic_event_t") {
        const auto &event = *static_cast<const xcb_generic_event_t *>(message);
        // Later questions may be too late: a window that comes gives the lost pointer another place.
        if (const auto pixel = placeOfLoss(event))
            lose({.pixel = *pixel, .sequence = event.full_sequence});
    }
    return X11Desktop::nativeEventFilter(eventType, message, result);
}

void XWaylandDesktop::lose(const Pointer &pointer) const
{
    m_lost = pointer;
    motion().watch();
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
