#include "modules/notes/ASResult.h"

#include "platform/ScriptRunner.h"

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// A message as a card can show it: in one line, of a few sentences at most. What matters stands first.
QString shown(QString message)
{
    constexpr qsizetype longestMessage = 300;
    if (message.size() > longestMessage)
        message = message.first(longestMessage - 1) + u'…';
    std::replace_if(
        message.begin(), message.end(), [](QChar character) { return !character.isPrint(); }, u' ');
    return message;
}

} // namespace

ASResult ASResult::fromOutcome(const ScriptOutcome &outcome)
{
    if (outcome.failure)
        return {Kind::failure, shown(outcome.failure->message.value_or(u"Unbekannter AppleScript-Fehler"_s))};
    return {Kind::success, outcome.text.value_or(QString())};
}

} // namespace randblatt
