#pragma once

#include <QKeySequence>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class GlobalShortcut;
class Preferences;

/// The key with which the user shows and hides the panel from anywhere: kept with the settings, and bound
/// through the desktop for as long as the application runs.
class ShortcutSetting : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has it.")
    Q_PROPERTY(QString label READ label NOTIFY changed FINAL)
    Q_PROPERTY(QString problem READ problem NOTIFY changed FINAL)
    Q_PROPERTY(bool isAvailable READ isAvailable CONSTANT FINAL)
    Q_PROPERTY(QString command READ command CONSTANT FINAL)

public:
    /// Binds what an earlier run has stored. Both are borrowed and must outlive the object.
    ShortcutSetting(Preferences &preferences, GlobalShortcut &shortcut, QObject *parent = nullptr);

    /// The key under which it is stored.
    [[nodiscard]] static QString key();

    /// Takes a pressed combination, in terms of Qt::Key and Qt::KeyboardModifiers. False for one that is
    /// still in the making, or that would take a key from every text field.
    Q_INVOKABLE bool record(int key, int modifiers);
    Q_INVOKABLE void clear();

    /// The keys as people write them; empty for none.
    [[nodiscard]] QString label() const { return m_keys.toString(QKeySequence::NativeText); }
    /// Why the key does not work, in German; empty where it does.
    [[nodiscard]] QString problem() const { return m_problem; }
    /// Whether the desktop grants keys.
    [[nodiscard]] bool isAvailable() const;
    /// What a user may bind to a key where it does not.
    [[nodiscard]] static QString command();

Q_SIGNALS:
    void changed();

private:
    void bind();

    Preferences &m_preferences;
    GlobalShortcut &m_shortcut;
    QKeySequence m_keys;
    QString m_problem;
};

} // namespace randblatt
