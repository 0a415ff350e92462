#include "platform/notes/AppleScriptLimits.h"

#include "platform/notes/AppleScriptError.h"
#include "platform/notes/AppleScriptMemory.h"

namespace randblatt {

using namespace Qt::StringLiterals;

AppleScriptMeter::AppleScriptMeter(const AppleScriptLimits &limits)
    : m_stepsLeft(limits.steps)
    , m_memory(limits.memory)
    , m_deadline(limits.time)
{
}

void AppleScriptMeter::step()
{
    // The clock at every step, since one step can take long.
    if (--m_stepsLeft < 0 || m_deadline.hasExpired()) {
        throw AppleScriptError{u"Das Skript wurde beendet, weil es zu lange lief."_s,
                               applescripterror::timedOut, false};
    }
    if (AppleScriptMemory::inUse() > m_memory) {
        throw AppleScriptError{u"Das Skript wurde beendet, weil es zu viel Speicher brauchte."_s,
                               applescripterror::outOfMemory, false};
    }
}

} // namespace randblatt
