#include "ui/controls/UndoKey.h"

#include <QKeyEvent>
#include <QQuickItem>

namespace randblatt {

void UndoKey::setWindow(QQuickWindow *window)
{
    if (m_window == window)
        return;
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
    Q_EMIT windowChanged();
}

bool UndoKey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || watched != m_window)
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    const QQuickItem *item = m_window->activeFocusItem();
    if (!key->matches(QKeySequence::Undo) || (item != nullptr && item->property("canUndo").toBool()))
        return false;
    // One press takes one change back.
    if (!key->isAutoRepeat())
        Q_EMIT pressed();
    return true;
}

} // namespace randblatt
