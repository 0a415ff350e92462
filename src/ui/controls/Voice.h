#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class ScreenReader;

/// By which views tell what has happened to who does not see it.
class Voice : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Speaks for all views from now on; borrowed. Null, as at first, is silent.
    static void use(ScreenReader *reader);

    /// Nothing is said of what is not on the screen.
    Q_INVOKABLE static void say(QQuickItem *source, const QString &text, bool isUrgent = false);
};

} // namespace randblatt
