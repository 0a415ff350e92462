#include "platform/x11/X11PanelWindow.h"

#include "platform/PanelWindowSetup.h"
#include "platform/x11/X11Desktop.h"

#include <QCoreApplication>

#include <xcb/shape.h>

#include <array>
#include <utility>

namespace randblatt {

namespace {

constexpr quint32 allDesktops = 0xffffffff;
constexpr quint32 addState = 1;
constexpr quint32 fromApplication = 1;
constexpr qsizetype sizeHintsLength = 18;
constexpr quint32 sizeHintsUserPosition = 1 << 0;
constexpr quint32 sizeHintsUserSize = 1 << 1;
constexpr quint32 sizeHintsGravity = 1 << 9;
/// _NET_WM_STRUT_PARTIAL: one pixel at the left and one at the right edge, in the last row that X can count.
const QList<quint32> beyondEveryScreen{1, 1, 0, 0, 32767, 32767, 32767, 32767, 0, 0, 0, 0};

} // namespace

X11PanelWindow::X11PanelWindow(std::unique_ptr<QWindow> window, const X11Desktop &desktop)
    : m_desktop(desktop)
    , m_keyboard(m_x11)
    , m_window(std::move(window))
{
    setUpPanelWindow(*m_window);
    // A geometry that was set before the window exists makes Qt announce it as the user's wish, so that
    // window managers do not place the window themselves.
    m_window->setGeometry(0, 0, 1, 1);
    m_window->create();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

void X11PanelWindow::setFrame(const QRectF &frame)
{
    m_frame = frame;
    const QRect native = m_desktop.layout().inNative(frame);
    if (native.isEmpty() || native == m_native)
        return;
    const bool isResized = native.size() != m_native.size();
    m_native = native;
    applyFrame();
    if (isResized) {
        announceInput();
        announceBlur();
    }
}

void X11PanelWindow::setAlpha(double alpha)
{
    m_alpha = alpha;
    m_window->setOpacity(alpha);
}

void X11PanelWindow::orderFront()
{
    rememberKeyWindow();
    if (!m_window->isVisible()) {
        announce();
        m_window->show();
        announceMapped();
        // Some window managers place a new window on the screen all the same.
        applyFrame();
    }
    // With a window manager the state "above" does it; some take a request to raise for one to activate.
    if (!m_x11.isSupported("_NET_WM_STATE_ABOVE"))
        m_window->raise();
}

void X11PanelWindow::orderOut()
{
    if (!m_window->isVisible())
        return;
    // Before the window goes, so that the window manager does not choose somebody else in between.
    resignKey();
    m_formerKeyWindow = XCB_NONE;
    m_window->hide();
}

void X11PanelWindow::makeKey()
{
    rememberKeyWindow();
    m_keyboard.give(id());
}

void X11PanelWindow::resignKey()
{
    if (m_keyboard.owner() == id() && m_keyboard.canTake(m_formerKeyWindow))
        m_keyboard.give(m_formerKeyWindow);
}

void X11PanelWindow::setInputRegion(const QRegion &region)
{
    if (region == m_inputRegion)
        return;
    m_inputRegion = region;
    announceInput();
}

void X11PanelWindow::setBlurRegion(const QRegion &region)
{
    if (region == m_blurRegion)
        return;
    m_blurRegion = region;
    announceBlur();
}

bool X11PanelWindow::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t" || !m_window->isVisible())
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
        m_keyboard.dependsOn(*reinterpret_cast<const xcb_property_notify_event_t *>(event)))
        rememberKeyWindow();
    return false;
}

xcb_window_t X11PanelWindow::id() const
{
    return static_cast<xcb_window_t>(m_window->winId());
}

void X11PanelWindow::applyFrame() const
{
    if (m_native.isEmpty())
        return;
    // Past Qt, which knows only whole points and writes the hints anew with every move; it learns of the
    // frame from the server.
    const std::array<quint32, 4> values{
        static_cast<quint32>(m_native.x()), static_cast<quint32>(m_native.y()),
        static_cast<quint32>(m_native.width()), static_cast<quint32>(m_native.height())};
    xcb_configure_window(m_x11.xcb(), id(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
    xcb_flush(m_x11.xcb());
}

void X11PanelWindow::announce() const
{
    // Window managers delete the desktop when a window is hidden.
    m_x11.setNumbers(id(), m_x11.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, {allDesktops});
    // KWin keeps this type of its own above full-screen windows; the others take the next that they know.
    m_x11.setNumbers(id(), m_x11.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                     {m_x11.atom("_KDE_NET_WM_WINDOW_TYPE_CRITICAL_NOTIFICATION"),
                      m_x11.atom("_NET_WM_WINDOW_TYPE_UTILITY"), m_x11.atom("_NET_WM_WINDOW_TYPE_NORMAL")});
    // Openbox leaves a window beyond the edge of the screen only if it reserves space at that edge. What is
    // reserved here lies beyond every screen.
    if (m_x11.windowManager() == "Openbox")
        m_x11.setNumbers(id(), m_x11.atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, beyondEveryScreen);
    // The compositor picom asks for this one.
    m_x11.setNumbers(id(), m_x11.atom("_COMPTON_SHADOW"), XCB_ATOM_CARDINAL, {0});
}

void X11PanelWindow::announceMapped() const
{
    // Qt writes the states that it knows when it maps the window.
    m_x11.tellWindowManager(id(), m_x11.atom("_NET_WM_STATE"),
                            {addState, m_x11.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                             m_x11.atom("_NET_WM_STATE_SKIP_PAGER"), fromApplication, 0});
    // With a scale factor Qt asks for sizes that are a multiple of some pixels. Without that, but with
    // position and size as the user's wish, the frame is exact (ICCCM, WM_NORMAL_HINTS).
    QList<quint32> hints(sizeHintsLength, 0);
    hints.first() = sizeHintsUserPosition | sizeHintsUserSize | sizeHintsGravity;
    hints.last() = XCB_GRAVITY_STATIC;
    m_x11.setNumbers(id(), XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, hints);
    // Xfwm4 misreads the property.
    m_x11.tellWindowManager(id(), m_x11.atom("_NET_WM_DESKTOP"), {allDesktops, fromApplication, 0, 0, 0});
}

QList<QRect> X11PanelWindow::nativeRects(const QRegion &region) const
{
    const double factor = m_frame.width() > 0 ? m_native.width() / m_frame.width() : 1;
    QList<QRect> rects;
    for (const QRect &rect : region)
        rects.append(
            QRectF(rect.x() * factor, rect.y() * factor, rect.width() * factor, rect.height() * factor)
                .toRect());
    return rects;
}

void X11PanelWindow::announceInput() const
{
    if (!m_inputRegion)
        return;
    QList<xcb_rectangle_t> rects;
    const QList<QRect> parts = nativeRects(*m_inputRegion);
    for (const QRect &part : parts)
        rects.append({static_cast<qint16>(part.x()), static_cast<qint16>(part.y()),
                      static_cast<quint16>(part.width()), static_cast<quint16>(part.height())});
    // What is drawn has another shape, which stays as it is.
    xcb_shape_rectangles(m_x11.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, id(),
                         0, 0, static_cast<quint32>(rects.size()), rects.constData());
    xcb_flush(m_x11.xcb());
}

void X11PanelWindow::announceBlur() const
{
    const xcb_atom_t property = m_x11.atom("_KDE_NET_WM_BLUR_BEHIND_REGION");
    QList<quint32> rects;
    const QList<QRect> parts = nativeRects(m_blurRegion);
    for (const QRect &part : parts) {
        for (const int number : {part.x(), part.y(), part.width(), part.height()})
            rects.append(static_cast<quint32>(number));
    }
    // An empty list would stand for the whole window.
    if (rects.isEmpty())
        xcb_delete_property(m_x11.xcb(), id(), property);
    else
        m_x11.setNumbers(id(), property, XCB_ATOM_CARDINAL, rects);
    xcb_flush(m_x11.xcb());
}

void X11PanelWindow::rememberKeyWindow()
{
    const xcb_window_t owner = m_keyboard.owner();
    if (owner != XCB_NONE && owner != id())
        m_formerKeyWindow = owner;
}

} // namespace randblatt
