#include "FakeCalendarStore.h"
#include "modules/calendar/AgendaRefresh.h"
#include "modules/calendar/CalendarService.h"
#include "platform/SystemWake.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class CalendarServiceTest : public QObject
{
    Q_OBJECT

private:
    QDateTime m_now;
    std::unique_ptr<FakeCalendarStore> m_store;
    std::unique_ptr<CalendarService> m_service;

    void grantAccess()
    {
        m_service->requestAccess();
        QTRY_COMPARE(m_store->fetches.size(), 1U);
        QTRY_VERIFY(m_service->statusMessage() != u"Lade…"_s);
    }

    [[nodiscard]] QStringList titles() const
    {
        QStringList titles;
        for (const CalendarEvent &event : m_service->events())
            titles.append(event.title);
        return titles;
    }

private Q_SLOTS:
    void init()
    {
        m_now = QDateTime(QDate(2026, 10, 23), QTime(23, 59));
        m_store = std::make_unique<FakeCalendarStore>();
        m_service = std::make_unique<CalendarService>(*m_store, [this] { return m_now; });
    }

    void loadsWholeDaysOverTheEndOfSummerTime()
    {
        QCOMPARE(m_service->statusMessage(), u"Lade…"_s);
        QVERIFY(!m_service->authorized());
        grantAccess();
        QVERIFY(m_service->authorized());
        const auto [start, end] = m_store->fetches.front();
        QCOMPARE(start, QDateTime(QDate(2026, 10, 23), QTime(0, 0)));
        QCOMPARE(end, QDateTime(QDate(2026, 10, 30), QTime(0, 0)));
        QCOMPARE(start.secsTo(end), (7 * 24 + 1) * 3600);
        QCOMPARE(m_service->statusMessage(), u"Keine Termine in den nächsten 7 Tagen"_s);
    }

    void sortsByStartAndKeepsTheStoresOrder()
    {
        const QDateTime noon(QDate(2026, 10, 24), QTime(12, 0));
        m_store->answer = QList<CalendarEvent>{FakeCalendarStore::make(u"B"_s, noon, noon),
                                               FakeCalendarStore::make(u"A"_s, noon, noon),
                                               FakeCalendarStore::make(u"früher"_s, noon.addSecs(-1), noon)};
        grantAccess();
        QCOMPARE(titles(), (QStringList{u"früher"_s, u"B"_s, u"A"_s}));
        QCOMPARE(m_service->statusMessage(), QString());
    }

    void keepsItsEventsWhenAccessIsRefusedOrTheStoreFails()
    {
        m_store->answer->append(FakeCalendarStore::allDay(u"Fest"_s, m_now.date()));
        grantAccess();
        m_store->answer.reset();
        m_store->reason = u"Die Datei ist unvollständig."_s;
        m_service->reload();
        QTRY_COMPARE(m_service->statusMessage(),
                     u"Konnte Termine nicht laden; hier steht der letzte Stand."_s);
        QCOMPARE(m_service->reason(), u"Die Datei ist unvollständig."_s);
        QCOMPARE(titles(), QStringList{u"Fest"_s});
        m_store->answer = QList{FakeCalendarStore::allDay(u"Messe"_s, m_now.date())};
        m_service->reload();
        QTRY_COMPARE(titles(), QStringList{u"Messe"_s});
        QCOMPARE(m_service->statusMessage(), QString());
        QCOMPARE(m_service->reason(), QString());

        m_store->grants = false;
        m_service->requestAccess();
        QTRY_COMPARE(m_service->statusMessage(),
                     u"Kein Kalenderzugriff. In den Systemeinstellungen erlauben."_s);
        QVERIFY(!m_service->authorized());
        QCOMPARE(titles(), QStringList{u"Messe"_s});
    }

    void showsTheAnswerToTheLatestReload()
    {
        grantAccess();
        m_store->holds = true;
        m_store->answer = QList{FakeCalendarStore::allDay(u"alt"_s, m_now.date())};
        m_service->reload();
        m_store->answer = QList{FakeCalendarStore::allDay(u"neu"_s, m_now.date())};
        m_service->reload();
        m_store->release(1);
        QCOMPARE(titles(), QStringList{u"neu"_s});
        m_store->release(0);
        QCOMPARE(titles(), QStringList{u"neu"_s});
    }

    void savesTrimmedTitlesAndFiveMinutesAtLeast_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("saved");
        QTest::newRow("an hour") << 3600 << 3600;
        QTest::newRow("none") << 0 << 300;
        QTest::newRow("backwards") << -3600 << 300;
    }

    void savesTrimmedTitlesAndFiveMinutesAtLeast()
    {
        QFETCH(int, length);
        QFETCH(int, saved);
        grantAccess();
        QSignalSpy finished(m_service.get(), &CalendarService::addFinished);
        m_service->addEvent(u" \tZahnarzt\n"_s, m_now, m_now.addSecs(length));
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(finished.first().first().toBool(), true);
        QCOMPARE(m_store->saved.first().title, u"Zahnarzt"_s);
        QCOMPARE(m_store->saved.first().start.secsTo(m_store->saved.first().end), saved);
        QTRY_COMPARE(titles(), QStringList{u"Zahnarzt"_s});
    }

    void savesNothingWithoutTitleOrAccess()
    {
        QSignalSpy finished(m_service.get(), &CalendarService::addFinished);
        m_service->addEvent(u"Zahnarzt"_s, m_now, m_now);
        grantAccess();
        m_service->addEvent(u" \n"_s, m_now, m_now);
        QCOMPARE(finished.count(), 2);
        QCOMPARE(finished.at(0).first().toBool(), false);
        QCOMPARE(finished.at(1).first().toBool(), false);
        QVERIFY(m_store->saved.isEmpty());
        QCOMPARE(m_service->statusMessage(), u"Keine Termine in den nächsten 7 Tagen"_s);
    }

    void saysThatAnEventWasNotSaved()
    {
        m_store->answer->append(FakeCalendarStore::allDay(u"Fest"_s, m_now.date()));
        grantAccess();
        m_store->saves = false;
        QSignalSpy finished(m_service.get(), &CalendarService::addFinished);
        m_service->addEvent(u"Zahnarzt"_s, m_now, m_now);
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(finished.first().first().toBool(), false);
        QCOMPARE(m_service->statusMessage(), u"Konnte Termin nicht speichern."_s);
        QCOMPARE(titles(), QStringList{u"Fest"_s});
        QCOMPARE(m_store->fetches.size(), 1U);
    }

    void savesOneEventForADoubleClick()
    {
        grantAccess();
        m_store->holds = true;
        m_service->addEvent(u"Zahnarzt"_s, m_now, m_now);
        m_service->addEvent(u"Zahnarzt"_s, m_now, m_now);
        QCOMPARE(m_store->saved.size(), 1);
        m_store->release(0);
        QVERIFY(!m_service->saving());
    }

    void refreshesWhatIsLookedAt()
    {
        SystemWake wake;
        AgendaRefresh refresh(*m_service, *m_store, wake, [this] { return m_now; });
        const auto requests = [this] { return m_store->accessRequests; };

        // The first request is the view's.
        Q_EMIT wake.woke();
        refresh.cardShown();
        QCOMPARE(requests(), 0);
        m_service->requestAccess();
        refresh.cardHidden();
        refresh.cardShown();
        QCOMPARE(requests(), 1);

        Q_EMIT wake.woke();
        QCOMPARE(requests(), 2);
        Q_EMIT m_store->changed();
        Q_EMIT m_store->changed();
        QTRY_COMPARE(requests(), 3);

        refresh.cardHidden();
        Q_EMIT wake.woke();
        Q_EMIT m_store->changed();
        QTest::qWait(400);
        QCOMPARE(requests(), 3);
        refresh.cardShown();
        QCOMPARE(requests(), 4);

        refresh.cardHidden();
        m_now = m_now.addSecs(60);
        QCOMPARE(requests(), 4);
        refresh.cardShown();
        QCOMPARE(requests(), 5);
        QTRY_COMPARE(m_store->fetches.back().first.date(), QDate(2026, 10, 24));
        refresh.cardHidden();
        refresh.cardShown();
        QCOMPARE(requests(), 5);
    }

    void triesAgainWhatItCouldNotLoad_data()
    {
        QTest::addColumn<bool>("grants");
        QTest::newRow("refused") << false;
        QTest::newRow("not loaded") << true;
    }

    void triesAgainWhatItCouldNotLoad()
    {
        QFETCH(bool, grants);
        SystemWake wake;
        AgendaRefresh refresh(*m_service, *m_store, wake, [this] { return m_now; });
        QSignalSpy reloads(m_service.get(), &CalendarService::reloaded);
        m_store->answer.reset();
        m_store->grants = grants;
        m_store->reason = u"Der Kalenderdienst antwortet nicht."_s;
        m_service->requestAccess();
        QVERIFY(m_service->loading());
        QTRY_COMPARE(reloads.count(), 1);
        QCOMPARE(m_service->reason(), m_store->reason);
        QTRY_VERIFY(!m_service->loading());
        QCOMPARE(m_store->accessRequests, 1);
        // When somebody looks, and then by itself.
        refresh.cardShown();
        QTRY_COMPARE(reloads.count(), 2);
        m_store->grants = true;
        m_store->answer = QList{FakeCalendarStore::allDay(u"Messe"_s, m_now.date())};
        QTRY_COMPARE_WITH_TIMEOUT(reloads.count(), 3, 30'000);
        QCOMPARE(titles(), QStringList{u"Messe"_s});
        QVERIFY(!m_service->isOutdated());
        refresh.cardHidden();
        refresh.cardShown();
        QCOMPARE(m_store->accessRequests, 3);
    }

    void refreshesAtMidnight()
    {
        SystemWake wake;
        m_now = QDateTime(QDate(2026, 10, 23), QTime(23, 59, 59, 900));
        AgendaRefresh refresh(*m_service, *m_store, wake, [this] { return m_now; });
        m_service->requestAccess();
        refresh.cardShown();
        m_now = m_now.addMSecs(110);
        QTRY_COMPARE(m_store->accessRequests, 2);
        QTRY_COMPARE(m_store->fetches.back().first.date(), QDate(2026, 10, 24));
    }
};

RANDBLATT_TEST_MAIN(CalendarServiceTest, QCoreApplication)
#include "tst_calendarservice.moc"
