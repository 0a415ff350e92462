#pragma once

#include "platform/Screen.h"

#include <QObject>
#include <QVariantAnimation>

#include <functional>
#include <memory>
#include <optional>

namespace randblatt {

class AppSettings;
class Desktop;
class PanelWindow;

/// Owns the one panel: places it, slides it in and out, and knows whether it is up and on which screen.
///
/// The panel is made on the first show and reused until tearDown(). A panel whose screen is unplugged is torn
/// down; one whose screen changes its size or its docks follows at once.
class SidebarPanelController : public QObject
{
    Q_OBJECT

public:
    /// Makes a panel window of the given size in points, hidden; null where the desktop has none to give.
    using PanelFactory = std::function<std::unique_ptr<PanelWindow>(const QSizeF &size)>;

    /// `settings` and `desktop` are borrowed and must outlive the controller.
    SidebarPanelController(AppSettings &settings, Desktop &desktop, PanelFactory makePanel,
                           QObject *parent = nullptr);
    ~SidebarPanelController() override;

    /// What a panel does with the keyboard when it is shown.
    enum class Keyboard { take, leave };

    /// Slides the panel in on `screen`, also from the middle of its way out, or across from another screen.
    /// One that is to be always visible never takes the keyboard.
    void show(const Screen &screen, Keyboard keyboard = Keyboard::take);
    /// Slides the panel out; nothing while it is hidden or on its way out.
    void hide();
    /// The user is done with the panel: it slides out or, where it is to be always visible, gives the
    /// keyboard back.
    void dismiss();
    /// Gives the panel the keyboard, also where it is to be always visible; nothing while it is hidden.
    void takeKeyboard();
    /// Hides and discards the panel at once; the next show makes a new one.
    void tearDown();

    /// Whether the panel is to be where it is sent at once, without a slide; one that is under way ends.
    void setReducedMotion(bool reduced);

    /// From the start of a show to the end of the slide out.
    [[nodiscard]] bool isVisible() const { return m_isVisible; }
    [[nodiscard]] bool isAnimatingOut() const { return m_isAnimatingOut; }
    [[nodiscard]] bool isAnimatingIn() const
    {
        return m_animation.state() == QAbstractAnimation::Running && !m_isAnimatingOut;
    }
    /// The screen on which the panel was last shown, as it is now; none before the first show and when that
    /// screen has been unplugged.
    [[nodiscard]] std::optional<Screen> currentScreen() const;

Q_SIGNALS:
    void isVisibleChanged();
    /// show() has sent the panel somewhere.
    void slideInStarted();
    /// The panel is where show() sent it.
    void slidIn();
    /// hide() has sent the panel away.
    void slideOutStarted();

private:
    struct Slide
    {
        /// Kept until the slide ends, also when the controller has dropped the panel meanwhile.
        std::shared_ptr<PanelWindow> panel;
        QRectF from;
        QRectF to;
        double alphaFrom = 0.0;
        double alphaTo = 0.0;
    };

    void start(Slide slide, int milliseconds, const QEasingCurve &easing);
    void step(double progress);
    void finish();
    void setVisible(bool visible);
    void followScreens();

    AppSettings &m_settings;
    Desktop &m_desktop;
    PanelFactory m_makePanel;
    std::shared_ptr<PanelWindow> m_panel;
    bool m_isVisible = false;
    bool m_isAnimatingOut = false;
    bool m_reducedMotion = false;
    QString m_currentScreenID;
    Slide m_slide;
    QVariantAnimation m_animation;
};

} // namespace randblatt
