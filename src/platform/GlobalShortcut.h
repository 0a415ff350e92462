#pragma once

#include <QKeySequence>
#include <QObject>

namespace randblatt {

/// A key of the user's that reaches the application wherever the keyboard is. This class stands for a desktop
/// that grants none.
class GlobalShortcut : public QObject
{
    Q_OBJECT

public:
    /// What became of the wish.
    enum class Outcome {
        bound,
        taken,   ///< another program has the key
        refused, ///< the desktop has no such key, or grants none
    };

    using QObject::QObject;

    /// Whether the desktop grants keys at all.
    [[nodiscard]] virtual bool isAvailable() const { return false; }
    /// Binds this one key combination in the place of the one before; an empty one only gives that back.
    virtual Outcome bind(const QKeySequence &keys)
    {
        return keys.isEmpty() ? Outcome::bound : Outcome::refused;
    }

Q_SIGNALS:
    void activated();
};

} // namespace randblatt
