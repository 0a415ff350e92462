#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class Preferences;

/// What is being typed and not yet given away: a text, or named values that belong together. Modules own
/// their drafts and views only show them, so a draft outlives the view and the panel; every change is stored
/// before it is announced, so it outlives the process as well. To be used on the main thread.
class Draft : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Modules make their drafts.")
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed FINAL)

public:
    /// Takes up what is stored under `key`, which no other draft has. `preferences` is borrowed and must
    /// outlive the draft.
    Draft(Preferences &preferences, const QString &key, QObject *parent = nullptr);

    /// A draft of one text: the value named "text".
    [[nodiscard]] QString text() const;
    void setText(const QString &text);

    /// Undefined where there is none.
    [[nodiscard]] QJsonValue value(const QString &name) const { return m_values.value(name); }
    /// Null, undefined and the empty string take the value away.
    void setValue(const QString &name, const QJsonValue &value);
    [[nodiscard]] QJsonObject values() const { return m_values; }
    /// Replaces all values at once.
    void setValues(const QJsonObject &values);
    /// What was typed has been given away, or is not wanted any more.
    Q_INVOKABLE void clear();

    [[nodiscard]] bool isEmpty() const { return m_values.isEmpty(); }

Q_SIGNALS:
    void changed();

private:
    Preferences &m_preferences;
    QString m_key;
    QJsonObject m_values;
};

} // namespace randblatt
