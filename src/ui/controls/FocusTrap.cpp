#include "ui/controls/FocusTrap.h"

#include <QKeyEvent>

namespace randblatt {

void FocusTrap::setScope(QQuickItem *scope)
{
    if (m_scope == scope)
        return;
    if (m_scope)
        m_scope->disconnect(this);
    m_scope = scope;
    if (m_scope)
        connect(m_scope, &QQuickItem::windowChanged, this, &FocusTrap::follow);
    follow(m_scope ? m_scope->window() : nullptr);
    Q_EMIT scopeChanged();
}

bool FocusTrap::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || watched != m_window)
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool isTab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    QQuickItem *focused = m_window->activeFocusItem();
    if (!isTab || (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) || !holds(focused))
        return false;
    const bool forward = key->key() == Qt::Key_Tab && !(key->modifiers() & Qt::ShiftModifier);
    QQuickItem *next = focused;
    do {
        next = next->nextItemInFocusChain(forward);
    } while (next != nullptr && next != focused && !holds(next));
    if (next != nullptr)
        next->forceActiveFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void FocusTrap::follow(QQuickWindow *window)
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
}

bool FocusTrap::holds(const QQuickItem *item) const
{
    return item != nullptr && m_scope && (item == m_scope || m_scope->isAncestorOf(item));
}

} // namespace randblatt
