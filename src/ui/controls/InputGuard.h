#pragma once

#include <QHash>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QQuickItem>

#include <optional>

class QKeyEvent;
class QPointerEvent;
class QQuickWindow;

namespace randblatt {

/// Sees to it, in all Qt Quick windows of the application, that one press does one thing.
///
/// A key that is held repeats only what moves the focus or edits text: it presses no button again, and
/// deletes no second row. Its release acts only where it was pressed. Of a double click or tap the second
/// press goes only to what the first one hit, not to what has come under the pointer since; controls that are
/// meant to be clicked in a row while they change places say so by a property `takesQuickClicks` of theirs or
/// of a parent.
///
/// A word that an input method has in the making is taken over before a click uses the text, and before the
/// window hides.
class InputGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards from now on until the object goes.
    explicit InputGuard(QObject *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// The latest press of a button or finger that was let through.
    struct Press
    {
        QPointer<QQuickWindow> window;
        QPointF place;
        /// In milliseconds.
        quint64 time = 0;
        /// What it hit. The pointer is null too where that is gone.
        QPointer<QQuickItem> target;
    };

    /// The latest press of a key.
    struct Key
    {
        /// What had the keyboard then.
        QPointer<QQuickItem> item;
        bool isDown = false;
        /// In milliseconds.
        quint64 pressedAt = 0;
        /// None while the key is down.
        std::optional<quint64> releasedAt;
    };

    [[nodiscard]] bool isHiddenRepeat(const QKeyEvent &key) const;
    [[nodiscard]] bool stopsKey(QQuickWindow &window, const QKeyEvent &key);
    [[nodiscard]] bool stopsPress(QQuickWindow &window, const QPointerEvent &event);
    [[nodiscard]] bool stopsPointer(QQuickWindow &window, const QPointerEvent &event);

    QHash<int, Key> m_keys;
    Press m_press;
    /// Whether what follows belongs to a press that was stopped.
    bool m_stopsSequence = false;
};

} // namespace randblatt
