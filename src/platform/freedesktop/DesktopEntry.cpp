#include "platform/freedesktop/DesktopEntry.h"

namespace randblatt {

using namespace Qt::StringLiterals;

QString desktopEntryString(QString text)
{
    return text.replace(u'\\', "\\\\"_L1);
}

QString desktopEntryArgument(const QString &argument)
{
    QString inner;
    for (const QChar character : argument) {
        if (character == u'"' || character == u'`' || character == u'$' || character == u'\\')
            inner += u'\\';
        inner += character == u'%' ? u"%%"_s : QString(character);
    }
    return u'"' + inner + u'"';
}

} // namespace randblatt
