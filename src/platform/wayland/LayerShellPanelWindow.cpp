#include "platform/wayland/LayerShellPanelWindow.h"

#include "platform/wayland/LayerShellDesktop.h"
#include "platform/wayland/ScreenPixels.h"

#include <QEvent>

#include <algorithm>

namespace randblatt {

namespace {

/// Moves a rectangle so that something of it lies right of the edge that it is measured from. A compositor
/// may count what is left of there off the surface's width, and end the program that has nothing left.
QRect touchingEdge(QRect rect)
{
    rect.moveLeft(std::max(rect.left(), 1 - rect.width()));
    return rect;
}

} // namespace

LayerShellPanelWindow::LayerShellPanelWindow(std::unique_ptr<QWindow> window, LayerShellDesktop &desktop,
                                             Fade fade)
    : m_desktop(desktop)
    , m_window(std::move(window))
    , m_fade(std::move(fade))
    , m_surface(desktop.connection(), *m_window, LayerSurface::Origin::workArea)
    , m_blur(desktop.connection())
{
    m_window->installEventFilter(this);
    m_desktop.followPanel(*m_window);
    connect(&m_desktop, &Desktop::pointerMoved, this, &LayerShellPanelWindow::followPointer);
    connect(&m_desktop.connection(), &WaylandConnection::blurChanged, this,
            &LayerShellPanelWindow::attachBlur);
}

LayerShellPanelWindow::~LayerShellPanelWindow()
{
    LayerShellPanelWindow::orderOut();
    m_desktop.dropPanel(*m_window);
}

void LayerShellPanelWindow::setScreen(const Screen &screen)
{
    if (m_screenID == screen.id)
        return;
    m_screenID = screen.id;
    if (!m_surface.isShown())
        return;
    // A surface stays on its screen for good.
    const bool takesKeyboard = m_surface.takesKeyboard();
    orderOut();
    orderFront();
    m_surface.setTakesKeyboard(takesKeyboard);
}

void LayerShellPanelWindow::setFrame(const QRectF &frame)
{
    m_frame = frame;
    place();
}

void LayerShellPanelWindow::setAlpha(double alpha)
{
    m_alpha = alpha;
    m_fade(alpha);
}

void LayerShellPanelWindow::orderFront()
{
    const auto screen = m_desktop.screen(m_screenID);
    QScreen *handle = m_desktop.handle(m_screenID);
    if (m_surface.isShown() || !screen || handle == nullptr)
        return;
    m_surface.show(*handle, touchingEdge(pointsOf(m_frame, screen->visibleFrame)), [this] { orderOut(); });
    attachBlur();
    place();
}

void LayerShellPanelWindow::orderOut()
{
    m_blur.attach(nullptr);
    resignKey();
    m_surface.hide();
    m_desktop.placePanel(*m_window, m_screenID, {}, {});
}

void LayerShellPanelWindow::makeKey()
{
    m_wasVisited = false;
    m_surface.setTakesKeyboard(true);
    followPointer();
}

void LayerShellPanelWindow::resignKey()
{
    m_surface.setTakesKeyboard(false);
}

void LayerShellPanelWindow::setInputRegion(const QRegion &region)
{
    m_inputRegion = region;
    // An empty mask would be none.
    m_window->setMask(region.isEmpty() ? QRegion(-1, -1, 1, 1) : region);
    m_surface.commit();
    place();
}

void LayerShellPanelWindow::setBlurRegion(const QRegion &region)
{
    m_blur.setRegion(region);
    // The view may have nothing new to draw.
    m_surface.commit();
}

bool LayerShellPanelWindow::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && !m_surface.takesKeyboard())
        makeKey();
    return false;
}

void LayerShellPanelWindow::attachBlur()
{
    m_blur.attach(m_surface.isShown() ? WaylandConnection::surface(*m_window) : nullptr);
    m_surface.commit();
}

void LayerShellPanelWindow::place()
{
    const auto screen = m_desktop.screen(m_screenID);
    if (!screen)
        return;
    // The compositor counts from the corner of what it leaves of the screen.
    const QRect wanted = pointsOf(m_frame, screen->visibleFrame);
    const QRect rect = touchingEdge(wanted);
    m_surface.setRect(rect);
    if (!m_surface.isShown())
        return;
    // Where it only touches the edge it may not be there yet: the pointer would be over nothing.
    const QRect onScreen = pointsOf(m_frame, screen->frame);
    const QRegion opening = m_inputRegion ? m_inputRegion->translated(onScreen.topLeft()) : QRegion(onScreen);
    m_desktop.placePanel(*m_window, m_screenID, onScreen.translated(rect.topLeft() - wanted.topLeft()),
                         opening);
}

// Nobody else can take the keyboard from the panel: it gives it back when the user turns elsewhere.
void LayerShellPanelWindow::followPointer()
{
    if (m_desktop.pointerLocation())
        m_wasVisited = true;
    else if (m_wasVisited && m_surface.takesKeyboard())
        m_surface.setTakesKeyboard(false);
}

} // namespace randblatt
