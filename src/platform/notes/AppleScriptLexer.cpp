#include "platform/notes/AppleScriptLexer.h"

#include "platform/notes/AppleScriptError.h"

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

using Kind = AppleScriptToken::Kind;

bool isLineEnd(QChar character)
{
    return character == u'\n' || character == u'\r';
}

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool continuesWord(QChar character)
{
    return character.isLetter() || character == u'_' || isDigit(character);
}

class Lexer
{
public:
    explicit Lexer(QStringView source)
        : m_source(source)
    {
    }

    QList<AppleScriptToken> tokens()
    {
        while (m_position < m_source.size())
            readToken();
        append(Kind::lineEnd, {});
        append(Kind::end, {});
        return std::move(m_tokens);
    }

private:
    [[nodiscard]] QChar next() const { return m_position < m_source.size() ? m_source[m_position] : QChar(); }

    void append(Kind kind, const QString &text) { m_tokens.append({kind, text, m_line}); }

    /// What stands here for as long as `continues` says so.
    template <typename Continues>
    QString take(Continues continues)
    {
        const qsizetype start = m_position;
        while (m_position < m_source.size() && continues(next()))
            ++m_position;
        return m_source.sliced(start, m_position - start).toString();
    }

    void readToken()
    {
        const QChar first = next();
        if (isLineEnd(first)) {
            append(Kind::lineEnd, {});
            m_line += first == u'\n' ? 1 : 0;
            ++m_position;
        } else if (first.isSpace()) {
            ++m_position;
        } else if (first == u'"') {
            readText();
        } else if (isDigit(first)) {
            append(Kind::integer, take(isDigit));
        } else if (continuesWord(first)) {
            append(Kind::word, take(continuesWord).toLower());
        } else if (u"(){},:&+≥"_s.contains(first)) {
            append(Kind::symbol, first);
            ++m_position;
        } else {
            throw appleScriptSyntaxError(m_line, u"Das Zeichen „%1“ ist hier nicht möglich"_s.arg(
                                                     first.isPrint() ? first : QChar::ReplacementCharacter));
        }
    }

    void readText()
    {
        const int line = m_line;
        QString text;
        for (++m_position; next() != u'"'; ++m_position) {
            if (next() == u'\\') {
                ++m_position;
                if (next() != u'"' && next() != u'\\')
                    throw appleScriptSyntaxError(
                        m_line, u"In einem Text steht nach „\\“ ein Zeichen, das dort nicht stehen darf"_s);
            }
            if (m_position >= m_source.size())
                throw appleScriptSyntaxError(line, u"Einem Text fehlt das schließende Anführungszeichen"_s);
            m_line += next() == u'\n' ? 1 : 0;
            text += next();
        }
        ++m_position;
        m_tokens.append({Kind::text, text, line});
    }

    QStringView m_source;
    qsizetype m_position = 0;
    int m_line = 1;
    QList<AppleScriptToken> m_tokens;
};

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
        return u"der Text „"_s + shown + u'“';
    default:
        return u'„' + shown + u'“';
    }
}

QList<AppleScriptToken> appleScriptTokens(QStringView source)
{
    return Lexer(source).tokens();
}

AppleScriptError appleScriptSyntaxError(int line, const QString &message)
{
    return {u"Syntaxfehler in Zeile %1: %2."_s.arg(QString::number(line), message), applescripterror::syntax};
}

} // namespace randblatt
