#include "platform/notes/InterpreterScriptRunner.h"

#include "platform/ExceptionText.h"
#include "platform/notes/AppleScriptError.h"
#include "platform/notes/AppleScriptParser.h"
#include "platform/notes/NotesObjectModel.h"

#include <new>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

InterpreterScriptRunner::InterpreterScriptRunner(NotesLibrary library, const AppleScriptLimits &limits)
    : m_library(std::move(library))
    , m_limits(limits)
{
}

ScriptOutcome InterpreterScriptRunner::run(const QString &source)
{
    try {
        const applescript::Block script = AppleScriptParser::parse(source);
        NotesObjectModel application(m_library);
        return {.text = AppleScriptInterpreter(application, m_limits).run(script).text(), .failure = {}};
    } catch (const AppleScriptError &error) {
        return {.text = {}, .failure = ScriptFailure{error.message, error.number}};
    } catch (const std::bad_alloc &) {
        return {.text = {}, .failure = ScriptFailure{currentExceptionText(), applescripterror::outOfMemory}};
    } catch (...) {
        return {.text = {},
                .failure = ScriptFailure{currentExceptionText(), applescripterror::handlerFailed}};
    }
}

} // namespace randblatt
