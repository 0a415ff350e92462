#include "platform/x11/X11PanelWindow.h"

#include "platform/PanelWindowSetup.h"
#include "platform/x11/X11Desktop.h"

#include <QCoreApplication>
#include <qpa/qplatformwindow.h>

#include <utility>

namespace randblatt {

namespace {

constexpr quint32 allDesktops = 0xffffffff;
constexpr quint32 addState = 1;
constexpr quint32 fromApplication = 1;

} // namespace

X11PanelWindow::X11PanelWindow(std::unique_ptr<QWindow> window, const X11Desktop &desktop)
    : m_desktop(desktop)
    , m_keyboard(m_x11)
    , m_window(std::move(window))
{
    setUpPanelWindow(*m_window);
    // A geometry that was set before the window exists makes Qt announce every later one as the user's wish
    // (ICCCM, WM_NORMAL_HINTS), so that window managers do not place the window themselves.
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
    m_native = native;
    // Past QWindow, which knows only whole points.
    m_window->handle()->setGeometry(native);
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
        // Qt writes the states that it knows when it maps the window.
        leaveTaskbarAndPager();
    }
    m_window->raise();
}

void X11PanelWindow::orderOut()
{
    if (!m_window->isVisible())
        return;
    // Before the window goes, so that the window manager does not choose somebody else in between.
    if (m_keyboard.owner() == id() && m_keyboard.canTake(m_formerKeyWindow))
        m_keyboard.give(m_formerKeyWindow);
    m_formerKeyWindow = XCB_NONE;
    m_window->hide();
}

void X11PanelWindow::makeKey()
{
    rememberKeyWindow();
    m_keyboard.give(id());
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

void X11PanelWindow::announce() const
{
    // Window managers delete the desktop when a window is hidden.
    m_x11.setNumbers(id(), m_x11.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, {allDesktops});
    // KWin keeps this type of its own above full-screen windows; the others take the next that they know.
    m_x11.setNumbers(id(), m_x11.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                     {m_x11.atom("_KDE_NET_WM_WINDOW_TYPE_CRITICAL_NOTIFICATION"),
                      m_x11.atom("_NET_WM_WINDOW_TYPE_UTILITY"), m_x11.atom("_NET_WM_WINDOW_TYPE_NORMAL")});
    // The compositor picom asks for this one.
    m_x11.setNumbers(id(), m_x11.atom("_COMPTON_SHADOW"), XCB_ATOM_CARDINAL, {0});
}

void X11PanelWindow::leaveTaskbarAndPager() const
{
    m_x11.tellWindowManager(id(), m_x11.atom("_NET_WM_STATE"),
                            {addState, m_x11.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                             m_x11.atom("_NET_WM_STATE_SKIP_PAGER"), fromApplication, 0});
}

void X11PanelWindow::rememberKeyWindow()
{
    const xcb_window_t owner = m_keyboard.owner();
    if (owner != XCB_NONE && owner != id())
        m_formerKeyWindow = owner;
}

} // namespace randblatt
