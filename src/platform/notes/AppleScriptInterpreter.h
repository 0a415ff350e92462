#pragma once

#include "platform/notes/AppleScriptEvaluator.h"
#include "platform/notes/AppleScriptLimits.h"
#include "platform/notes/AppleScriptSyntax.h"
#include "platform/notes/AppleScriptValue.h"

namespace randblatt {

class NotesObjectModel;

/// Runs one script.
class AppleScriptInterpreter
{
public:
    /// `application` is borrowed.
    explicit AppleScriptInterpreter(NotesObjectModel &application, const AppleScriptLimits &limits = {});

    /// Runs the statements and gives the value of the one that was run last, or that was returned. Throws the
    /// AppleScriptError that the script does not catch, or that ends it for what it uses.
    AppleScriptValue run(const applescript::Block &script);

private:
    /// What comes after a statement.
    enum class Flow { next, exitRepeat, returned };

    Flow runBlock(const applescript::Block &block);
    Flow runBody(const applescript::Block &body);
    Flow execute(const applescript::Tell &tell);
    Flow execute(const applescript::Assign &assign);
    Flow execute(const applescript::RepeatForever &repeat);
    Flow execute(const applescript::RepeatTimes &repeat);
    Flow execute(const applescript::RepeatWhile &repeat);
    Flow execute(const applescript::RepeatIn &repeat);
    Flow execute(const applescript::RepeatRange &repeat);
    Flow execute(const applescript::ExitRepeat &exit);
    Flow execute(const applescript::If &conditional);
    Flow execute(const applescript::Try &attempt);
    Flow execute(const applescript::Return &result);
    Flow execute(const applescript::Raise &raise);
    Flow execute(const applescript::Delete &deletion);
    Flow execute(const applescript::Move &move);
    Flow execute(const applescript::Evaluate &evaluation);

    /// The application's objects that an expression stands for, one or a list. Throws for anything else.
    [[nodiscard]] AppleScriptValue::Objects objects(const applescript::Expression &expression);

    NotesObjectModel &m_application;
    AppleScriptMeter m_meter;
    AppleScriptEvaluator m_evaluator;
    AppleScriptValue m_result;
};

} // namespace randblatt
