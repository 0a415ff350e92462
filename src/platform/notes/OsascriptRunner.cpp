#include "platform/notes/OsascriptRunner.h"

#include "platform/notes/AppleScriptError.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QRegularExpression>

#include <csignal>
#include <utility>

#include <sys/prctl.h>
#include <unistd.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// No note is larger.
constexpr qsizetype longestResult = 32LL * 1024 * 1024;
constexpr qsizetype longestReport = 64LL * 1024;
constexpr int timeToDie = 2000; // milliseconds

ScriptOutcome failed(const QString &message, int number)
{
    return {.text = {}, .failure = ScriptFailure{message, number}};
}

/// A command in a process group of its own, which does not outlive this process, and whose output is bounded.
class Command : public QProcess
{
public:
    Command()
    {
        setChildProcessModifier([parent = ::getpid()] {
            ::setpgid(0, 0);
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (::getppid() != parent)
                ::_exit(1);
        });
        // Both come from within the waiting, piece by piece as it is read.
        connect(this, &QProcess::readyReadStandardOutput, this, [this] {
            result += readAllStandardOutput();
            if (result.size() > longestResult && !std::exchange(isTooLong, true))
                end();
        });
        connect(this, &QProcess::readyReadStandardError, this,
                [this] { report += readAllStandardError().left(longestReport - report.size()); });
    }

    /// Ends it with all that it started.
    void end()
    {
        if (const qint64 leader = processId(); leader > 0)
            ::kill(static_cast<pid_t>(-leader), SIGKILL);
        kill();
    }

    QByteArray result;
    QByteArray report;
    bool isTooLong = false;
};

} // namespace

OsascriptRunner::OsascriptRunner(QString executable, std::chrono::milliseconds timeLimit)
    : m_executable(std::move(executable))
    , m_timeLimit(timeLimit)
{
}

ScriptOutcome OsascriptRunner::run(const QString &source)
{
    Command command;
    const QDeadlineTimer deadline(m_timeLimit);
    command.start(m_executable, {u"-"_s});
    command.write(source.toUtf8());
    command.closeWriteChannel();
    if (!command.waitForStarted(static_cast<int>(deadline.remainingTime()))) {
        return failed(u"Nicht gestartet: „%1“ (%2)"_s.arg(m_executable, command.errorString()),
                      applescripterror::handlerFailed);
    }
    const bool isFinished = command.waitForFinished(static_cast<int>(deadline.remainingTime())) ||
                            command.state() == QProcess::NotRunning;
    if (!isFinished || command.isTooLong) {
        command.end();
        command.waitForFinished(timeToDie);
    }
    if (command.isTooLong)
        return failed(u"Zu groß: Das Skript gibt mehr zurück, als eine Notiz fasst."_s,
                      applescripterror::outOfMemory);
    if (!isFinished)
        return failed(u"Das Skript hat nicht rechtzeitig geantwortet."_s, applescripterror::timedOut);
    if (command.exitStatus() != QProcess::NormalExit) {
        return failed(u"Unerwartet beendet: „%1“"_s.arg(m_executable), applescripterror::handlerFailed);
    }
    if (command.exitCode() != 0)
        return {.text = {}, .failure = failureFromReport(command.report)};
    QString text = QString::fromUtf8(command.result);
    // The command ends what it prints with a line feed of its own.
    if (text.endsWith(u'\n'))
        text.chop(1);
    return {.text = text, .failure = {}};
}

ScriptFailure OsascriptRunner::failureFromReport(const QByteArray &standardError)
{
    // As in "31:47: execution error: Message (-1728)", with a file's name in front where there is a file. The
    // words are the system's language; warnings of the system may stand on lines before. The number is
    // missing where the report was cut off.
    static const QRegularExpression report(
        uR"((?:^|\n)(?:[^\n]*:)?\d+:\d+: [^:\n]+: (.*?)(?: \((-?\d+)\))?\s*$)"_s,
        QRegularExpression::DotMatchesEverythingOption);
    const QString text = QString::fromUtf8(standardError);
    if (const QRegularExpressionMatch match = report.match(text); match.hasMatch())
        return {match.captured(1), match.captured(2).toInt()};
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    return {trimmed, 0};
}

} // namespace randblatt
