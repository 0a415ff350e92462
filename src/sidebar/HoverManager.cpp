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
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &HoverManager::tick);
    wakeOnChanges();
}

void HoverManager::start()
{
    m_gridOrigin = m_clock();
    planTick();
}

void HoverManager::hold(Cause cause)
{
    if (!m_controller.isVisible() || m_controller.isAnimatingOut())
        return;
    m_hold = Hold{cause, std::nullopt};
    if (!m_controller.isAnimatingIn())
        startHold();
    wake();
}

bool HoverManager::isPeeking() const
{
    return m_hold && m_hold->cause == Cause::peek && !m_typedUntil && !m_controller.isAnimatingOut();
}

void HoverManager::startHold()
{
    if (m_hold && !m_hold->until)
        m_hold->until = m_clock() + holdDuration;
}

// A sentence must not go on in the window below.
void HoverManager::followTyping()
{
    if (m_controller.isAnimatingOut()) {
        const auto screen = m_controller.currentScreen();
        if (!m_hidesUnattended || !screen)
            return;
        m_controller.show(*screen);
    }
    m_typedUntil = m_clock() + holdDuration;
    wake();
}

// Put away by somebody else, it must not come again to a pointer that has rested in the zone all the time.
void HoverManager::followDismissal()
{
    letGo();
    m_pendingSince.reset();
    m_pendingScreen.reset();
    const auto point = m_desktop.pointerLocation();
    const auto screen = screenUnder(point);
    if (point && screen && zone().contains(screen->frame, *point))
        m_pendingScreen = screen->id;
}

void HoverManager::letGo()
{
    m_hold.reset();
    m_typedUntil.reset();
    m_hidesUnattended = false;
}

void HoverManager::tick()
{
    const TimePoint now = m_clock();
    m_isPointerStill = true;
    m_awaitsRelease = false;
    evaluate();
    if (!m_gridOrigin)
        return;
    if (canRest(now)) {
        m_timer.stop();
        m_nextTick.reset();
    } else {
        planTick();
    }
}

void HoverManager::evaluate()
{
    if (m_settings.alwaysVisible()) {
        if (m_controller.isVisible())
            return;
        if (const auto screen = screenUnder(readPointer()))
            m_controller.show(*screen);
        return;
    }
    if (m_controller.isVisible())
        checkHide();
    else
        checkReveal();
}

void HoverManager::wakeOnChanges()
{
    connect(&m_desktop, &Desktop::pointerMoved, this, &HoverManager::wake);
    connect(&m_desktop, &Desktop::screensChanged, this, &HoverManager::wake);
    connect(&m_uiState, &SidebarUIState::keepOpenChanged, this, &HoverManager::wake);
    connect(&m_uiState, &SidebarUIState::hasKeyboardChanged, this, &HoverManager::wake);
    connect(&m_uiState, &SidebarUIState::isComposingChanged, this, &HoverManager::wake);
    connect(&m_uiState, &SidebarUIState::isPressedChanged, this, &HoverManager::wake);
    connect(&m_uiState, &SidebarUIState::typed, this, &HoverManager::followTyping);
    connect(&m_controller, &SidebarPanelController::isVisibleChanged, this, &HoverManager::letGo);
    connect(&m_controller, &SidebarPanelController::isVisibleChanged, this, &HoverManager::wake);
    connect(&m_controller, &SidebarPanelController::slideInStarted, this, &HoverManager::wake);
    connect(&m_controller, &SidebarPanelController::slidIn, this, &HoverManager::startHold);
    connect(&m_controller, &SidebarPanelController::slidIn, this, &HoverManager::wake);
    connect(&m_controller, &SidebarPanelController::slideOutStarted, this, &HoverManager::followDismissal);
    for (const auto signal : {&AppSettings::alwaysVisibleChanged, &AppSettings::triggerModeChanged,
                              &AppSettings::sidebarSideChanged, &AppSettings::cornerSizeChanged,
                              &AppSettings::edgeThicknessChanged, &AppSettings::panelWidthChanged})
        connect(&m_settings, signal, this, &HoverManager::wake);
}

void HoverManager::wake()
{
    if (m_gridOrigin && !m_nextTick)
        planTick();
}

void HoverManager::planTick()
{
    const TimePoint now = m_clock();
    // Ticks that were missed are left out.
    m_nextTick = *m_gridOrigin + ((now - *m_gridOrigin) / tickInterval + 1) * tickInterval;
    m_timer.start(std::chrono::ceil<std::chrono::milliseconds>(*m_nextTick - now));
}

bool HoverManager::canRest(TimePoint now) const
{
    // A second look at a pointer that moved, before its rest is believed: the desktop may tell of its next
    // movement only some time after the last.
    if (!m_desktop.reportsPointerMotion() || !m_isPointerStill || m_pendingSince || m_awaitsRelease)
        return false;
    if (!m_controller.isVisible())
        return !m_settings.alwaysVisible();
    return !m_controller.isAnimatingOut() && !holdEndsByTime(now) && !m_uiState.isPressed();
}

bool HoverManager::holdEndsByTime(TimePoint now) const
{
    const auto lasts = [now](const std::optional<TimePoint> &until) { return until && now < *until; };
    return lasts(m_typedUntil) || (m_hold && lasts(m_hold->until));
}

bool HoverManager::isHeld() const
{
    if (m_uiState.isComposing() || holdEndsByTime(m_clock()))
        return true;
    return m_hold && (!m_hold->until || (m_hold->cause == Cause::call && m_uiState.hasKeyboard()));
}

std::optional<QPointF> HoverManager::readPointer()
{
    const auto point = m_desktop.pointerLocation();
    m_isPointerStill = point == m_pointer;
    m_pointer = point;
    return point;
}

void HoverManager::checkHide()
{
    if (m_uiState.keepOpen() || !m_controller.currentScreen())
        return;
    // The panel may not hear of the end, where its surface went in between.
    if (m_uiState.isPressed() && m_desktop.isButtonHeld())
        return;
    const auto point = readPointer();
    if (isAtPanel(point)) {
        m_hold.reset();
        return;
    }
    if (isHeld())
        return;
    // The desktop may know of the pointer only where the panel has arrived.
    if (!point && m_controller.isAnimatingIn())
        return;
    if (!m_controller.isAnimatingOut()) {
        const bool wasHeld = m_hold || m_typedUntil;
        m_controller.hide();
        m_hidesUnattended = wasHeld;
    }
    m_pendingSince.reset();
    m_pendingScreen.reset();
}

bool HoverManager::isAtPanel(const std::optional<QPointF> &point) const
{
    const auto screen = m_controller.currentScreen();
    if (!point || !screen)
        return false;
    const double width = limitedPanelWidth(m_settings.panelWidth(), screen->visibleFrame);
    return isInPanelArea(*screen, m_settings.sidebarSide(), width, *point) ||
           zone().contains(screen->frame, *point);
}

void HoverManager::checkReveal()
{
    const auto point = readPointer();
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
    const bool isDragging = m_desktop.isDragging();
    m_awaitsRelease = !isDragging && m_desktop.isButtonHeld();
    if (m_awaitsRelease) {
        // The delay begins with the release. A screen whose panel was put away stays remembered.
        if (m_pendingSince)
            m_pendingScreen.reset();
        m_pendingSince.reset();
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
    // A keyboard that went elsewhere would end the drag in some programs.
    m_controller.show(*screen, isDragging ? SidebarPanelController::Keyboard::leave
                                          : SidebarPanelController::Keyboard::take);
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
