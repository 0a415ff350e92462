#include "modules/notes/NoteScripts.h"
#include "modules/notes/NotesService.h"
#include "platform/ScriptRunner.h"
#include "platform/notes/InterpreterScriptRunner.h"
#include "support/TestEnvironment.h"

#include <QAbstractItemModelTester>
#include <QGuiApplication>
#include <QMutex>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// Answers scripts as it was told, and each only when it may.
class ScriptedRunner : public ScriptRunner
{
public:
    ScriptOutcome run(const QString &source) override
    {
        const int overlapping = m_running.fetchAndAddOrdered(1);
        m_gate.acquire();
        m_running.fetchAndAddOrdered(-1);
        if (const auto fault = std::exchange(m_fault, nullptr))
            fault();
        const QMutexLocker locker(&m_mutex);
        m_overlapped = m_overlapped || overlapping > 0;
        m_threadName = QThread::currentThread()->objectName();
        m_sources.append(source);
        return m_answers.isEmpty() ? ScriptOutcome{.text = QString(), .failure = {}} : m_answers.takeFirst();
    }

    void answer(const QString &text) { add({.text = text, .failure = {}}); }
    void fail(const std::optional<QString> &message)
    {
        add({.text = {}, .failure = ScriptFailure{message, -1}});
    }
    /// Makes the next script end in a way that it may not. To be called while none runs.
    void failBy(std::function<void()> fault) { m_fault = std::move(fault); }
    void giveNothing() { add({}); }
    /// Lets scripts run that wait, or will.
    void allow(int scripts = 1000) { m_gate.release(scripts); }

    [[nodiscard]] QStringList sources() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_sources;
    }
    [[nodiscard]] QString threadName() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_threadName;
    }
    [[nodiscard]] bool hasOverlapped() const { return m_overlapped; }

private:
    void add(const ScriptOutcome &outcome)
    {
        const QMutexLocker locker(&m_mutex);
        m_answers.append(outcome);
    }

    mutable QMutex m_mutex;
    QSemaphore m_gate;
    QAtomicInt m_running;
    std::function<void()> m_fault;
    QList<ScriptOutcome> m_answers;
    QStringList m_sources;
    QString m_threadName;
    bool m_overlapped = false;
};

QStringList namesOf(const QList<NoteSummary> &notes)
{
    QStringList names;
    for (const NoteSummary &note : notes)
        names.append(note.name);
    return names;
}

} // namespace

class NotesServiceTest : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<ScriptedRunner> m_runner;
    std::unique_ptr<NotesService> m_service;

    void loadNotes(const QString &answer)
    {
        m_runner->answer(answer);
        QSignalSpy loaded(m_service.get(), &NotesService::isLoadingChanged);
        m_service->loadNotes(80);
        QTRY_COMPARE(loaded.count(), 2);
    }

private Q_SLOTS:
    void init()
    {
        m_runner = std::make_shared<ScriptedRunner>();
        m_service = std::make_unique<NotesService>(m_runner);
    }

    void cleanup()
    {
        m_runner->allow();
        m_service.reset();
    }

    void listsNotes()
    {
        QCOMPARE(m_service->statusMessage(), QString());
        QVERIFY(!m_service->isLoading() && m_service->notes().isEmpty() && !m_service->currentFolder());
        m_service->setCurrentFolder(u"Ideen"_s);
        m_runner->answer(u"1<§>A<¶>2<§>B<¶>"_s);
        m_service->loadNotes(7);
        QVERIFY(!m_service->isLoading());
        QTRY_VERIFY(m_service->isLoading());
        m_runner->allow();
        QTRY_VERIFY(!m_service->isLoading());
        QCOMPARE(m_service->notes(), (QList<NoteSummary>{{u"1"_s, u"A"_s}, {u"2"_s, u"B"_s}}));
        QCOMPARE(m_runner->sources(), QStringList{notescripts::listNotes(u"Ideen"_s, 7)});
        QCOMPARE(m_runner->threadName(), u"com.randblatt.applescript"_s);
        loadNotes(QString());
        QVERIFY(m_service->notes().isEmpty());
        QCOMPARE(m_service->statusMessage(), u"Keine Notizen gefunden"_s);
        loadNotes(u"1<§>A<¶>"_s);
        QCOMPARE(m_service->statusMessage(), QString());
    }

    void keepsTheListWhenListingFails()
    {
        m_runner->allow();
        loadNotes(u"1<§>A<¶>"_s);
        m_runner->fail(u"Notes hat keine Zeit"_s);
        m_service->loadNotes(80);
        QTRY_COMPARE(m_service->statusMessage(), u"Notes hat keine Zeit"_s);
        QCOMPARE(namesOf(m_service->notes()), QStringList{u"A"_s});
        QVERIFY(!m_service->isLoading());
        m_runner->fail(std::nullopt);
        m_service->loadNotes(80);
        QTRY_COMPARE(m_service->statusMessage(), u"Unbekannter AppleScript-Fehler"_s);
    }

    void shortensMessages()
    {
        m_runner->allow();
        m_runner->fail(u"Keine Zeit:\n\tso\u0007 "_s + QString(10'000, u'x'));
        m_service->loadNotes(80);
        QTRY_VERIFY(m_service->statusMessage().startsWith(u"Keine Zeit:  so  xxx"));
        QVERIFY(m_service->statusMessage().size() <= 300);
        QVERIFY(m_service->statusMessage().endsWith(u"x…"));
    }

    void survivesExceptions_data()
    {
        QTest::addColumn<std::function<void()>>("fault");
        QTest::addColumn<QString>("message");
        using Fault = std::function<void()>;
        QTest::newRow("memory") << Fault([] { throw std::bad_alloc(); }) << u"Zu wenig Arbeitsspeicher."_s;
        QTest::newRow("any") << Fault([] { throw std::runtime_error("kaputt"); })
                             << u"Unerwarteter Fehler: kaputt"_s;
        QTest::newRow("other") << Fault([] { throw 7; }) << u"Unerwarteter Fehler."_s;
    }

    void survivesExceptions()
    {
        QFETCH(const std::function<void()>, fault);
        QFETCH(const QString, message);
        m_runner->allow();
        m_runner->failBy(fault);
        m_service->loadNotes(80);
        QTRY_COMPARE(m_service->statusMessage(), message);
        QTRY_VERIFY(!m_service->isLoading());
        m_runner->failBy(fault);
        std::optional<bool> success;
        m_service->saveBody(u"1"_s, u"T"_s, u"b"_s, [&](bool saved) { success = saved; });
        QTRY_COMPARE(success, std::optional(false));
        QCOMPARE(m_service->statusMessage(), u"Konnte Notiz nicht speichern: "_s + message);
        // Nobody needs to want to know.
        for (int i = 0; i < 3; ++i)
            m_runner->fail(u"nein"_s);
        m_service->saveBody(u"1"_s, u"T"_s, u"b"_s, NotesService::WriteCompletion());
        m_service->loadBody(u"1"_s, NotesService::BodyCompletion());
        m_service->run(u"x"_s, {});
        loadNotes(u"1<§>A<¶>"_s);
        QCOMPARE(namesOf(m_service->notes()), QStringList{u"A"_s});
    }

    void listsFolders()
    {
        m_runner->allow();
        m_runner->answer(u"Notizen<¶><¶>Ideen<¶>"_s);
        m_service->loadFolders();
        QTRY_COMPARE(m_service->folders(), (QStringList{u"Notizen"_s, u"Ideen"_s}));
        m_runner->fail(u"nein"_s);
        m_service->loadFolders();
        QTRY_COMPARE(m_runner->sources().size(), 2);
        QTest::qWait(0);
        QCOMPARE(m_service->folders().size(), 2);
        QCOMPARE(m_service->statusMessage(), QString());
    }

    void readsBodies()
    {
        m_runner->allow();
        QStringList bodies;
        QList<bool> areLoaded;
        const auto keep = [&](const QString &text, bool isLoaded) {
            QCOMPARE(QThread::currentThread(), qApp->thread());
            bodies.append(text);
            areLoaded.append(isLoaded);
        };
        m_runner->answer(u"<div>a &amp; b</div><p>c</p>"_s);
        m_runner->giveNothing();
        m_runner->fail(u"weg"_s);
        for (int i = 0; i < 3; ++i)
            m_service->loadBody(u"x"_s, keep);
        QTRY_COMPARE(bodies, (QStringList{u"a & b\n\nc"_s, QString(), u"(Konnte Notiz nicht laden: weg)"_s}));
        QCOMPARE(areLoaded, (QList<bool>{true, true, false}));
    }

    void reloadsAfterChanges_data()
    {
        using Change = std::function<void(NotesService &, const NotesService::WriteCompletion &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("message");
        QTest::newRow("create") << Change([](NotesService &service, const auto &completion) {
            service.createNote(u"T"_s, u"b"_s, completion);
        }) << notescripts::createNote(u"T"_s, u"b"_s)
                                << u"Konnte Notiz nicht erstellen: voll"_s;
        QTest::newRow("save") << Change([](NotesService &service, const auto &completion) {
            service.saveBody(u"1"_s, u"T"_s, u"b"_s, completion);
        }) << notescripts::setBody(u"1"_s, u"T"_s, u"b"_s)
                              << u"Konnte Notiz nicht speichern: voll"_s;
        QTest::newRow("delete") << Change([](NotesService &service, const auto &completion) {
            service.deleteNote(u"1"_s, completion);
        }) << notescripts::deleteNote(u"1"_s)
                                << u"Konnte Notiz nicht löschen: voll"_s;
        QTest::newRow("restore") << Change([](NotesService &service, const auto &completion) {
            service.restoreNote(u"1"_s, u"Ideen"_s, completion);
        }) << notescripts::moveNote(u"1"_s, u"Ideen"_s)
                                 << u"Konnte Notiz nicht wiederherstellen: voll"_s;
    }

    void reloadsAfterChanges()
    {
        using Change = std::function<void(NotesService &, const NotesService::WriteCompletion &)>;
        QFETCH(Change, change);
        QFETCH(QString, script);
        QFETCH(QString, message);
        m_runner->allow();
        QList<bool> successes;
        const auto keep = [&](bool success) { successes.append(success); };
        m_runner->fail(u"voll"_s);
        change(*m_service, keep);
        QTRY_COMPARE(successes, QList<bool>{false});
        QCOMPARE(m_service->statusMessage(), message);
        m_runner->answer(QString());
        m_runner->answer(u"2<§>Neu<¶>"_s);
        change(*m_service, keep);
        QTRY_COMPARE(namesOf(m_service->notes()), QStringList{u"Neu"_s});
        QCOMPARE(successes, (QList<bool>{false, true}));
        QCOMPARE(m_runner->sources(),
                 (QStringList{script, script, notescripts::listNotes(std::nullopt, 80)}));
    }

    void completesInCallOrderAndOneAtATime()
    {
        QList<int> order;
        for (int i = 0; i < 50; ++i) {
            m_service->run(QString::number(i), [&order, i](const ASResult &) { order.append(i); });
            m_runner->allow(i % 3 == 0 ? 3 : 0);
        }
        m_runner->allow();
        QTRY_COMPARE(order.size(), 50);
        QVERIFY(std::is_sorted(order.cbegin(), order.cend()));
        QVERIFY(!m_runner->hasOverlapped());
        QCOMPARE(m_runner->sources().constFirst(), u"0"_s);
    }

    void completesAfterItsEnd()
    {
        QStringList calls;
        m_service->loadNotes(80);
        m_service->loadFolders();
        m_service->run(u"x"_s, [&](const ASResult &) { calls.append(u"run"_s); });
        m_service->createNote(u"T"_s, u"b"_s,
                              [&](bool success) { calls.append(success ? u"ja"_s : u"nein"_s); });
        m_service->loadBody(u"1"_s, [&](const QString &, bool) { calls.append(u"body"_s); });
        m_runner->allow();
        m_service.reset();
        QTRY_COMPARE(calls, (QStringList{u"run"_s, u"ja"_s, u"body"_s}));
        // The list is not loaded again for nobody.
        QCOMPARE(m_runner->sources().size(), 5);
    }

    void doesNotHangOnAScriptAtItsEnd()
    {
        bool called = false;
        m_service->run(u"hängt"_s, [&](const ASResult &) { called = true; });
        QElapsedTimer timer;
        timer.start();
        m_service.reset();
        QVERIFY(timer.elapsed() < 30000);
        QVERIFY(!called);
        m_runner->allow();
        QTRY_VERIFY(called);
    }

    void announcesListsStepByStep()
    {
        m_runner->allow();
        const QAbstractItemModelTester tester(m_service->noteModel(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy resets(m_service->noteModel(), &QAbstractItemModel::modelReset);
        QSignalSpy moves(m_service->noteModel(), &QAbstractItemModel::rowsMoved);
        QSignalSpy inserts(m_service->noteModel(), &QAbstractItemModel::rowsInserted);
        QSignalSpy removals(m_service->noteModel(), &QAbstractItemModel::rowsRemoved);
        QSignalSpy changes(m_service->noteModel(), &QAbstractItemModel::dataChanged);
        loadNotes(u"1<§>A<¶>2<§>B<¶>3<§>C<¶>"_s);
        // A saved note comes to the top, under its new name.
        loadNotes(u"3<§>Z<¶>1<§>A<¶>2<§>B<¶>"_s);
        QCOMPARE(namesOf(m_service->notes()), (QStringList{u"Z"_s, u"A"_s, u"B"_s}));
        QCOMPARE(moves.count(), 1);
        QCOMPARE(inserts.count(), 3);
        QCOMPARE(changes.count(), 1);
        // Ids that are there twice, and fewer of them later
        loadNotes(u"1<§>A<¶>1<§>A2<¶>2<§>B<¶>1<§>A3<¶>"_s);
        QCOMPARE(namesOf(m_service->notes()), (QStringList{u"A"_s, u"A2"_s, u"B"_s, u"A3"_s}));
        loadNotes(u"4<§>D<¶>1<§>A3<¶>"_s);
        QCOMPARE(namesOf(m_service->notes()), (QStringList{u"D"_s, u"A3"_s}));
        loadNotes(QString());
        QVERIFY(m_service->notes().isEmpty());
        QCOMPARE(resets.count(), 0);
        QVERIFY(removals.count() > 0);
    }

    void worksOnTheLibrary()
    {
        const QTemporaryDir folder;
        auto runner = std::make_shared<InterpreterScriptRunner>(NotesLibrary(folder.filePath(u"notes"_s)));
        NotesService service(runner);
        service.createNote(u"Titel"_s, u"  a\nb"_s, {});
        QTRY_COMPARE(namesOf(service.notes()), QStringList{u"Titel"_s});
        const QString id = service.notes().first().id;
        QString text;
        service.loadBody(id, [&](const QString &body, bool isLoaded) { text = isLoaded ? body : QString(); });
        QTRY_COMPARE(text, u"  a\nb"_s);
        QString from;
        std::optional<bool> isBack;
        service.locateNote(id, [&](const QString &name) { from = name; });
        service.deleteNote(id, [&](bool isDeleted) {
            QVERIFY(isDeleted);
            service.restoreNote(id, from, [&](bool success) { isBack = success; });
        });
        QTRY_COMPARE(isBack, true);
        QCOMPARE(from, u"Notizen"_s);
        QTRY_COMPARE(namesOf(service.notes()), QStringList{u"Titel"_s});
    }
};

RANDBLATT_TEST_MAIN(NotesServiceTest, QGuiApplication)
#include "tst_notesservice.moc"
