#pragma once

#include "platform/notes/AppleScriptSyntax.h"
#include "platform/notes/AppleScriptTokenStream.h"

#include <QString>

#include <initializer_list>
#include <optional>

namespace randblatt {

/// Reads expressions and object specifiers from a token stream. Throws AppleScriptError for what is none.
class AppleScriptExpressionParser
{
public:
    /// `tokens` is borrowed.
    explicit AppleScriptExpressionParser(AppleScriptTokenStream &tokens);

    [[nodiscard]] applescript::ExpressionPtr expression();
    /// An expression without operators: what can be addressed, assigned to or deleted.
    [[nodiscard]] applescript::ExpressionPtr reference();
    /// The name of a variable.
    [[nodiscard]] QString variableName();

    /// Whether the words of the application's dictionary have their meaning: inside a `tell` to it.
    [[nodiscard]] bool isInApplication() const { return m_inApplication; }
    void setInApplication(bool inside) { m_inApplication = inside; }

private:
    using ExpressionPtr = applescript::ExpressionPtr;

    [[nodiscard]] ExpressionPtr operation(int lowestLevel);
    [[nodiscard]] ExpressionPtr unary();
    [[nodiscard]] ExpressionPtr coercion(ExpressionPtr operand);
    [[nodiscard]] ExpressionPtr term();
    [[nodiscard]] std::optional<ExpressionPtr> command();
    [[nodiscard]] ExpressionPtr make();
    [[nodiscard]] ExpressionPtr literal();
    [[nodiscard]] ExpressionPtr list();
    [[nodiscard]] ExpressionPtr record();
    [[nodiscard]] QString fieldName();
    [[nodiscard]] bool atRecord() const;
    [[nodiscard]] std::optional<ExpressionPtr> property();
    [[nodiscard]] std::optional<ExpressionPtr> elements();
    [[nodiscard]] applescript::Selector selector(bool isPlural);
    [[nodiscard]] bool atKey() const;
    [[nodiscard]] ExpressionPtr key();
    [[nodiscard]] ExpressionPtr container();
    [[nodiscard]] ExpressionPtr possessive(ExpressionPtr owner);

    template <typename Node>
    [[nodiscard]] ExpressionPtr build(Node node, std::initializer_list<int> heights = {}) const;

    AppleScriptTokenStream &m_tokens;
    bool m_inApplication = false;
};

} // namespace randblatt
