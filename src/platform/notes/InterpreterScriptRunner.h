#pragma once

#include "platform/ScriptRunner.h"
#include "platform/notes/AppleScriptInterpreter.h"
#include "platform/notes/NotesLibrary.h"

namespace randblatt {

/// Runs scripts to the notes application with the built-in interpreter, on a notes library.
class InterpreterScriptRunner : public ScriptRunner
{
public:
    explicit InterpreterScriptRunner(NotesLibrary library, const AppleScriptLimits &limits = {});

    ScriptOutcome run(const QString &source) override;

private:
    NotesLibrary m_library;
    AppleScriptLimits m_limits;
};

} // namespace randblatt
