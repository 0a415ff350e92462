#include "sidebar/PointerWatch.h"

#include "platform/Desktop.h"
#include "settings/AppSettings.h"
#include "sidebar/PanelGeometry.h"
#include "sidebar/SidebarPanelController.h"
#include "sidebar/SidebarUIState.h"
#include "sidebar/TriggerZone.h"

namespace randblatt {

PointerWatch::PointerWatch(const AppSettings &settings, Desktop &desktop,
                           const SidebarPanelController &controller, const SidebarUIState &uiState,
                           QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_desktop(desktop)
    , m_controller(controller)
    , m_uiState(uiState)
{
    for (const auto signal : {&AppSettings::alwaysVisibleChanged, &AppSettings::triggerModeChanged,
                              &AppSettings::sidebarSideChanged, &AppSettings::cornerSizeChanged,
                              &AppSettings::edgeThicknessChanged, &AppSettings::panelWidthChanged,
                              &AppSettings::panelHeightFractionChanged})
        connect(&m_settings, signal, this, &PointerWatch::follow);
    connect(&m_desktop, &Desktop::screensChanged, this, &PointerWatch::follow);
    connect(&m_controller, &SidebarPanelController::isVisibleChanged, this, &PointerWatch::follow);
    // It may have gone to another screen.
    connect(&m_controller, &SidebarPanelController::slideInStarted, this, &PointerWatch::follow);
    connect(&m_uiState, &SidebarUIState::keepOpenChanged, this, &PointerWatch::follow);
    follow();
}

void PointerWatch::follow()
{
    m_desktop.watchPointer(areas());
}

QList<PointerArea> PointerWatch::areas() const
{
    QList<PointerArea> areas;
    const QList<Screen> screens = m_desktop.screens();
    if (m_uiState.keepOpen()) {
        for (const Screen &screen : screens)
            areas.append({screen.frame, true});
        return areas;
    }
    // A panel that is always up does not heed the pointer.
    if (m_settings.alwaysVisible())
        return areas;
    const TriggerZone zone{m_settings.triggerMode(), m_settings.sidebarSide(), m_settings.cornerSize(),
                           m_settings.edgeThickness()};
    const auto append = [&](const QList<QRectF> &rects, bool yieldsToClicks) {
        for (const QRectF &rect : rects)
            areas.append({rect, yieldsToClicks});
    };
    for (const Screen &screen : screens)
        append(zone.areas(screen.frame), false);
    if (const auto screen = m_controller.isVisible() ? m_controller.currentScreen() : std::nullopt) {
        const double width = limitedPanelWidth(m_settings.panelWidth(), screen->visibleFrame);
        const QRectF shown = panelGeometry(screen->visibleFrame, m_settings.sidebarSide(), width,
                                           m_settings.panelHeightFraction())
                                 .shown;
        append(around(shown, panelArea(*screen, m_settings.sidebarSide(), width)), true);
    }
    return areas;
}

} // namespace randblatt
