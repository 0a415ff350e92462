#include "platform/freedesktop/DesktopEntry.h"

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto escapedBreaks = "\n\r\t"_L1;

} // namespace

bool fitsDesktopEntry(const QString &text)
{
    return std::none_of(text.cbegin(), text.cend(), [](QChar character) {
        const bool isControl = character < u' ' || character == u'\x7f';
        return isControl && !escapedBreaks.contains(character);
    });
}

QString desktopEntryString(QString text)
{
    return text.replace(u'\\', "\\\\"_L1)
        .replace(u'\n', "\\n"_L1)
        .replace(u'\r', "\\r"_L1)
        .replace(u'\t', "\\t"_L1);
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
