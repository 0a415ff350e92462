#pragma once

#include "platform/notes/AppleScriptLexer.h"

#include <QList>

#include <initializer_list>

namespace randblatt {

/// The tokens of a script, read from front to back, with the depth of what is being parsed.
class AppleScriptTokenStream
{
public:
    /// `tokens` end with one of kind `end`.
    explicit AppleScriptTokenStream(QList<AppleScriptToken> tokens);

    /// The token `ahead` tokens after the next one; the last one again beyond it.
    [[nodiscard]] const AppleScriptToken &peek(qsizetype ahead = 0) const;
    [[nodiscard]] bool atWord(QStringView word, qsizetype ahead = 0) const;
    [[nodiscard]] bool atSymbol(QStringView symbol, qsizetype ahead = 0) const;
    [[nodiscard]] bool atKind(AppleScriptToken::Kind kind) const { return peek().kind == kind; }

    AppleScriptToken take();
    void skip(qsizetype count);
    bool acceptWord(QStringView word);
    bool acceptAnyWord(std::initializer_list<QStringView> words);
    bool acceptSymbol(QStringView symbol);
    void expectWord(QStringView word);
    void expectSymbol(QStringView symbol);
    void expectLineEnd();
    void skipLineEnds();

    /// Throws a syntax error that says what stands in place of `expected`.
    [[noreturn]] void fail(const QString &expected) const;
    [[noreturn]] void failTooDeep() const;

    /// One level of nesting for as long as it lives; throws AppleScriptError beyond the deepest level.
    class Level
    {
    public:
        explicit Level(AppleScriptTokenStream &tokens);
        ~Level() { --m_tokens.m_depth; }
        Level(const Level &) = delete;
        Level &operator=(const Level &) = delete;

    private:
        AppleScriptTokenStream &m_tokens;
    };

private:
    QList<AppleScriptToken> m_tokens;
    qsizetype m_position = 0;
    int m_depth = 0;
};

} // namespace randblatt
