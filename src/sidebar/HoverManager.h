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

/// The edge trigger: decides on every tick, from the pointer alone, whether the panel is revealed or put
/// away.
///
/// A button that is held elsewhere, as by somebody who moves a window to the edge, reveals nothing, but what
/// is on its way to be dropped does; one that was pressed in the panel keeps it up until it is let go.
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
    /// How long a panel at which nobody points stays up after it has arrived, and after each key.
    static constexpr std::chrono::milliseconds holdDuration{2500};

    /// How a panel came up without the pointer's doing.
    enum class Cause { peek, call };

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
    /// Keeps the panel that has just been shown up for a moment from its arrival on; one that the user
    /// called, also beyond that, while it has the keyboard. Nothing if it is not up. The hold ends when the
    /// panel goes, and when the pointer comes to it: from then on the pointer decides. Typing holds a panel
    /// however it came up.
    void hold(Cause cause);
    /// Whether the panel is up for a peek and nobody has come to it.
    [[nodiscard]] bool isPeeking() const;

private:
    void evaluate();
    void checkHide();
    void checkReveal();
    [[nodiscard]] bool isHeld() const;
    [[nodiscard]] bool holdEndsByTime(TimePoint now) const;
    void startHold();
    void followTyping();
    void followDismissal();
    void letGo();
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
    /// Whether the last tick found a button held in the zone, with nothing to drop.
    bool m_awaitsRelease = false;
    std::optional<TimePoint> m_pendingSince;
    /// Id of the screen on which the pending reveal started. It survives the reveal, so that a panel closed
    /// by other means stays closed until the pointer has left the zone once.
    std::optional<QString> m_pendingScreen;

    struct Hold
    {
        Cause cause = Cause::peek;
        /// None until the panel has arrived.
        std::optional<TimePoint> until;
    };
    std::optional<Hold> m_hold;
    std::optional<TimePoint> m_typedUntil;
    /// Whether the panel slides out because nothing held it any longer, not because somebody left it.
    bool m_hidesUnattended = false;
};

} // namespace randblatt
