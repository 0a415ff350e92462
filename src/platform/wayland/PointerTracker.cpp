#include "platform/wayland/PointerTracker.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QWindow>

#include <chrono>

namespace randblatt {

namespace {

using namespace std::chrono_literals;

// On its way from one window to the next the pointer is nowhere in between. With some compositors also while
// they look for what is below it, when a window has come up there.
constexpr auto betweenWindows = 20ms;

} // namespace

PointerTracker::PointerTracker(QObject *parent)
    : QObject(parent)
{
    m_leaving.setSingleShot(true);
    m_leaving.setInterval(betweenWindows);
    connect(&m_leaving, &QTimer::timeout, this, &PointerTracker::leave);
}

void PointerTracker::follow(QWindow &window)
{
    window.installEventFilter(this);
    connect(&window, &QObject::destroyed, this, [this, window = &window] { forget(*window); });
}

void PointerTracker::forget(const QWindow &window)
{
    if (m_window == &window)
        m_leaving.start();
}

bool PointerTracker::eventFilter(QObject *watched, QEvent *event)
{
    const auto *window = static_cast<const QWindow *>(watched);
    switch (event->type()) {
    case QEvent::Enter:
        // Nobody enters a window with a button that is held elsewhere, but its release may go unheard.
        m_isButtonHeld = m_isDragging = false;
        enter(*window, static_cast<const QEnterEvent *>(event)->position());
        break;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        m_isButtonHeld = static_cast<const QMouseEvent *>(event)->buttons() != Qt::NoButton;
        m_isDragging = false;
        enter(*window, static_cast<const QMouseEvent *>(event)->position());
        break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
        m_isDragging = true;
        enter(*window, static_cast<const QDropEvent *>(event)->position());
        break;
    case QEvent::DragLeave:
    case QEvent::Drop:
    case QEvent::Leave:
        if (m_window == window)
            m_leaving.start();
        break;
    default:
        break;
    }
    return false;
}

void PointerTracker::enter(const QWindow &window, const QPointF &position)
{
    m_leaving.stop();
    if (m_window == &window && m_position == position)
        return;
    m_window = &window;
    m_position = position;
    Q_EMIT moved();
}

void PointerTracker::leave()
{
    m_window = nullptr;
    m_isDragging = false;
    Q_EMIT moved();
}

} // namespace randblatt
