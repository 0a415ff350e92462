#include "FakeCalendarStore.h"
#include "modules/calendar/CalendarModule.h"
#include "modules/calendar/EventDraft.h"
#include "platform/SystemWake.h"
#include "settings/Preferences.h"
#include "support/TestEnvironment.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class EventDraftTest : public QObject
{
    Q_OBJECT

private:
    QDateTime m_now;
    QTemporaryDir m_folder;
    SystemWake m_wake;
    std::unique_ptr<FakeCalendarStore> m_store;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<CalendarModule> m_module;

    /// As if the process had been killed and started again.
    void restart()
    {
        m_module.reset();
        m_preferences = std::make_unique<Preferences>(m_folder.filePath(u"preferences.sqlite"_s));
        m_store = std::make_unique<FakeCalendarStore>();
        m_module =
            std::make_unique<CalendarModule>(*m_store, m_wake, *m_preferences, [this] { return m_now; });
        m_module->service()->requestAccess();
        QTRY_COMPARE(m_store->fetches.size(), 1U);
    }

    [[nodiscard]] EventDraft &draft() const { return *m_module->draft(); }
    [[nodiscard]] UndoHistory &history() const { return *m_module->undoHistory(); }

    void addEvent()
    {
        draft().setOpen(true);
        draft().setTitle(u"Zahnarzt"_s);
        QSignalSpy finished(m_module->service(), &CalendarService::addFinished);
        draft().add();
        QTRY_COMPARE(finished.count(), 1);
    }

private Q_SLOTS:
    void init()
    {
        m_now = QDateTime(QDate(2026, 11, 16), QTime(8, 15));
        m_preferences.reset();
        QFile::remove(m_folder.filePath(u"preferences.sqlite"_s));
        restart();
    }
    void cleanup()
    {
        m_module.reset();
        m_preferences.reset();
    }

    void comesBackAsItWasLeft()
    {
        draft().setOpen(true);
        draft().setTitle(u"Zahn"_s);
        draft().setStart(QDateTime(QDate(2026, 12, 24), QTime(18, 0)));
        draft().setStartText(u"24.12. halb"_s);
        draft().setDurationMinutes(90);
        draft().setAllDay(true);
        draft().setCalendar(u"a"_s);
        m_now = m_now.addDays(3);
        restart();
        QVERIFY(draft().isAllDay());
        QVERIFY(draft().isOpen());
        QCOMPARE(draft().title(), u"Zahn"_s);
        QCOMPARE(draft().start(), QDateTime(QDate(2026, 12, 24), QTime(18, 0)));
        QCOMPARE(draft().startText(), u"24.12. halb"_s);
        QVERIFY(!draft().startProblem().isEmpty());
        QCOMPARE(draft().durationMinutes(), 90);
        draft().beginView();
        QCOMPARE(draft().startText(), u"24.12. halb"_s);
    }

    void startsAnewOnceItIsSaved()
    {
        draft().setStart(QDateTime(QDate(2026, 12, 24), QTime(18, 0)));
        addEvent();
        QVERIFY(!draft().isOpen());
        QCOMPARE(draft().title(), QString());
        QCOMPARE(draft().start(), QDateTime(QDate(2026, 12, 24), QTime(18, 0)));
        m_now = m_now.addDays(3);
        restart();
        QVERIFY(!draft().isOpen());
        QCOMPARE(draft().start(), m_now);
        // A closed form that is shown again starts now, whatever it was set to; an open one stays as it is.
        draft().setStart(QDateTime(QDate(2026, 12, 24), QTime(18, 0)));
        m_now = m_now.addDays(2);
        draft().beginView();
        QCOMPARE(draft().start(), m_now);
        draft().setOpen(true);
        m_now = m_now.addDays(2);
        draft().beginView();
        QCOMPARE(draft().start(), m_now.addDays(-2));
    }

    void namesAnEventTheSameUntilItIsAnotherOne_data()
    {
        QTest::addColumn<std::function<void(EventDraft &)>>("change");
        QTest::addColumn<bool>("isSame");
        using Change = std::function<void(EventDraft &)>;
        QTest::newRow("nothing") << Change([](EventDraft &) {}) << true;
        QTest::newRow("closed and opened") << Change([](EventDraft &draft) {
            draft.setOpen(false);
            draft.setOpen(true);
        }) << true;
        QTest::newRow("title") << Change([](EventDraft &draft) { draft.setTitle(u"Zahn"_s); }) << false;
        QTest::newRow("start") << Change([](EventDraft &draft) { draft.setStartText(u"18:00"_s); }) << false;
        QTest::newRow("calendar") << Change([](EventDraft &draft) { draft.setCalendar(u"b"_s); }) << false;
        QTest::newRow("whole day") << Change([](EventDraft &draft) { draft.setAllDay(true); }) << false;
        QTest::newRow("duration") << Change([](EventDraft &draft) { draft.setDurationMinutes(15); }) << false;
    }

    void namesAnEventTheSameUntilItIsAnotherOne()
    {
        QFETCH(std::function<void(EventDraft &)>, change);
        QFETCH(bool, isSame);
        m_store->saves = false;
        addEvent();
        QVERIFY(draft().isOpen());
        const QString uid = m_store->saved.first().uid;
        change(draft());
        // The attempt outlives the process as well: who knows how far it got.
        restart();
        QSignalSpy finished(m_module->service(), &CalendarService::addFinished);
        draft().add();
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(m_store->saved.first().uid == uid, isSame);
    }

    void takesAnAddedEventBack()
    {
        QVERIFY(!history().canUndo());
        addEvent();
        QCOMPARE(history().offer(), u"Termin hinzugefügt"_s);
        QTRY_COMPARE(m_module->service()->events().size(), 1);
        QVERIFY(history().undo());
        QTRY_VERIFY(m_module->service()->events().isEmpty());
        QCOMPARE(m_store->removed, QStringList{m_store->saved.first().uid});
        QVERIFY(!history().canUndo());
        QVERIFY(!draft().isOpen());
    }

    void saysThatAnEventCannotBeTakenBack_data()
    {
        QTest::addColumn<std::optional<Removal>>("removal");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<bool>("canTryAgain");
        QTest::newRow("not now") << std::optional<Removal>() << u"Kein freier Speicherplatz."_s << true;
        QTest::newRow("not any more")
            << std::optional(Removal::changed) << u"Der Termin wurde inzwischen geändert."_s << false;
    }

    void saysThatAnEventCannotBeTakenBack()
    {
        QFETCH(std::optional<Removal>, removal);
        QFETCH(QString, reason);
        QFETCH(bool, canTryAgain);
        addEvent();
        QTRY_COMPARE(m_module->service()->events().size(), 1);
        m_store->removal = removal;
        m_store->reason = u"Kein freier Speicherplatz."_s;
        QVERIFY(history().undo());
        QTRY_COMPARE(m_module->service()->statusMessage(), u"Konnte Termin nicht löschen."_s);
        QCOMPARE(m_module->service()->reason(), reason);
        QCOMPARE(m_module->service()->events().size(), 1);
        QCOMPARE(history().canUndo(), canTryAgain);
    }
};

RANDBLATT_TEST_MAIN(EventDraftTest, QGuiApplication)
#include "tst_eventdraft.moc"
