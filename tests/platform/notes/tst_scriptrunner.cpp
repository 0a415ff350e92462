#include "platform/notes/AppleScriptError.h"
#include "platform/notes/InterpreterScriptRunner.h"
#include "platform/notes/OsascriptRunner.h"
#include "platform/notes/ScriptRunners.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <memory>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

/// What every script runner does, and the faults of running a command.
class ScriptRunnerTest : public QObject
{
    Q_OBJECT

private:
    static QString inNotes(const QString &statements)
    {
        return u"tell application \"Notes\"\n"_s + statements + u"\nend tell"_s;
    }

    ScriptOutcome run(const QString &statements) { return m_runner->run(inNotes(statements)); }
    QString text(const QString &statements) { return run(statements).text.value_or(u"(nichts)"_s); }
    QString error(const QString &statements)
    {
        const auto failure = run(statements).failure;
        return failure ? failure->message.value_or(u"(ohne Text)"_s) : QString();
    }

    QStringList ids()
    {
        return text(
                   u"set s to \"\"\nrepeat with n in notes\nset s to s & (id of n) & \"\n\"\nend repeat\nreturn s"_s)
            .split(u'\n', Qt::SkipEmptyParts);
    }

    void makeFolder(const QString &name) const
    {
        QVERIFY(QDir().mkpath(m_folder->filePath(u"quillbar/notes/"_s + name)));
    }

    void writeNote(const QString &path, const QByteArray &html) const
    {
        QFile file(m_folder->filePath(u"quillbar/notes/"_s + path));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(html);
    }

    void writeCommand(const QString &script)
    {
        QFile file(m_command);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script.toUtf8());
        file.close();
        QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_command;
    std::unique_ptr<ScriptRunner> m_runner;

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("isCommand");
        QTest::newRow("interpreter") << false;
        QTest::newRow("command") << true;
    }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_command = m_folder->filePath(u"osascript"_s);
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder->path()));
        QFETCH_GLOBAL(bool, isCommand);
        if (isCommand)
            m_runner = std::make_unique<OsascriptRunner>(QStringLiteral(OSASCRIPT_STANDIN));
        else
            m_runner = std::make_unique<InterpreterScriptRunner>(NotesLibrary(NotesLibrary::defaultPath()));
    }

    void createsReadsChangesAndDeletes()
    {
        QVERIFY(!run(u"tell account 1\nmake new note with properties {name:\"A\", "
                     u"body:\"<div><b>A</b></div>a\"}\n"
                     "end tell"_s)
                     .failure);
        const QString id = ids().value(0);
        QCOMPARE(text(u"return body of note id \"%1\""_s.arg(id)), u"a"_s);
        QVERIFY(!run(u"set body of note id \"%1\" to \"<div><b>B</b></div>b\""_s.arg(id)).failure);
        QCOMPARE(text(u"return (name of note id \"%1\") & \"/\" & (body of note id \"%1\")"_s.arg(id)),
                 u"B/b"_s);
        QVERIFY(!run(u"delete note id \"%1\""_s.arg(id)).failure);
        QCOMPARE(ids(), QStringList());
        const QString message = error(u"return body of note id \"%1\""_s.arg(id));
        QVERIFY2(message.contains(u"nicht vorhanden") && message.contains(id), qPrintable(message));
        QCOMPARE(run(u"delete note id \"%1\""_s.arg(id)).failure->number, applescripterror::noSuchObject);
    }

    void movesNotesAndBringsThemBack()
    {
        makeFolder(u"Reise"_s);
        QVERIFY(!run(u"make new note with properties {name:\"A\", body:\"a\"}"_s).failure);
        const QString id = ids().value(0);
        const QString where = u"return name of container of note id \"%1\""_s.arg(id);
        QVERIFY(!run(u"delete note id \"%1\""_s.arg(id)).failure);
        QVERIFY(error(u"move note id \"%1\" to folder \"Nein\""_s.arg(id)).contains(u"Nein"));
        QVERIFY(!run(u"move note id \"%1\" to folder \"Reise\""_s.arg(id)).failure);
        QCOMPARE(text(where), u"Reise"_s);
        QCOMPARE(text(u"return body of note id \"%1\""_s.arg(id)), u"a"_s);
        QVERIFY(!run(u"repeat with n in notes of folder \"reise\"\n"
                     "move n to default folder of account 1\nend repeat"_s)
                     .failure);
        QCOMPARE(text(where), u"Notizen"_s);
        QCOMPARE(run(u"move note id \"nie\" to folder \"Reise\""_s).failure->number,
                 applescripterror::noSuchObject);
        QVERIFY(run(u"move folder \"Reise\" to folder \"Notizen\""_s).failure);
        QVERIFY(run(u"move 7 to folder \"Notizen\""_s).failure);
        QVERIFY(run(u"move note id \"%1\" to 7"_s.arg(id)).failure);
    }

    void walksFoldersAndNotes()
    {
        makeFolder(u"Ideen \"2025\""_s);
        writeNote(u"Ideen \"2025\"/i.html"_s, "<b>eins</b>");
        QVERIFY(
            !run(u"make new note with properties {name:\"zwei\"}\nmake new note with properties {body:\"\"}"_s)
                 .failure);
        QCOMPARE(
            text(u"set s to \"\"\nrepeat with f in folders of account 1\nset s to s & name of f & \":\"\n"
                 "repeat with n in notes of f\nset s to s & (name of n) & \",\"\nend repeat\n"
                 "end repeat\nreturn s"_s),
            u"Notizen:Neue Notiz,zwei,Ideen \"2025\":eins,"_s);
        const auto found = [this](const QString &notes) {
            return text(u"set s to \"\"\nrepeat with n in "_s + notes +
                        u"\nset s to s & (name of n)\nend repeat\nreturn s"_s);
        };
        QCOMPARE(found(u"notes whose name contains \"WEI\""_s), u"zwei"_s);
        QCOMPARE(found(u"notes whose name contains \"wei\" or body contains \"eins\""_s), u"zweieins"_s);
        QCOMPARE(found(u"notes of folder \"ideen \\\"2025\\\"\" whose name contains \"e\""_s), u"eins"_s);
        QVERIFY(error(u"return notes of folder \"Nein\""_s).contains(u"Nein"));
    }

    void keepsTextAsItIs()
    {
        const QString hard = u"Zeile 1\n\n  \"quotes\" \\ \\n <§> <¶> 😀 \t Ende"_s;
        QString literal = hard;
        literal.replace(u"\\"_s, u"\\\\"_s).replace(u"\""_s, u"\\\""_s);
        QVERIFY(!run(u"make new note with properties {name:\"%1\", body:\"%1\"}"_s.arg(literal)).failure);
        const QString id = ids().value(0);
        QCOMPARE(text(u"return name of note id \"%1\""_s.arg(id)), hard);
        QCOMPARE(text(u"return body of note id \"%1\""_s.arg(id)), hard);
        const QString large = QString(1'000'000, u'ü') + u"\n"_s;
        QVERIFY(!run(u"set body of note id \"%1\" to \"%2\""_s.arg(id, large)).failure);
        QCOMPARE(text(u"return body of note id \"%1\""_s.arg(id)), large);
        QCOMPARE(text(u"return \"\n\n\""_s), u"\n\n"_s);
    }

    void seesFilesOfOtherPrograms()
    {
        QCOMPARE(ids(), QStringList());
        writeNote(u"Notizen/von außen.html"_s, "<p>Hallo</p>");
        QCOMPARE(text(u"return (name of note id \"von außen\") & body of note id \"von außen\""_s),
                 u"Hallo<p>Hallo</p>"_s);
        QVERIFY(QFile::remove(m_folder->filePath(u"quillbar/notes/Notizen/von außen.html"_s)));
        QVERIFY(!error(u"return body of note id \"von außen\""_s).isEmpty());
    }

    void reportsErrorsOfAllKinds()
    {
        const auto missing = run(u"return name of note id \"Zeile 1\nZeile (2): drei\""_s).failure;
        QVERIFY(missing);
        QCOMPARE(missing->message, u"Diese Notiz ist nicht vorhanden: „Zeile 1\nZeile (2): drei“"_s);
        QCOMPARE(missing->number, applescripterror::noSuchObject);
        QCOMPARE(m_runner->run(u"tell"_s).failure->number, applescripterror::syntax);
        QVERIFY(m_runner->run(u"return \"ok\""_s).text == u"ok"_s);
        QVERIFY(QDir(m_folder->filePath(u"quillbar/notes"_s)).removeRecursively());
        QFile obstacle(m_folder->filePath(u"quillbar/notes"_s));
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        QVERIFY(error(u"return notes"_s).startsWith(u"Kein Ordner: "));
    }

    void survivesMalformedScripts()
    {
        QDirIterator scripts(QStringLiteral(MALFORMED_SCRIPTS), QDir::Files);
        int count = 0;
        for (; scripts.hasNext(); ++count) {
            QFile file(scripts.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const ScriptOutcome outcome = m_runner->run(QString::fromUtf8(file.readAll()));
            QVERIFY2(outcome.failure && !outcome.failure->message.value_or(QString()).isEmpty(),
                     qPrintable(file.fileName()));
        }
        QVERIFY(count >= 20);
    }

    void reportsACommandThatFails()
    {
        QFETCH_GLOBAL(bool, isCommand);
        if (!isCommand)
            return;
        OsascriptRunner runner(m_command, std::chrono::seconds(20));
        QVERIFY(runner.run(u"x"_s).failure);
        writeCommand(u"exit 1"_s);
        QVERIFY(runner.run(u"x"_s).failure && !runner.run(u"x"_s).failure->message);
        writeCommand(u"kill -9 $$"_s);
        QVERIFY(runner.run(QString(1'000'000, u'x')).failure);
        // The input closed at once, and a result all the same
        writeCommand(u"exec 0<&-; echo fertig"_s);
        QCOMPARE(runner.run(QString(1'000'000, u'x')).text, u"fertig"_s);
    }

    void endsACommandThatHangs()
    {
        QFETCH_GLOBAL(bool, isCommand);
        if (!isCommand)
            return;
        writeCommand(u"exec sleep 60"_s);
        OsascriptRunner runner(m_command, std::chrono::milliseconds(200));
        const auto failure = runner.run(u"x"_s).failure;
        QVERIFY(failure);
        QCOMPARE(failure->number, applescripterror::timedOut);
    }

    void boundsWhatACommandGives()
    {
        QFETCH_GLOBAL(bool, isCommand);
        if (!isCommand)
            return;
        OsascriptRunner runner(m_command, std::chrono::seconds(60));
        const auto memory = [] {
            rusage usage{};
            ::getrusage(RUSAGE_SELF, &usage);
            return usage.ru_maxrss; // KiB
        };
        const auto before = memory();
        writeCommand(u"exec yes"_s);
        const auto endless = runner.run(u"x"_s).failure;
        QVERIFY(endless);
        QVERIFY2(endless->message->startsWith(u"Zu groß: "), qPrintable(*endless->message));
        writeCommand(u"echo '1:2: execution error: Grund' >&2; yes | head -c 300000000 >&2; exit 1"_s);
        const auto message = runner.run(u"x"_s).failure->message;
        QVERIFY(message->startsWith(u"Grund"));
        QVERIFY(memory() - before < 200 * 1024);
    }

    void leavesNoCommandBehind()
    {
        QFETCH_GLOBAL(bool, isCommand);
        if (!isCommand)
            return;
        const QString pids = m_folder->filePath(u"pids"_s);
        const auto started = [&] {
            QFile file(pids);
            return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n').first(2) : QList<QByteArray>();
        };
        const auto isGone = [](const QByteArray &pid) {
            return ::kill(pid.toInt(), 0) != 0 && errno == ESRCH;
        };
        // With what it started, when it takes too long
        writeCommand(
            u"sleep 600 & echo $! > pids.new; echo $$ >> pids.new; mv pids.new '%1'; wait"_s.arg(pids));
        const auto restore = qScopeGuard([path = QDir::currentPath()] { QDir::setCurrent(path); });
        QDir::setCurrent(m_folder->path());
        QVERIFY(OsascriptRunner(m_command, std::chrono::seconds(2)).run(u"x"_s).failure);
        for (const QByteArray &pid : started())
            QTRY_VERIFY(isGone(pid));
        // When the program is killed
        QVERIFY(QFile::remove(pids));
        const pid_t program = ::fork();
        if (program == 0) {
            (void)OsascriptRunner(m_command).run(u"x"_s);
            ::_exit(0);
        }
        QTRY_VERIFY(QFile::exists(pids));
        const QList<QByteArray> left = started();
        ::kill(program, SIGKILL);
        ::waitpid(program, nullptr, 0);
        QTRY_VERIFY(isGone(left.at(1)));
        ::kill(left.at(0).toInt(), SIGKILL);
    }

    void readsReports_data()
    {
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("number");
        QTest::newRow("execution") << QByteArray(
                                          "31:47: execution error: Can\xe2\x80\x99t get note. (-1728)\n")
                                   << u"Can’t get note."_s << -1728;
        QTest::newRow("file and colon") << QByteArray("-:0:5: syntax error: Expected: end (x). (-2741)\n")
                                        << u"Expected: end (x)."_s << -2741;
        QTest::newRow("warning before")
            << QByteArray("2026-01-01 10:00:00 osascript[1:2] warn\n1:2: Fehler: A\nB (5)") << u"A\nB"_s << 5;
        QTest::newRow("cut off") << QByteArray("1:2: execution error: Can't (ge") << u"Can't (ge"_s << 0;
        QTest::newRow("anything else") << QByteArray("no such thing\n") << u"no such thing"_s << 0;
    }

    void readsReports()
    {
        QFETCH(QByteArray, report);
        QFETCH(QString, message);
        QFETCH(int, number);
        const ScriptFailure failure = OsascriptRunner::failureFromReport(report);
        QCOMPARE(failure.message, message);
        QCOMPARE(failure.number, number);
    }

    void choosesTheCommandOnThePath()
    {
        const QByteArray path = qgetenv("PATH");
        const auto restore = qScopeGuard([&] { qputenv("PATH", path); });
        qputenv("PATH", QFile::encodeName(m_folder->path()));
        const QString library = m_folder->filePath(u"notes"_s);
        QCOMPARE(makeScriptRunner(library)->run(u"return 1 + 1"_s).text, u"2"_s);
        writeCommand(u"echo Kommando"_s);
        QCOMPARE(makeScriptRunner(library)->run(u"return 1 + 1"_s).text, u"Kommando"_s);
    }
};

RANDBLATT_TEST_MAIN(ScriptRunnerTest, QCoreApplication)
#include "tst_scriptrunner.moc"
