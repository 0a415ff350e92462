#include "ui/controls/TextKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace randblatt {

void TextKeys::press(QQuickItem *field, int key)
{
    const QKeySequence keys(static_cast<QKeySequence::StandardKey>(key));
    if (field == nullptr || keys.isEmpty())
        return;
    QKeyEvent event(QEvent::KeyPress, keys[0].key(), keys[0].keyboardModifiers());
    QCoreApplication::sendEvent(field, &event);
}

} // namespace randblatt
