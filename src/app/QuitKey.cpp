#include "app/QuitKey.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace randblatt {

QuitKey::QuitKey(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool QuitKey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWindowType())
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_Q || key->modifiers() != Qt::ControlModifier || key->isAutoRepeat())
        return false;
    Q_EMIT pressed();
    return true;
}

} // namespace randblatt
