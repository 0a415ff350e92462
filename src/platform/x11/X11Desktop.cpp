#include "platform/x11/X11Desktop.h"

#include "platform/ScreenNames.h"

#include <QGuiApplication>
#include <QScreen>
#include <qpa/qplatformscreen.h>

#include <chrono>
#include <cstdlib>

namespace randblatt {

using namespace std::chrono_literals;

namespace {

// Without those that a wheel stands for.
constexpr int mouseButtons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

constexpr auto dragCheck = 80ms;

} // namespace

X11Desktop::X11Desktop(QObject *parent)
    : Desktop(parent)
    , m_workAreas(m_x11)
    , m_compositor("_NET_WM_CM_S")
    , m_dragged("XdndSelection", SelectionWatcher::Scope::display)
{
    // A change of monitors comes as a burst of signals and properties.
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(0);
    connect(&m_refreshTimer, &QTimer::timeout, this, &X11Desktop::refresh);
    connect(&m_motion, &PointerMotion::moved, this, &Desktop::pointerMoved);
    connect(&m_motion, &PointerMotion::pressed, this, [this] {
        // Not pointerLocation(): the next movement may not be of interest.
        const auto pointer = queryPointer();
        if (const auto place = pointer ? m_layout.pixelInCore(pointer->pixel) : std::nullopt)
            Q_EMIT pressed(*place);
    });
    connect(&m_compositor, &SelectionWatcher::ownerChanged, this, &Desktop::compositedChanged);
    // Some never give the selection up: the drag ends with the button.
    m_dragEnd.setInterval(dragCheck);
    connect(&m_dragged, &SelectionWatcher::taken, this, &X11Desktop::followDrag);
    connect(&m_dragEnd, &QTimer::timeout, this, &X11Desktop::followDrag);

    const auto present = QGuiApplication::screens();
    for (const QScreen *screen : present)
        watch(screen);
    const auto refreshLater = qOverload<>(&QTimer::start);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &X11Desktop::watch);
    connect(qGuiApp, &QGuiApplication::screenAdded, &m_refreshTimer, refreshLater);
    connect(qGuiApp, &QGuiApplication::screenRemoved, &m_refreshTimer, refreshLater);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &m_refreshTimer, refreshLater);
    QCoreApplication::instance()->installNativeEventFilter(this);
    refresh();
}

std::optional<Screen> X11Desktop::mainScreen() const
{
    // Qt lists the primary screen first.
    return m_screens.isEmpty() ? std::nullopt : std::optional(m_screens.first());
}

std::optional<QPointF> X11Desktop::pointerLocation() const
{
    // Before the question, so that no movement falls between the two.
    m_motion.watch();
    const auto pointer = queryPointer();
    return pointer ? m_layout.pixelInCore(pointer->pixel) : std::nullopt;
}

std::optional<X11Desktop::Pointer> X11Desktop::queryPointer() const
{
    const auto cookie = xcb_query_pointer(m_x11.xcb(), m_x11.root());
    xcb_query_pointer_reply_t *reply = xcb_query_pointer_reply(m_x11.xcb(), cookie, nullptr);
    std::optional<Pointer> pointer;
    if (reply && reply->same_screen)
        pointer = Pointer{QPoint(reply->root_x, reply->root_y), reply->child,
                          (reply->mask & mouseButtons) != 0, cookie.sequence};
    std::free(reply);
    return pointer;
}

bool X11Desktop::isButtonHeld() const
{
    const auto pointer = queryPointer();
    return pointer && pointer->isButtonHeld;
}

void X11Desktop::followDrag()
{
    m_isDragging = isButtonHeld();
    if (!m_isDragging)
        m_dragEnd.stop();
    else if (!m_dragEnd.isActive())
        m_dragEnd.start();
}

bool X11Desktop::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
        m_workAreas.dependOn(*reinterpret_cast<const xcb_property_notify_event_t *>(event)))
        m_refreshTimer.start();
    return false;
}

void X11Desktop::watch(const QScreen *screen)
{
    const auto refreshLater = qOverload<>(&QTimer::start);
    connect(screen, &QScreen::geometryChanged, &m_refreshTimer, refreshLater);
    connect(screen, &QScreen::logicalDotsPerInchChanged, &m_refreshTimer, refreshLater);
}

void X11Desktop::refresh()
{
    const auto present = QGuiApplication::screens();
    ScreenNames names;
    QList<Monitor> monitors;
    QList<QRect> frames;
    QStringList ids;
    for (const QScreen *screen : present) {
        // While no output is connected, Qt has a screen without an area.
        const QRect native = screen->handle()->geometry();
        if (native.isEmpty())
            continue;
        monitors.append({.native = native, .factor = screen->devicePixelRatio()});
        frames.append(native);
        ids.append(names.unique(screen->name()));
    }
    m_layout = ScreenLayout(monitors);

    const QList<QRect> workAreas = m_workAreas.read(frames);
    QList<Screen> screens;
    for (qsizetype i = 0; i < monitors.size(); ++i)
        screens.append({.id = ids[i],
                        .frame = m_layout.inCore(frames[i], monitors[i]),
                        .visibleFrame = m_layout.inCore(workAreas[i], monitors[i])});
    if (screens == m_screens)
        return;
    m_screens = screens;
    Q_EMIT screensChanged();
}

} // namespace randblatt
