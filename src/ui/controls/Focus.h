#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// Gives items the keyboard in the way of the latest input: after a key so that it is seen where the keyboard
/// is, after a press of the pointer so that it is not.
class Focus : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isPointing READ isPointing NOTIFY isPointingChanged FINAL)

public:
    explicit Focus(QObject *parent = nullptr);
    ~Focus() override;

    /// Whether the pointer was used last, pressed or merely moved, rather than the keyboard.
    [[nodiscard]] bool isPointing() const;

    /// Gives the keyboard to the item or, in a scope, to what has the focus there; null does nothing. What
    /// has it already shows it, or no longer shows it, all the same.
    Q_INVOKABLE static void give(QQuickItem *item);
    [[nodiscard]] Q_INVOKABLE static Qt::FocusReason reason();

    enum class Input { key, press, motion };
    /// Something came to one of the application's windows.
    static void note(Input input);

Q_SIGNALS:
    void isPointingChanged();
};

} // namespace randblatt
