#include "sidebar/SidebarPanelController.h"

#include "platform/Desktop.h"
#include "platform/PanelWindow.h"
#include "settings/AppSettings.h"
#include "sidebar/PanelGeometry.h"

#include <QEasingCurve>
#include <QLoggingCategory>

#include <algorithm>

namespace randblatt {

namespace {

Q_LOGGING_CATEGORY(lcPanel, "quillbar.panel", QtInfoMsg)

// The way out is shorter than the way in and has the opposite curve.
constexpr int slideInMilliseconds = 220;
constexpr int slideOutMilliseconds = 180;

QEasingCurve cubicBezier(const QPointF &first, const QPointF &second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1, 1});
    return curve;
}

QEasingCurve easeOut()
{
    return cubicBezier({0, 0}, {0.58, 1});
}

QEasingCurve easeIn()
{
    return cubicBezier({0.42, 0}, {1, 1});
}

double between(double from, double to, double progress)
{
    return from + (to - from) * progress;
}

QRectF between(const QRectF &from, const QRectF &to, double progress)
{
    return {between(from.x(), to.x(), progress), between(from.y(), to.y(), progress),
            between(from.width(), to.width(), progress), between(from.height(), to.height(), progress)};
}

} // namespace

SidebarPanelController::SidebarPanelController(AppSettings &settings, Desktop &desktop,
                                               PanelFactory makePanel, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_desktop(desktop)
    , m_makePanel(std::move(makePanel))
{
    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &progress) { step(progress.toDouble()); });
    connect(&m_animation, &QVariantAnimation::finished, this, &SidebarPanelController::finish);
    connect(&m_desktop, &Desktop::screensChanged, this, &SidebarPanelController::followScreens);
}

SidebarPanelController::~SidebarPanelController() = default;

void SidebarPanelController::show(const Screen &screen, Keyboard keyboard)
{
    const PanelGeometry geometry = panelGeometry(screen.visibleFrame, m_settings.sidebarSide(),
                                                 m_settings.panelWidth(), m_settings.panelHeightFraction());
    if (!m_isVisible)
        qCDebug(lcPanel, "Einblenden");
    if (!m_panel)
        m_panel = m_makePanel(geometry.shown.size());
    if (!m_panel)
        return;
    m_panel->setScreen(screen);
    m_currentScreenID = screen.id;
    m_isAnimatingOut = false;
    if (!m_isVisible) {
        m_panel->setFrame(geometry.hidden);
        m_panel->setAlpha(0.0);
        m_panel->orderFront();
    }
    if (!m_settings.alwaysVisible() && keyboard == Keyboard::take)
        m_panel->makeKey();
    setVisible(true);
    start({m_panel, m_panel->frame(), geometry.shown, m_panel->alpha(), 1.0}, slideInMilliseconds, easeOut());
    Q_EMIT slideInStarted();
}

void SidebarPanelController::hide()
{
    const auto screen = currentScreen();
    if (!m_isVisible || !m_panel || !screen || m_isAnimatingOut)
        return;
    m_isAnimatingOut = true;
    QRectF target = m_panel->frame();
    target.moveLeft(hiddenX(screen->visibleFrame, m_settings.sidebarSide(), target.width()));
    start({m_panel, m_panel->frame(), target, m_panel->alpha(), 0.0}, slideOutMilliseconds, easeIn());
    Q_EMIT slideOutStarted();
}

void SidebarPanelController::dismiss()
{
    if (!m_settings.alwaysVisible())
        hide();
    else if (m_panel)
        m_panel->resignKey();
}

void SidebarPanelController::takeKeyboard()
{
    if (m_panel && m_isVisible)
        m_panel->makeKey();
}

void SidebarPanelController::tearDown()
{
    if (!m_isAnimatingOut) {
        m_animation.stop();
        m_slide = {};
    }
    if (m_panel)
        m_panel->orderOut();
    m_panel.reset();
    setVisible(false);
}

void SidebarPanelController::setReducedMotion(bool reduced)
{
    m_reducedMotion = reduced;
    if (reduced && m_animation.state() == QAbstractAnimation::Running)
        m_animation.setCurrentTime(m_animation.duration());
}

std::optional<Screen> SidebarPanelController::currentScreen() const
{
    const QList<Screen> screens = m_desktop.screens();
    const auto it = std::find_if(screens.begin(), screens.end(),
                                 [this](const Screen &screen) { return screen.id == m_currentScreenID; });
    if (it == screens.end())
        return std::nullopt;
    return *it;
}

void SidebarPanelController::start(Slide slide, int milliseconds, const QEasingCurve &easing)
{
    m_animation.stop();
    // With another duration or curve the animation is elsewhere at once, where it was left the last time.
    m_slide = {};
    // With no time at all it would end before it has started, and its followers would hear of the end first.
    m_animation.setDuration(m_reducedMotion ? 1 : milliseconds);
    m_animation.setEasingCurve(easing);
    m_slide = std::move(slide);
    m_animation.start();
}

void SidebarPanelController::step(double progress)
{
    if (!m_slide.panel)
        return;
    m_slide.panel->setFrame(between(m_slide.from, m_slide.to, progress));
    m_slide.panel->setAlpha(between(m_slide.alphaFrom, m_slide.alphaTo, progress));
}

void SidebarPanelController::finish()
{
    const Slide slide = std::exchange(m_slide, {});
    if (!m_isAnimatingOut) {
        Q_EMIT slidIn();
        return;
    }
    slide.panel->orderOut();
    m_isAnimatingOut = false;
    setVisible(false);
}

void SidebarPanelController::setVisible(bool visible)
{
    if (m_isVisible == visible)
        return;
    m_isVisible = visible;
    Q_EMIT isVisibleChanged();
}

void SidebarPanelController::followScreens()
{
    if (!m_isVisible || m_isAnimatingOut)
        return;
    const auto screen = currentScreen();
    if (!screen) {
        tearDown();
        return;
    }
    const QRectF shown = panelGeometry(screen->visibleFrame, m_settings.sidebarSide(),
                                       m_settings.panelWidth(), m_settings.panelHeightFraction())
                             .shown;
    if (m_animation.state() == QAbstractAnimation::Running)
        m_slide.to = shown;
    else if (m_panel->frame() != shown)
        m_panel->setFrame(shown);
}

} // namespace randblatt
