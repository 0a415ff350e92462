#include "platform/generic/GenericPanelWindow.h"

#include "platform/Coordinates.h"
#include "platform/PanelWindowSetup.h"

#include <QGuiApplication>
#include <QScreen>

namespace randblatt {

GenericPanelWindow::GenericPanelWindow(std::unique_ptr<QWindow> window)
    : m_window(std::move(window))
{
    setUpPanelWindow(*m_window);
}

void GenericPanelWindow::setFrame(const QRectF &frame)
{
    m_frame = frame;
    if (const QScreen *primary = QGuiApplication::primaryScreen()) {
        const QRect origin = primary->geometry();
        m_window->setGeometry(flipped(frame, origin.height()).translated(origin.topLeft()).toRect());
    }
}

void GenericPanelWindow::setAlpha(double alpha)
{
    m_alpha = alpha;
    m_window->setOpacity(alpha);
}

void GenericPanelWindow::orderFront()
{
    m_window->show();
    m_window->raise();
}

void GenericPanelWindow::orderOut()
{
    m_window->hide();
}

void GenericPanelWindow::makeKey()
{
    m_window->requestActivate();
}

// Qt knows no such wish.
void GenericPanelWindow::resignKey() {}

} // namespace randblatt
