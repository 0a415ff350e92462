#include "platform/wayland/LayerShellDesktop.h"

#include "platform/Coordinates.h"
#include "platform/ScreenNames.h"
#include "platform/wayland/PointerStrip.h"
#include "platform/wayland/ScreenPixels.h"
#include "platform/wayland/WorkAreaProbe.h"

#include <QGuiApplication>

#include <algorithm>

namespace randblatt {

LayerShellDesktop::LayerShellDesktop(QObject *parent)
    : Desktop(parent)
{
    if (!isUsable())
        return;
    connect(&m_pointer, &PointerTracker::moved, this, &Desktop::pointerMoved);
    // A change of screens comes as a burst of signals.
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(0);
    connect(&m_refreshTimer, &QTimer::timeout, this, &LayerShellDesktop::refresh);
    const auto present = QGuiApplication::screens();
    for (QScreen *screen : present)
        watch(screen);
    const auto refreshLater = qOverload<>(&QTimer::start);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &LayerShellDesktop::watch);
    connect(qGuiApp, &QGuiApplication::screenAdded, &m_refreshTimer, refreshLater);
    // At once, while the screen's own objects can still be told to go.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &LayerShellDesktop::refresh);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &m_refreshTimer, refreshLater);
    refresh();
}

LayerShellDesktop::~LayerShellDesktop() = default;

std::optional<Screen> LayerShellDesktop::mainScreen() const
{
    // Qt lists the primary screen first.
    return m_screens.isEmpty() ? std::nullopt : std::optional(m_screens.first());
}

std::optional<QPointF> LayerShellDesktop::pointerLocation() const
{
    const auto inCore = [this](const QString &screenID, const QPoint &origin) -> std::optional<QPointF> {
        const auto onScreen = screen(screenID);
        if (!onScreen)
            return std::nullopt;
        return positionInCore(origin + m_pointer.position(), onScreen->frame);
    };
    const QWindow *window = m_pointer.window();
    if (window == nullptr)
        return std::nullopt;
    if (window == m_panel)
        return inCore(m_panelScreenID, m_panelRect.topLeft());
    const auto strip = std::find_if(m_strips.begin(), m_strips.end(),
                                    [&](const Strip &known) { return known.window.get() == window; });
    return strip == m_strips.end() ? std::nullopt : inCore(strip->screenID, strip->window->rect().topLeft());
}

void LayerShellDesktop::watchPointer(const QList<PointerArea> &areas)
{
    if (m_areas == areas)
        return;
    m_areas = areas;
    layStrips();
}

std::optional<Screen> LayerShellDesktop::screen(const QString &id) const
{
    const auto it =
        std::find_if(m_screens.begin(), m_screens.end(), [&](const Screen &known) { return known.id == id; });
    return it == m_screens.end() ? std::nullopt : std::optional(*it);
}

QScreen *LayerShellDesktop::handle(const QString &id) const
{
    const auto it = std::find_if(m_outputs.begin(), m_outputs.end(),
                                 [&](const Output &output) { return output.id == id; });
    return it == m_outputs.end() ? nullptr : it->handle.data();
}

void LayerShellDesktop::followPanel(QWindow &panel)
{
    if (m_panel != nullptr)
        placePanel(*m_panel, m_panelScreenID, {}, {});
    m_panel = &panel;
    m_pointer.follow(panel);
}

void LayerShellDesktop::dropPanel(const QWindow &panel)
{
    placePanel(panel, m_panelScreenID, {}, {});
    if (m_panel == &panel)
        m_panel = nullptr;
}

void LayerShellDesktop::placePanel(const QWindow &panel, const QString &screenID, const QRect &rect,
                                   const QRegion &opening)
{
    if (m_panel != &panel)
        return;
    if (m_panelScreenID == screenID && m_panelRect == rect && m_opening == opening)
        return;
    m_panelScreenID = screenID;
    m_panelRect = rect;
    m_opening = opening;
    if (rect.isEmpty())
        m_pointer.forget(*m_panel);
    makeWayForPanel();
}

void LayerShellDesktop::watch(QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, &m_refreshTimer, qOverload<>(&QTimer::start));
}

void LayerShellDesktop::followScreens()
{
    const auto present = QGuiApplication::screens();
    std::vector<Output> outputs;
    ScreenNames names;
    for (QScreen *screen : present) {
        // While no output is connected, Qt has a screen without an area.
        if (screen->geometry().isEmpty() || WaylandConnection::output(*screen) == nullptr)
            continue;
        const auto known = std::find_if(m_outputs.begin(), m_outputs.end(),
                                        [&](const Output &output) { return output.handle == screen; });
        auto probe =
            known != m_outputs.end()
                ? std::move(known->workArea)
                : std::make_unique<WorkAreaProbe>(m_connection, *screen, [this] { m_refreshTimer.start(); });
        outputs.push_back({screen, std::move(probe), names.unique(screen->name())});
    }
    m_outputs = std::move(outputs);
}

void LayerShellDesktop::refresh()
{
    followScreens();
    QList<Screen> screens;
    for (const Output &output : m_outputs) {
        const QRect origin = m_outputs.front().handle->geometry();
        const QRect geometry = output.handle->geometry().translated(-origin.topLeft());
        const QRect whole(QPoint(), geometry.size());
        const QRect workArea = output.workArea->area().value_or(whole) & whole;
        screens.append({.id = output.id,
                        .frame = flipped(geometry, origin.height()),
                        .visibleFrame = flipped(workArea.translated(geometry.topLeft()), origin.height())});
    }
    if (screens == m_screens)
        return;
    m_screens = screens;
    Q_EMIT screensChanged();
    layStrips();
}

void LayerShellDesktop::layStrips()
{
    std::vector<Strip> strips;
    for (const Screen &screen : std::as_const(m_screens)) {
        for (const PointerArea &area : std::as_const(m_areas)) {
            const QRect rect = pointsWithin(area.rect, screen.frame);
            const bool isCovered = std::any_of(strips.begin(), strips.end(), [&](const Strip &strip) {
                return strip.screenID == screen.id && strip.window->rect().contains(rect);
            });
            if (rect.isEmpty() || isCovered)
                continue;
            const auto lies = std::find_if(m_strips.begin(), m_strips.end(), [&](const Strip &strip) {
                return strip.window && strip.screenID == screen.id && strip.window->rect() == rect;
            });
            if (lies != m_strips.end()) {
                strips.push_back(std::move(*lies));
                continue;
            }
            auto window =
                std::make_unique<PointerStrip>(m_connection, *handle(screen.id), rect, area.yieldsToClicks);
            m_pointer.follow(*window);
            connect(window.get(), &PointerStrip::yielded, &m_pointer,
                    [this, strip = window.get()] { m_pointer.forget(*strip); });
            connect(window.get(), &PointerStrip::pressed, this,
                    [this, frame = screen.frame](const QPoint &position) {
                        Q_EMIT pressed(positionInCore(position, frame));
                    });
            strips.push_back({screen.id, std::move(window)});
        }
    }
    // The old ones go only now, so that the pointer is not lost in between.
    m_strips.swap(strips);
    makeWayForPanel();
}

void LayerShellDesktop::makeWayForPanel()
{
    for (const Strip &strip : m_strips)
        strip.window->makeWayFor(strip.screenID == m_panelScreenID ? m_opening : QRegion());
}

} // namespace randblatt
