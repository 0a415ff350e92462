#pragma once

#include <QKeySequence>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// Does in a text field what a key of the desktop's does there, for those who use a menu.
class TextKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// `key` is one of QKeySequence's standard keys.
    Q_INVOKABLE static void press(QQuickItem *field, int key);
};

} // namespace randblatt
