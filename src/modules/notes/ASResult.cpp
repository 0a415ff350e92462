#include "modules/notes/ASResult.h"

#include "platform/ScriptRunner.h"

namespace randblatt {

using namespace Qt::StringLiterals;

ASResult ASResult::fromOutcome(const ScriptOutcome &outcome)
{
    if (outcome.failure)
        return {Kind::failure, outcome.failure->message.value_or(u"Unbekannter AppleScript-Fehler"_s)};
    return {Kind::success, outcome.text.value_or(QString())};
}

} // namespace randblatt
