#pragma once

#include "platform/ScriptRunner.h"

#include <QByteArray>

#include <chrono>

namespace randblatt {

/// Runs scripts with the `osascript` command: the source goes to its standard input, the result comes from
/// its standard output, and an error's message from its standard error.
class OsascriptRunner : public ScriptRunner
{
public:
    /// `executable` is the command's path. A script that has not ended after `timeLimit` is an error; the
    /// first one may wait for the user to allow it. So is one that gives more than a note can hold. The
    /// command ends with its script at the latest, and with this process.
    explicit OsascriptRunner(QString executable,
                             std::chrono::milliseconds timeLimit = std::chrono::minutes(2));

    ScriptOutcome run(const QString &source) override;

    /// What the command's report of an error says: its message and number, without the place in the source.
    [[nodiscard]] static ScriptFailure failureFromReport(const QByteArray &standardError);

private:
    QString m_executable;
    std::chrono::milliseconds m_timeLimit;
};

} // namespace randblatt
