#include "settings/Draft.h"

#include "settings/Preferences.h"

namespace randblatt {

using namespace Qt::StringLiterals;

Draft::Draft(Preferences &preferences, const QString &key, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_key(key)
    , m_values(preferences.draft(key))
{
    // What could not be read at first; what has been typed since stays.
    connect(&preferences.health(), &StoreHealth::draftArrived, this, [this](const QString &arrived) {
        if (arrived != m_key || !m_values.isEmpty())
            return;
        m_values = m_preferences.draft(m_key);
        Q_EMIT changed();
    });
}

QString Draft::text() const
{
    return value(u"text"_s).toString();
}

void Draft::setText(const QString &text)
{
    setValue(u"text"_s, text);
}

void Draft::setValue(const QString &name, const QJsonValue &value)
{
    QJsonObject values = m_values;
    if (value.isNull() || value.isUndefined() || (value.isString() && value.toString().isEmpty()))
        values.remove(name);
    else
        values.insert(name, value);
    setValues(values);
}

void Draft::setValues(const QJsonObject &values)
{
    if (m_values == values)
        return;
    m_values = values;
    m_preferences.setDraft(m_key, values);
    Q_EMIT changed();
}

void Draft::clear()
{
    setValues({});
}

} // namespace randblatt
