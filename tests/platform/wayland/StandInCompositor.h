#pragma once

#include <QPoint>
#include <QRegion>
#include <QSize>
#include <QStringList>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace randblatt {

namespace standin {
struct State;
}

/// A compositor for one client, on a thread of its own, that holds the client to the rules of the protocols:
/// what it does against them is noted as a fault. It has the layer shell and shows nothing to anybody.
///
/// Blur behaves as with the compositors that have it: as the state of a surface that its commit makes
/// current, and with KWin's protocol not before the surface is given another object for it.
class StandInCompositor
{
public:
    /// A surface of the layer shell as it was committed last: the panel or a strip.
    struct Panel
    {
        /// Another for every surface.
        int id = 0;
        int output = 0;
        QPoint margin;
        QSize size;
        /// The size of its picture; empty before it has one.
        QSize picture;
        bool takesKeyboard = false;
        /// What is blurred behind it, by each of the protocols.
        QRegion effectBlur;
        QRegion kwinBlur;
        /// Where it takes the pointer.
        QRegion input;
    };
    /// What is told first of an output that goes.
    enum class Farewell { surfacesFirst, outputFirst, outputAlone };

    /// Points the environment to itself; to be made before the application object.
    StandInCompositor();
    ~StandInCompositor();
    StandInCompositor(const StandInCompositor &) = delete;
    StandInCompositor &operator=(const StandInCompositor &) = delete;

    /// Puts an output to the right of the others and gives it a number, from 1.
    int plug(const QSize &size);
    void unplug(int output, Farewell farewell);
    /// Announces ext_background_effect_manager_v1, or tells anew whether there is blur now.
    void offerBackgroundEffects(bool withBlur);
    void withdrawBackgroundEffects();
    /// Announces org_kde_kwin_blur_manager.
    void offerKWinBlur();
    /// What is asked of it from now on is a fault, as its maker forgets what belongs to it.
    void withdrawKWinBlur();
    /// Takes the panels from the screen.
    void closePanels();
    /// Wishes that the panels had another size.
    void configurePanels(const QSize &size);

    /// The surface of this width that is there, if there is just one.
    [[nodiscard]] std::optional<Panel> panel(int width) const;
    /// The objects that ask for blur and were not destroyed.
    [[nodiscard]] int blurObjects() const;
    /// What the client did against the rules since this was asked last, one a line.
    [[nodiscard]] QString takeFaults();

private:
    void run();

    std::unique_ptr<standin::State> m_state;
    mutable std::mutex m_mutex;
    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};

} // namespace randblatt
