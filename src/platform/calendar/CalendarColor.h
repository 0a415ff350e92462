#pragma once

#include <QColor>
#include <QString>

namespace randblatt {

/// A calendar's colour as programs write it: a name, or hexadecimal digits, with those of the opacity at the
/// end, if any. It is opaque; invalid if it is none of these.
[[nodiscard]] inline QColor calendarColor(const QString &text)
{
    const QString trimmed = text.trimmed();
    // The toolkit takes the first two of eight digits for the opacity.
    constexpr qsizetype withOpacity = 9;
    const bool isLong = trimmed.startsWith(u'#') && trimmed.size() == withOpacity;
    return QColor(isLong ? trimmed.chopped(2) : trimmed);
}

} // namespace randblatt
