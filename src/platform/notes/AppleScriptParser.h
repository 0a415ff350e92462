#pragma once

#include "platform/notes/AppleScriptExpressionParser.h"
#include "platform/notes/AppleScriptSyntax.h"
#include "platform/notes/AppleScriptTokenStream.h"

#include <QString>

namespace randblatt {

/// Reads the statements of a script: the subset of AppleScript without handlers, script objects and modules.
class AppleScriptParser
{
public:
    /// The statements of `source`. Throws AppleScriptError with the line of the first thing that is no
    /// AppleScript, or is nested deeper than can be run safely.
    [[nodiscard]] static applescript::Block parse(const QString &source);

private:
    explicit AppleScriptParser(const QString &source);

    [[nodiscard]] applescript::Block block();
    [[nodiscard]] bool atBlockEnd() const;
    [[nodiscard]] applescript::Statement statement();
    [[nodiscard]] applescript::Statement tell();
    [[nodiscard]] applescript::Statement set();
    [[nodiscard]] applescript::Statement copy();
    [[nodiscard]] applescript::Statement repeat();
    [[nodiscard]] applescript::Statement repeatWith();
    [[nodiscard]] applescript::Statement conditional();
    [[nodiscard]] applescript::Statement tryBlock();
    [[nodiscard]] applescript::Statement raise();
    [[nodiscard]] applescript::Statement move();
    [[nodiscard]] bool atStatementEnd() const;
    void expectEnd(QStringView word);

    AppleScriptTokenStream m_tokens;
    AppleScriptExpressionParser m_expressions;
};

} // namespace randblatt
