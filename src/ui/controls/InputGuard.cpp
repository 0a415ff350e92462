#include "ui/controls/InputGuard.h"

#include "ui/controls/Focus.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QStyleHints>

#include <algorithm>

namespace randblatt {

namespace {

// How far apart the presses of a double click may be: less than from one row's button to the next one's.
constexpr qreal mouseReach = 12;
constexpr qreal fingerReach = 22;
// In milliseconds; no keyboard repeats a key sooner.
constexpr quint64 shortestRepeatDelay = 100;

bool movesFocus(int key)
{
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    default:
        return false;
    }
}

/// Whether a control is pressed with the key.
bool pressesControls(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Select;
}

/// Whether the key, repeated, edits text in the item.
bool editsText(const QKeyEvent &key, const QQuickItem *item)
{
    if (item == nullptr || key.key() == Qt::Key_Escape)
        return false;
    if (item->inherits("QQuickTextEdit"))
        return true;
    return item->inherits("QQuickTextInput") && key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter;
}

/// The topmost item at the place that takes clicks; null where there is none.
QQuickItem *targetAt(QQuickItem *item, const QPointF &place)
{
    if (!item->isVisible() || !item->isEnabled())
        return nullptr;
    const bool isHit = item->contains(item->mapFromScene(place));
    if (item->clip() && !isHit)
        return nullptr;
    QList<QQuickItem *> children = item->childItems();
    std::stable_sort(children.begin(), children.end(),
                     [](const QQuickItem *a, const QQuickItem *b) { return a->z() < b->z(); });
    auto child = children.crbegin();
    for (; child != children.crend() && (*child)->z() >= 0; ++child) {
        if (QQuickItem *target = targetAt(*child, place))
            return target;
    }
    if (isHit && (item->acceptedMouseButtons() & Qt::LeftButton))
        return item;
    for (; child != children.crend(); ++child) {
        if (QQuickItem *target = targetAt(*child, place))
            return target;
    }
    return nullptr;
}

bool takesQuickClicks(const QQuickItem *item)
{
    for (; item != nullptr; item = item->parentItem()) {
        if (item->property("takesQuickClicks").toBool())
            return true;
    }
    return false;
}

/// Whether a key does nothing by itself.
bool isModifier(int key)
{
    return key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock;
}

void noteInput(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
        if (!isModifier(static_cast<const QKeyEvent &>(event).key()))
            Focus::note(Focus::Input::key);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        Focus::note(Focus::Input::press);
        break;
    case QEvent::MouseMove:
        Focus::note(Focus::Input::motion);
        break;
    default:
        break;
    }
}

void commitText(const QQuickWindow &window)
{
    const QQuickItem *item = window.activeFocusItem();
    if (item != nullptr && item->property("inputMethodComposing").toBool())
        QGuiApplication::inputMethod()->commit();
}

} // namespace

InputGuard::InputGuard(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool InputGuard::eventFilter(QObject *watched, QEvent *event)
{
    // Windows first: what items get is what a window passed on.
    if (!watched->isWindowType())
        return false;
    auto *window = qobject_cast<QQuickWindow *>(watched);
    if (window == nullptr)
        return false;
    noteInput(*event);
    bool stops = false;
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        stops = stopsKey(*window, *static_cast<QKeyEvent *>(event));
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        if (event->type() == QEvent::MouseButtonPress)
            commitText(*window);
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton)
            stops = stopsPointer(*window, *static_cast<QPointerEvent *>(event));
        break;
    case QEvent::TouchBegin:
        commitText(*window);
        [[fallthrough]];
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        stops = stopsPointer(*window, *static_cast<QPointerEvent *>(event));
        break;
    case QEvent::Hide:
        commitText(*window);
        break;
    default:
        break;
    }
    if (stops)
        event->accept();
    return stops;
}

bool InputGuard::isHiddenRepeat(const QKeyEvent &key) const
{
    const auto known = m_keys.constFind(key.key());
    return key.type() == QEvent::KeyPress && !key.isAutoRepeat() && key.nativeScanCode() != 0 &&
           known != m_keys.cend() && known->releasedAt == key.timestamp() &&
           key.timestamp() >= known->pressedAt + shortestRepeatDelay;
}

bool InputGuard::stopsKey(QQuickWindow &window, const QKeyEvent &key)
{
    if (isHiddenRepeat(key)) {
        // X11 tells a repeat as a release and a press at the same time, which the toolkit sees only if both
        // arrive together. Who comes next learns what it is.
        QKeyEvent repeat(key.type(), key.key(), key.modifiers(), key.nativeScanCode(), key.nativeVirtualKey(),
                         key.nativeModifiers(), key.text(), true, static_cast<quint16>(key.count()));
        repeat.setTimestamp(key.timestamp());
        QCoreApplication::sendEvent(&window, &repeat);
        return true;
    }
    QQuickItem *item = window.activeFocusItem();
    Key &known = m_keys[key.key()];
    if (key.isAutoRepeat()) {
        // Text goes where the first key has led; other keys act only where they were pressed.
        const bool isText = !key.text().isEmpty() && key.text().front().isPrint();
        const bool passes = movesFocus(key.key()) || (editsText(key, item) && (isText || known.item == item));
        known.isDown = known.isDown || (passes && key.type() == QEvent::KeyPress);
        return !passes;
    }
    if (key.type() == QEvent::KeyPress) {
        known = {item, true, key.timestamp(), std::nullopt};
        return false;
    }
    const bool wasPressedHere = known.isDown && known.item == item;
    known.isDown = false;
    known.releasedAt = key.timestamp();
    return !wasPressedHere && pressesControls(key.key());
}

bool InputGuard::stopsPointer(QQuickWindow &window, const QPointerEvent &event)
{
    if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::TouchBegin)
        m_stopsSequence = stopsPress(window, event);
    return m_stopsSequence;
}

bool InputGuard::stopsPress(QQuickWindow &window, const QPointerEvent &event)
{
    const bool isFinger = event.type() == QEvent::TouchBegin;
    const QPointF place = event.points().first().position();
    QQuickItem *target = targetAt(window.contentItem(), place);
    const auto interval = static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    const qreal distance = QLineF(m_press.place, place).length();
    const bool isSecond = m_press.window == &window && event.timestamp() - m_press.time < interval &&
                          distance <= (isFinger ? fingerReach : mouseReach);
    if (isSecond && target != m_press.target && !takesQuickClicks(target))
        return true;
    m_press = {&window, place, event.timestamp(), target};
    return false;
}

} // namespace randblatt
