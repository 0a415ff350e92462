#include "platform/notes/OsascriptRunner.h"

#include "platform/notes/AppleScriptError.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QRegularExpression>

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

ScriptOutcome failed(const QString &message, int number)
{
    return {.text = {}, .failure = ScriptFailure{message, number}};
}

} // namespace

OsascriptRunner::OsascriptRunner(QString executable, std::chrono::milliseconds timeLimit)
    : m_executable(std::move(executable))
    , m_timeLimit(timeLimit)
{
}

ScriptOutcome OsascriptRunner::run(const QString &source)
{
    QProcess process;
    const QDeadlineTimer deadline(m_timeLimit);
    process.start(m_executable, {u"-"_s});
    process.write(source.toUtf8());
    process.closeWriteChannel();
    if (!process.waitForStarted(static_cast<int>(deadline.remainingTime()))) {
        return failed(u"„%1“ konnte nicht gestartet werden."_s.arg(m_executable),
                      applescripterror::handlerFailed);
    }
    if (!process.waitForFinished(static_cast<int>(deadline.remainingTime())) &&
        process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
        return failed(u"Das Skript hat nicht rechtzeitig geantwortet."_s, applescripterror::timedOut);
    }
    if (process.exitStatus() != QProcess::NormalExit)
        return failed(u"„%1“ wurde unerwartet beendet."_s.arg(m_executable), applescripterror::handlerFailed);
    if (process.exitCode() != 0)
        return {.text = {}, .failure = failureFromReport(process.readAllStandardError())};
    QString text = QString::fromUtf8(process.readAllStandardOutput());
    // The command ends what it prints with a line feed of its own.
    if (text.endsWith(u'\n'))
        text.chop(1);
    return {.text = text, .failure = {}};
}

ScriptFailure OsascriptRunner::failureFromReport(const QByteArray &standardError)
{
    // As in "31:47: execution error: Message (-1728)", with a file's name in front where there is a file. The
    // words are the system's language; warnings of the system may stand on lines before.
    static const QRegularExpression report(uR"((?:^|\n)(?:[^\n]*:)?\d+:\d+: [^:\n]+: (.*) \((-?\d+)\)\s*$)"_s,
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
