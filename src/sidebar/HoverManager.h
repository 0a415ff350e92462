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
///
/// Where the desktop reports the pointer's motion, the ticks rest while another one could change nothing;
/// they stay on their grid, so that every decision falls in the tick in which it would have fallen without a
/// rest.
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
    /// One evaluation. Once started, the next one is planned from here, if one is needed.
    void tick();
    /// When the timer ticks next; none before the start and while the ticks rest.
    [[nodiscard]] std::optional<TimePoint> nextTick() const { return m_nextTick; }
    /// Keeps a panel that was shown without the pointer's doing up for `duration`. The hold ends early when
    /// the pointer comes to the panel: from then on the pointer decides.
    void hold(std::chrono::milliseconds duration);
    /// Whether the pointer, or a view, keeps the panel up: in its area or in the trigger zone of its screen.
    [[nodiscard]] bool keepsPanelUp() const;

private:
    void evaluate();
    void checkHide();
    void checkReveal();
    void wakeOnChanges();
    void wake();
    void planTick();
    [[nodiscard]] bool canRest(TimePoint now) const;
    [[nodiscard]] std::optional<QPointF> readPointer();
    [[nodiscard]] bool isAtPanel(const std::optional<QPointF> &point) const;
    [[nodiscard]] std::optional<Screen> screenUnder(const std::optional<QPointF> &point) const;
    [[nodiscard]] TriggerZone zone() const;

    const AppSettings &m_settings;
    const Desktop &m_desktop;
    const SidebarUIState &m_uiState;
    SidebarPanelController &m_controller;
    Clock m_clock;
    QTimer m_timer;
    /// The time of the start: ticks fall whole intervals after it.
    std::optional<TimePoint> m_gridOrigin;
    std::optional<TimePoint> m_nextTick;
    std::optional<QPointF> m_pointer;
    /// Whether the last tick found the pointer where the one before had, or did not ask.
    bool m_isPointerStill = false;
    std::optional<TimePoint> m_pendingSince;
    /// Id of the screen on which the pending reveal started. It survives the reveal, so that a panel closed
    /// by other means stays closed until the pointer has left the zone once.
    std::optional<QString> m_pendingScreen;
    std::optional<TimePoint> m_heldUntil;
};

} // namespace randblatt
