#pragma once

#include <QString>
#include <QStringList>

namespace randblatt {

/// Gives each screen of one enumeration a name of its own, from the names that the system gives, which may
/// repeat or be empty.
class ScreenNames
{
public:
    [[nodiscard]] QString unique(const QString &systemName);

private:
    QStringList m_given;
};

} // namespace randblatt
