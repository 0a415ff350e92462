#include "platform/ScreenNames.h"

namespace randblatt {

using namespace Qt::StringLiterals;

QString ScreenNames::unique(const QString &systemName)
{
    const QString base = systemName.isEmpty() ? u"screen"_s : systemName;
    QString name = base;
    for (int number = 2; m_given.contains(name); ++number)
        name = base + u'#' + QString::number(number);
    m_given.append(name);
    return name;
}

} // namespace randblatt
