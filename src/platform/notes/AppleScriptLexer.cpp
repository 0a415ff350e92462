#include "platform/notes/AppleScriptLexer.h"

#include "platform/notes/AppleScriptError.h"

#include <array>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

using Kind = AppleScriptToken::Kind;

constexpr QChar continuationSign(u'¬');

struct Spelling
{
    QStringView written;
    QStringView meaning;
};

// Longer spellings first.
constexpr std::array spellings{
    Spelling{u"<=", u"≤"}, Spelling{u">=", u"≥"}, Spelling{u"/=", u"≠"}, Spelling{u"÷", u"/"},
    Spelling{u"≤", u"≤"},  Spelling{u"≥", u"≥"},  Spelling{u"≠", u"≠"},  Spelling{u"(", u"("},
    Spelling{u")", u")"},  Spelling{u"{", u"{"},  Spelling{u"}", u"}"},  Spelling{u",", u","},
    Spelling{u":", u":"},  Spelling{u"&", u"&"},  Spelling{u"+", u"+"},  Spelling{u"-", u"-"},
    Spelling{u"*", u"*"},  Spelling{u"/", u"/"},  Spelling{u"^", u"^"},  Spelling{u"=", u"="},
    Spelling{u"<", u"<"},  Spelling{u">", u">"},
};

bool isLineEnd(QChar character)
{
    return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

bool isBlank(QChar character)
{
    return character == u'\t' || character == QChar::ByteOrderMark ||
           (character.isSpace() && !isLineEnd(character));
}

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool startsWord(char32_t codePoint)
{
    return codePoint == U'_' || QChar::isLetter(codePoint);
}

bool continuesWord(char32_t codePoint)
{
    return startsWord(codePoint) || (codePoint >= U'0' && codePoint <= U'9') || QChar::isMark(codePoint);
}

} // namespace

QString AppleScriptToken::description() const
{
    constexpr qsizetype longest = 40;
    const QString shown = text.size() > longest ? text.first(longest) + u'…' : text;
    switch (kind) {
    case Kind::lineEnd:
        return u"das Ende der Zeile"_s;
    case Kind::end:
        return u"das Ende des Skripts"_s;
    case Kind::text:
        return u"der Text \""_s + shown + u'"';
    default:
        return u'„' + shown + u'“';
    }
}

AppleScriptLexer::AppleScriptLexer(QStringView source)
    : m_source(source)
{
}

QList<AppleScriptToken> AppleScriptLexer::tokens()
{
    while (m_position < m_source.size()) {
        const QChar next = at();
        if (isLineEnd(next))
            readLineEnd();
        else if (isBlank(next))
            ++m_position;
        else if (next == u'#' || (next == u'-' && at(1) == u'-'))
            skipLine();
        else if (next == u'(' && at(1) == u'*')
            skipBlockComment();
        else if (next == continuationSign && skipContinuation())
            continue;
        else if (next == u'"')
            readText();
        else if (next == u'|')
            readBarredName();
        else if (isDigit(next) || (next == u'.' && isDigit(at(1))))
            readNumber();
        else if (startsWord(codePoint()))
            readWord();
        else
            readSymbol();
    }
    append(Kind::lineEnd, {}, m_line);
    append(Kind::end, {}, m_line);
    return std::exchange(m_tokens, {});
}

QChar AppleScriptLexer::at(qsizetype offset) const
{
    const qsizetype position = m_position + offset;
    return position < m_source.size() ? m_source[position] : QChar();
}

char32_t AppleScriptLexer::codePoint() const
{
    const QChar first = at();
    if (first.isHighSurrogate() && at(1).isLowSurrogate())
        return QChar::surrogateToUcs4(first, at(1));
    return first.unicode();
}

void AppleScriptLexer::skipLine()
{
    while (m_position < m_source.size() && !isLineEnd(at()))
        ++m_position;
}

void AppleScriptLexer::skipBlockComment()
{
    // Block comments nest; a counter and no recursion, so that no source is too deep.
    qsizetype depth = 0;
    do {
        if (m_position >= m_source.size())
            fail(u"Ein Kommentar, der mit „(*“ beginnt, hat kein Ende"_s);
        if (at() == u'(' && at(1) == u'*') {
            ++depth;
            m_position += 2;
        } else if (at() == u'*' && at(1) == u')') {
            --depth;
            m_position += 2;
        } else {
            m_line += at() == u'\n' ? 1 : 0;
            ++m_position;
        }
    } while (depth > 0);
}

bool AppleScriptLexer::skipContinuation()
{
    qsizetype offset = 1;
    while (isBlank(at(offset)))
        ++offset;
    if (!isLineEnd(at(offset)))
        return false;
    offset += at(offset) == u'\r' && at(offset + 1) == u'\n' ? 2 : 1;
    m_position += offset;
    ++m_line;
    return true;
}

void AppleScriptLexer::readLineEnd()
{
    m_position += at() == u'\r' && at(1) == u'\n' ? 2 : 1;
    append(Kind::lineEnd, {}, m_line);
    ++m_line;
}

void AppleScriptLexer::readText()
{
    const int line = m_line;
    QString text;
    ++m_position;
    while (at() != u'"') {
        if (m_position >= m_source.size())
            fail(u"Einem Text fehlt das schließende Anführungszeichen"_s);
        QChar character = at();
        m_line += character == u'\n' ? 1 : 0;
        if (character == u'\\') {
            ++m_position;
            switch (at().unicode()) {
            case u'"':
            case u'\\':
                character = at();
                break;
            case u'n':
                character = u'\n';
                break;
            case u'r':
                character = u'\r';
                break;
            case u't':
                character = u'\t';
                break;
            default:
                fail(u"In einem Text steht nach „\\“ ein Zeichen, das dort nicht stehen darf"_s);
            }
        }
        text += character;
        ++m_position;
    }
    ++m_position;
    append(Kind::text, text, line);
}

void AppleScriptLexer::readBarredName()
{
    const qsizetype start = ++m_position;
    while (at() != u'|') {
        if (m_position >= m_source.size() || isLineEnd(at()))
            fail(u"Einem Namen fehlt das schließende „|“"_s);
        ++m_position;
    }
    append(Kind::name, m_source.sliced(start, m_position - start).toString().toLower(), m_line);
    ++m_position;
}

void AppleScriptLexer::readNumber()
{
    const qsizetype start = m_position;
    Kind kind = Kind::integer;
    const auto skipDigits = [this] {
        while (isDigit(at()))
            ++m_position;
    };
    skipDigits();
    if (at() == u'.' && isDigit(at(1))) {
        kind = Kind::real;
        ++m_position;
        skipDigits();
    }
    if (at() == u'e' || at() == u'E') {
        const qsizetype sign = at(1) == u'+' || at(1) == u'-' ? 1 : 0;
        if (isDigit(at(1 + sign))) {
            kind = Kind::real;
            m_position += 1 + sign;
            skipDigits();
        }
    }
    append(kind, m_source.sliced(start, m_position - start).toString(), m_line);
}

void AppleScriptLexer::readWord()
{
    const qsizetype start = m_position;
    while (m_position < m_source.size() && continuesWord(codePoint()))
        m_position += at().isHighSurrogate() ? 2 : 1;
    // The short forms "isn't" and "doesn't" are one word each.
    const bool isNegation = m_source[m_position - 1].toLower() == u'n' && (at() == u'\'' || at() == u'’') &&
                            at(1).toLower() == u't' && !at(2).isLetterOrNumber();
    QString word = m_source.sliced(start, m_position - start).toString().toLower();
    if (isNegation) {
        word += "'t"_L1;
        m_position += 2;
    }
    append(Kind::word, word, m_line);
}

void AppleScriptLexer::readSymbol()
{
    if ((at() == u'\'' || at() == u'’') && at(1).toLower() == u's' && !at(2).isLetterOrNumber()) {
        append(Kind::symbol, u"'s"_s, m_line);
        m_position += 2;
        return;
    }
    for (const auto &[written, meaning] : spellings) {
        if (m_source.sliced(m_position).startsWith(written)) {
            append(Kind::symbol, meaning.toString(), m_line);
            m_position += written.size();
            return;
        }
    }
    fail(u"Das Zeichen „%1“ ist hier nicht möglich"_s.arg(at().isPrint() ? QString(at()) : u"\uFFFD"_s));
}

void AppleScriptLexer::append(Kind kind, const QString &text, int line)
{
    m_tokens.append({kind, text, line});
}

void AppleScriptLexer::fail(const QString &message) const
{
    throw AppleScriptError{u"Syntaxfehler in Zeile %1: %2."_s.arg(m_line).arg(message),
                           applescripterror::syntax};
}

} // namespace randblatt
