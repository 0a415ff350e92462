#include "sidebar/HoverManager.h"

#include "platform/Desktop.h"
#include "settings/AppSettings.h"
#include "sidebar/PanelGeometry.h"
#include "sidebar/SidebarPanelController.h"
#include "sidebar/SidebarUIState.h"

namespace randblatt {

HoverManager::HoverManager(const AppSettings &settings, const Desktop &desktop, const SidebarUIState &uiState,
                           SidebarPanelController &controller, Clock clock, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_desktop(desktop)
    , m_uiState(uiState)
    , m_controller(controller)
    , m_clock(std::move(clock))
{
    connect(&m_timer, &QTimer::timeout, this, &HoverManager::tick);
}

void HoverManager::start()
{
    m_timer.start(tickInterval);
}

void HoverManager::hold(std::chrono::milliseconds duration)
{
    m_heldUntil = m_clock() + duration;
}

void HoverManager::tick()
{
    if (m_settings.alwaysVisible()) {
        if (m_controller.isVisible())
            return;
        if (const auto screen = screenUnder(m_desktop.pointerLocation()))
            m_controller.show(*screen);
        return;
    }
    if (m_controller.isVisible())
        checkHide();
    else
        checkReveal();
}

void HoverManager::checkHide()
{
    if (m_uiState.keepOpen() || !m_controller.currentScreen())
        return;
    if (keepsPanelUp()) {
        m_heldUntil.reset();
        return;
    }
    if (m_heldUntil && m_clock() < *m_heldUntil)
        return;
    m_heldUntil.reset();
    m_controller.hide();
    m_pendingSince.reset();
    m_pendingScreen.reset();
}

bool HoverManager::keepsPanelUp() const
{
    if (m_settings.alwaysVisible() || m_uiState.keepOpen())
        return true;
    const auto point = m_desktop.pointerLocation();
    const auto screen = m_controller.currentScreen();
    if (!point || !screen)
        return false;
    const double width = limitedPanelWidth(m_settings.panelWidth(), screen->visibleFrame);
    return isInPanelArea(screen->visibleFrame, m_settings.sidebarSide(), width, *point) ||
           zone().contains(screen->frame, *point);
}

void HoverManager::checkReveal()
{
    const auto point = m_desktop.pointerLocation();
    const auto screen = screenUnder(point);
    if (!screen) {
        m_pendingSince.reset();
        return;
    }
    if (!point || !zone().contains(screen->frame, *point)) {
        m_pendingSince.reset();
        m_pendingScreen.reset();
        return;
    }
    if (m_pendingScreen != screen->id) {
        m_pendingScreen = screen->id;
        m_pendingSince = m_clock();
    }
    if (!m_pendingSince)
        return;
    const std::chrono::duration<double> rested = m_clock() - *m_pendingSince;
    if (rested.count() < m_settings.revealDelay())
        return;
    m_controller.show(*screen);
    m_pendingSince.reset();
}

std::optional<Screen> HoverManager::screenUnder(const std::optional<QPointF> &point) const
{
    if (point) {
        if (auto screen = screenAt(m_desktop.screens(), *point))
            return screen;
    }
    return m_desktop.mainScreen();
}

TriggerZone HoverManager::zone() const
{
    return {m_settings.triggerMode(), m_settings.sidebarSide(), m_settings.cornerSize(),
            m_settings.edgeThickness()};
}

} // namespace randblatt
