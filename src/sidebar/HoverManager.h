#pragma once

#include "sidebar/TriggerZone.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

namespace randblatt {

class AppSettings;
class Desktop;
class SidebarPanelController;
class SidebarUIState;

/// The edge trigger: decides on every tick, from the pointer's position alone, whether the panel is revealed
/// or put away.
class HoverManager : public QObject
{
    Q_OBJECT

public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Clock = std::function<TimePoint()>;

    static constexpr std::chrono::milliseconds tickInterval{80};

    /// All arguments are borrowed and must outlive the manager; `clock` tells the time of each tick.
    HoverManager(const AppSettings &settings, const Desktop &desktop, const SidebarUIState &uiState,
                 SidebarPanelController &controller, Clock clock = &std::chrono::steady_clock::now,
                 QObject *parent = nullptr);

    /// Starts the ticks, anew if they run already.
    void start();
    /// One evaluation.
    void tick();
    /// Keeps a panel that was shown without the pointer's doing up for `duration`. The hold ends early when
    /// the pointer comes to the panel: from then on the pointer decides.
    void hold(std::chrono::milliseconds duration);
    /// Whether the pointer, or a view, keeps the panel up: in its area or in the trigger zone of its screen.
    [[nodiscard]] bool keepsPanelUp() const;

private:
    void checkHide();
    void checkReveal();
    [[nodiscard]] std::optional<Screen> screenUnder(const std::optional<QPointF> &point) const;
    [[nodiscard]] TriggerZone zone() const;

    const AppSettings &m_settings;
    const Desktop &m_desktop;
    const SidebarUIState &m_uiState;
    SidebarPanelController &m_controller;
    Clock m_clock;
    QTimer m_timer;
    std::optional<TimePoint> m_pendingSince;
    /// Id of the screen on which the pending reveal started. It survives the reveal, so that a panel closed
    /// by other means stays closed until the pointer has left the zone once.
    std::optional<QString> m_pendingScreen;
    std::optional<TimePoint> m_heldUntil;
};

} // namespace randblatt
