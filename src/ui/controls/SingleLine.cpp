#include "ui/controls/SingleLine.h"

#include <algorithm>

namespace randblatt {

namespace {

bool endsLine(QChar character)
{
    switch (character.unicode()) {
    case u'\n':
    case u'\v':
    case u'\f':
    case u'\r':
    case u'\u0085':
    case QChar::LineSeparator:
    case QChar::ParagraphSeparator:
        return true;
    default:
        return false;
    }
}

} // namespace

QValidator::State SingleLine::validate(QString &text, int &cursor) const
{
    const QString clean = cleaned(text);
    if (clean != text) {
        cursor = static_cast<int>(cleaned(text.left(cursor)).size());
        text = clean;
    }
    return Acceptable;
}

QString SingleLine::cleaned(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), [](QChar character) {
            return endsLine(character) || character.category() == QChar::Other_Control;
        }))
        return text;
    QString clean;
    clean.reserve(text.size());
    bool inBreak = false;
    for (const QChar character : text) {
        if (endsLine(character)) {
            if (!inBreak)
                clean += u' ';
            inBreak = true;
            continue;
        }
        inBreak = false;
        if (character == u'\t')
            clean += u' ';
        else if (character.category() != QChar::Other_Control)
            clean += character;
    }
    return clean;
}

} // namespace randblatt
