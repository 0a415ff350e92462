#pragma once

#include "platform/notes/AppleScriptLexer.h"
#include "platform/notes/AppleScriptSyntax.h"

#include <QSet>

#include <initializer_list>

namespace randblatt {

/// Reads the part of AppleScript in which scripts to the notes application are written here. Anything else is
/// an error that names the word.
class AppleScriptParser
{
public:
    /// The script's statements. Throws AppleScriptError.
    [[nodiscard]] static applescript::Block parse(QStringView source);

private:
    using Token = AppleScriptToken;

    explicit AppleScriptParser(QList<Token> tokens);

    [[nodiscard]] applescript::Block block(QStringView opener);
    [[nodiscard]] applescript::Statement statement();
    [[nodiscard]] applescript::Statement tell();
    [[nodiscard]] applescript::Statement set();
    [[nodiscard]] applescript::Statement repeat();
    [[nodiscard]] applescript::Statement conditional();
    [[nodiscard]] applescript::Statement makeNote();

    [[nodiscard]] applescript::ExpressionPtr expression(std::size_t level = 0);
    [[nodiscard]] applescript::ExpressionPtr operand();
    [[nodiscard]] applescript::ExpressionPtr word();
    [[nodiscard]] applescript::ExpressionPtr element(AppleScriptObject::Kind kind);
    [[nodiscard]] applescript::ExpressionPtr elements(AppleScriptObject::Kind kind);
    [[nodiscard]] applescript::ExpressionPtr property(const QString &name);
    /// What follows an `of`; null where there is none.
    [[nodiscard]] applescript::ExpressionPtr owner();

    [[nodiscard]] const Token &next() const { return m_tokens[m_position]; }
    [[nodiscard]] bool take(QStringView wordOrSymbol);
    void expect(QStringView wordOrSymbol);
    [[nodiscard]] QString takeToken(Token::Kind kind, const QString &description);
    [[nodiscard]] QString takeNewName();
    [[noreturn]] void fail(const QString &message) const;

    QList<Token> m_tokens;
    qsizetype m_position = 0;
    int m_depth = 0;
    QSet<QString> m_variables;
};

} // namespace randblatt
