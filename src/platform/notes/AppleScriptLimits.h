#pragma once

#include <QDeadlineTimer>
#include <QtGlobal>

#include <chrono>

namespace randblatt {

/// What one run of a script may use.
struct AppleScriptLimits
{
    /// Statements run and expressions computed.
    qint64 steps = 20'000'000;
    std::chrono::milliseconds time = std::chrono::seconds(30);
    /// Characters of all values together.
    qint64 memory = 256LL * 1024 * 1024;
};

/// Counts what a run uses.
class AppleScriptMeter
{
public:
    explicit AppleScriptMeter(const AppleScriptLimits &limits);

    /// To be called at each step; throws an AppleScriptError that no script can catch beyond the limits.
    void step();

private:
    qint64 m_stepsLeft;
    qint64 m_memory;
    QDeadlineTimer m_deadline;
};

} // namespace randblatt
