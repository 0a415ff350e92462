#pragma once

#include "platform/notes/AppleScriptSyntax.h"
#include "platform/notes/AppleScriptValue.h"

#include <QDeadlineTimer>
#include <QHash>

#include <chrono>

namespace randblatt {

class NotesObjectModel;

/// What one run of a script may use.
struct AppleScriptLimits
{
    std::chrono::milliseconds time = std::chrono::seconds(30);
    /// Characters of one text.
    qsizetype longestText = 64 * 1024 * 1024;
};

/// Runs one script.
class AppleScriptInterpreter
{
public:
    /// `application` is borrowed.
    explicit AppleScriptInterpreter(NotesObjectModel &application, const AppleScriptLimits &limits = {});

    /// Runs the statements and gives the value that they return. Throws AppleScriptError.
    AppleScriptValue run(const applescript::Block &script);

private:
    /// What comes after a statement.
    enum class Flow { next, exitRepeat, returned };

    Flow runBlock(const applescript::Block &block);
    Flow execute(const applescript::Tell &tell);
    Flow execute(const applescript::Set &set);
    Flow execute(const applescript::Repeat &repeat);
    Flow execute(const applescript::ExitRepeat &exit);
    Flow execute(const applescript::If &conditional);
    Flow execute(const applescript::Return &result);
    Flow execute(const applescript::MakeNote &make);
    Flow execute(const applescript::Delete &deletion);
    Flow execute(const applescript::Move &move);

    [[nodiscard]] AppleScriptValue evaluate(const applescript::Expression &expression);
    [[nodiscard]] AppleScriptValue compute(const applescript::Literal &literal);
    [[nodiscard]] AppleScriptValue compute(const applescript::Variable &variable);
    [[nodiscard]] AppleScriptValue compute(const applescript::Application &application);
    [[nodiscard]] AppleScriptValue compute(const applescript::Property &property);
    [[nodiscard]] AppleScriptValue compute(const applescript::Element &element);
    [[nodiscard]] AppleScriptValue compute(const applescript::Elements &elements);
    [[nodiscard]] AppleScriptValue compute(const applescript::Binary &binary);

    /// The object that an expression stands for; without one, the one that is addressed.
    [[nodiscard]] AppleScriptObject object(const applescript::ExpressionPtr &expression);
    [[nodiscard]] QString joined(const QString &left, const QString &right) const;
    /// To be called before each step.
    void checkTime() const;

    NotesObjectModel &m_application;
    AppleScriptLimits m_limits;
    QDeadlineTimer m_deadline;
    QHash<QString, AppleScriptValue> m_variables;
    /// The object that is addressed; none outside of every `tell`.
    AppleScriptValue m_target;
    AppleScriptValue m_result;
};

} // namespace randblatt
