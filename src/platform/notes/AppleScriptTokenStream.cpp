#include "platform/notes/AppleScriptTokenStream.h"

#include "platform/notes/AppleScriptError.h"

#include <algorithm>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

using Kind = AppleScriptToken::Kind;

// Far more than a script written by hand nests, and far less than the stack of a thread holds.
constexpr int deepestLevel = 150;

} // namespace

AppleScriptTokenStream::AppleScriptTokenStream(QList<AppleScriptToken> tokens)
    : m_tokens(std::move(tokens))
{
}

const AppleScriptToken &AppleScriptTokenStream::peek(qsizetype ahead) const
{
    return m_tokens.at(std::min(m_position + ahead, m_tokens.size() - 1));
}

bool AppleScriptTokenStream::atWord(QStringView word, qsizetype ahead) const
{
    return peek(ahead).kind == Kind::word && peek(ahead).text == word;
}

bool AppleScriptTokenStream::atSymbol(QStringView symbol, qsizetype ahead) const
{
    return peek(ahead).kind == Kind::symbol && peek(ahead).text == symbol;
}

AppleScriptToken AppleScriptTokenStream::take()
{
    AppleScriptToken token = peek();
    skip(1);
    return token;
}

void AppleScriptTokenStream::skip(qsizetype count)
{
    m_position = std::min(m_position + count, m_tokens.size() - 1);
}

bool AppleScriptTokenStream::acceptWord(QStringView word)
{
    if (!atWord(word))
        return false;
    skip(1);
    return true;
}

bool AppleScriptTokenStream::acceptAnyWord(std::initializer_list<QStringView> words)
{
    return std::any_of(words.begin(), words.end(), [this](QStringView word) { return acceptWord(word); });
}

bool AppleScriptTokenStream::acceptSymbol(QStringView symbol)
{
    if (!atSymbol(symbol))
        return false;
    skip(1);
    return true;
}

void AppleScriptTokenStream::expectWord(QStringView word)
{
    if (!acceptWord(word))
        fail(u'„' + word.toString() + u'“');
}

void AppleScriptTokenStream::expectSymbol(QStringView symbol)
{
    if (!acceptSymbol(symbol))
        fail(u'„' + symbol.toString() + u'“');
}

void AppleScriptTokenStream::expectLineEnd()
{
    if (atKind(Kind::end))
        return;
    if (!atKind(Kind::lineEnd))
        fail(u"das Ende der Zeile"_s);
    skipLineEnds();
}

void AppleScriptTokenStream::skipLineEnds()
{
    while (atKind(Kind::lineEnd))
        skip(1);
}

void AppleScriptTokenStream::fail(const QString &expected) const
{
    throw AppleScriptError{u"Syntaxfehler in Zeile %1: Erwartet wird %2, gefunden wurde %3."_s.arg(
                               QString::number(peek().line), expected, peek().description()),
                           applescripterror::syntax};
}

void AppleScriptTokenStream::failTooDeep() const
{
    throw AppleScriptError{
        u"Syntaxfehler in Zeile %1: Das Skript ist zu tief verschachtelt."_s.arg(peek().line),
        applescripterror::nestedTooDeep};
}

AppleScriptTokenStream::Level::Level(AppleScriptTokenStream &tokens)
    : m_tokens(tokens)
{
    if (m_tokens.m_depth >= deepestLevel)
        m_tokens.failTooDeep();
    ++m_tokens.m_depth;
}

} // namespace randblatt
