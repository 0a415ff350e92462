#include "CalendarContract.h"
#include "platform/calendar/CalendarFile.h"
#include "platform/calendar/DesktopCalendarStore.h"
#include "platform/calendar/EmbeddedCalendar.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace randblatt;

class EmbeddedCalendarTest : public CalendarContract
{
    Q_OBJECT

protected:
    std::unique_ptr<CalendarStore> makeStore(const QByteArray &ics) override
    {
        m_folder = std::make_unique<QTemporaryDir>();
        write(ics);
        std::vector<std::unique_ptr<CalendarBackend>> backends;
        backends.push_back(std::make_unique<EmbeddedCalendar>(path()));
        return std::make_unique<DesktopCalendarStore>(std::move(backends));
    }
    void addByOthers(const QByteArray &ics) override
    {
        QFile::remove(path());
        write(ics);
    }

private:
    [[nodiscard]] QString path() const { return m_folder->filePath(u"quillbar/calendar.ics"_s); }
    void write(const QByteArray &bytes) const
    {
        QDir().mkpath(m_folder->filePath(u"quillbar"_s));
        QFile file(path());
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(bytes);
    }
    [[nodiscard]] QByteArray written() const
    {
        QFile file(path());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("(fehlt)");
    }
    [[nodiscard]] QStringList files() const
    {
        return QDir(m_folder->filePath(u"quillbar"_s)).entryList(QDir::Files, QDir::Name);
    }
    [[nodiscard]] static NewCalendarEvent sample()
    {
        const QDateTime start(QDate(2026, 10, 26), QTime(9, 0));
        return {u"Neu"_s, start, start.addSecs(3600)};
    }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void leavesEverythingElseInTheFileAsItIs_data()
    {
        QTest::addColumn<QByteArray>("newline");
        QTest::newRow("standard line breaks") << QByteArray("\r\n");
        QTest::newRow("plain line breaks") << QByteArray("\n");
    }

    void leavesEverythingElseInTheFileAsItIs()
    {
        QFETCH(QByteArray, newline);
        QByteArray before = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-OURS;X-P=\"a:b\":1\r\n" +
                            event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z\nX-UNKNOWN:ü\nX-LONG:1\n 2\n"
                                       "BEGIN:VALARM\nACTION:DISPLAY\nTRIGGER:-PT5M\nEND:VALARM\nNONSENSE") +
                            "BEGIN:VTODO\r\nUID:t\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
        before.replace("\r\n", newline);
        const auto store = makeStore(before);
        QVERIFY(access(*store));
        QVERIFY(save(*store, sample()));
        const QByteArray after = written();
        const QByteArray end = "END:VCALENDAR" + newline;
        QVERIFY(after.endsWith(end));
        QVERIFY(after.startsWith(before.chopped(end.size())));
        QCOMPARE(after.contains("\r\n"), newline == "\r\n");
        QCOMPARE(fetch(*store, QDate(2026, 10, 26), 1)->size(), 2);
        QCOMPARE(files(), QStringList{u"calendar.ics"_s});
    }

    void startsAFileThatOnlyTheUserReads()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        CalendarFile file(path());
        QVERIFY(file.open());
        QCOMPARE(files(), QStringList());
        QVERIFY(file.append(sample()));
        const auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QCOMPARE(QFile::permissions(path()), owner);
        QCOMPARE(QFile::permissions(m_folder->filePath(u"quillbar"_s)),
                 owner | QFile::ExeOwner | QFile::ExeUser);
        QCOMPARE(file.events(sample().start, sample().end)->size(), 1);
    }

    void keepsAFileThatIsNoCalendar_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("something else") << QByteArray("Milch, Brot und Kaffee\n");
        QTest::newRow("binary") << QByteArray("\0\1\2\3BEGIN:", 10);
        QTest::newRow("cut off") << calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z")).chopped(30);
        QTest::newRow("another component") << QByteArray("BEGIN:VCARD\r\nFN:X\r\nEND:VCARD\r\n");
    }

    void keepsAFileThatIsNoCalendar()
    {
        QFETCH(QByteArray, bytes);
        const auto store = makeStore(bytes);
        QVERIFY(access(*store));
        QCOMPARE(fetch(*store, QDate(2026, 10, 26), 1)->size(), 0);
        QCOMPARE(files().size(), 1);
        QVERIFY(files().first().startsWith(u"calendar.ics.unlesbar-"_s));

        // One that turns up later may be half written: it is left alone until it would be overwritten.
        write(bytes);
        QVERIFY(!fetch(*store, QDate(2026, 10, 26), 1));
        QCOMPARE(written(), bytes);
        QVERIFY(save(*store, sample()));
        QCOMPARE(fetch(*store, QDate(2026, 10, 26), 1)->size(), 1);
        QCOMPARE(files().size(), 3);
        for (const QString &name : files().sliced(1)) {
            QFile aside(m_folder->filePath(u"quillbar/"_s + name));
            QVERIFY(aside.open(QFile::ReadOnly));
            QCOMPARE(aside.readAll(), bytes);
        }
    }

    void takesAnEmptyFileForAnEmptyCalendar()
    {
        const auto store = makeStore("\n");
        QVERIFY(access(*store));
        QCOMPARE(fetch(*store, QDate(2026, 10, 26), 1)->size(), 0);
        QVERIFY(save(*store, sample()));
        QCOMPARE(files(), QStringList{u"calendar.ics"_s});
    }

    void keepsTheOldFileWhenAWriteFails()
    {
        const QByteArray before = calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z"));
        const auto store = makeStore(before);
        QVERIFY(access(*store));
        // A folder in which nothing can be made; the superuser may write anywhere else.
        QVERIFY(QFile::rename(m_folder->filePath(u"quillbar"_s), m_folder->filePath(u"real"_s)));
        QVERIFY(!save(*store, sample()));
        QVERIFY(QFile::rename(m_folder->filePath(u"real"_s), m_folder->filePath(u"quillbar"_s)));
        QCOMPARE(written(), before);
        QCOMPARE(fetch(*store, QDate(2026, 10, 26), 1)->size(), 1);
    }

    void refusesAccessToAFileThatItCannotRead()
    {
        const auto store = makeStore({});
        QFile::remove(path());
        QDir().mkpath(path());
        QVERIFY(!access(*store));
    }

    void showsNonsenseAsWellAsItGoes()
    {
        const auto store = makeStore(calendar(
            event("1", "SUMMARY:Rückwärts\nDTSTART:20261026T100000Z\nDTEND:20261026T080000Z") +
            event("2", "SUMMARY:Gemischt\nDTSTART;VALUE=DATE:20261027\nDTEND:20261029T080000Z") +
            event("3", "SUMMARY:Ohne Anfang") + event("4", "SUMMARY:Dreißigster\nDTSTART:20260230T080000Z") +
            event("5", "SUMMARY:Zweimal\nDTSTART:20261028T080000Z") +
            event("5", "SUMMARY:Zweimal\nDTSTART:20261028T080000Z") +
            event("6", "SUMMARY:Nie\nDTSTART:20261001T080000Z\nRRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30") +
            event("7", "SUMMARY:Abgesagt\nSTATUS:CANCELLED\nDTSTART:20261028T080000Z") +
            event("8", "SUMMARY:Regel ohne Sinn\nDTSTART:20261029T080000Z\nRRULE:FREQ=MANCHMAL")));
        QVERIFY(access(*store));
        const auto events = fetch(*store, QDate(2026, 10, 26), 7);
        QCOMPARE(lines(events),
                 (QStringList{u"2026-10-26 11:00 – 2026-10-26 11:00 Rückwärts"_s, u"2026-10-27 +2 Gemischt"_s,
                              u"2026-10-28 09:00 – 2026-10-28 09:00 Zweimal"_s,
                              u"2026-10-28 09:00 – 2026-10-28 09:00 Zweimal"_s,
                              u"2026-10-29 09:00 – 2026-10-29 09:00 Regel ohne Sinn"_s}));
        QVERIFY(events->at(2).id != events->at(3).id);
    }

    void survivesARecurrenceEverySecond()
    {
        const auto store = makeStore(calendar(
            event("s", "SUMMARY:Tick\nDTSTART:19700101T000000Z\nDURATION:PT1S\nRRULE:FREQ=SECONDLY") +
            event("c", "SUMMARY:Tack\nDTSTART:19700101T000000Z\nRRULE:FREQ=SECONDLY;COUNT=2000000000")));
        QVERIFY(access(*store));
        const auto events = fetch(*store, QDate(2026, 10, 26), 7);
        QVERIFY(events);
        QVERIFY(events->size() <= 10'000);
    }

    void findsTheSameOccurrencesFromAfarAsFromTheStart_data()
    {
        QTest::addColumn<QByteArray>("rule");
        for (const char *rule :
             {"FREQ=DAILY;INTERVAL=3", "FREQ=WEEKLY;INTERVAL=3;BYDAY=MO,WE,SU", "FREQ=MONTHLY;BYMONTHDAY=31",
              "FREQ=MONTHLY;INTERVAL=5;BYDAY=-1FR", "FREQ=YEARLY;INTERVAL=2",
              "FREQ=MONTHLY;BYDAY=MO,TU;BYSETPOS=2", "FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=TU,SU",
              "FREQ=YEARLY;BYMONTH=2,11;BYDAY=2SU", "FREQ=HOURLY;INTERVAL=7",
              "FREQ=MINUTELY;INTERVAL=1000;BYHOUR=8,9", "FREQ=YEARLY;BYWEEKNO=44;BYDAY=TH"})
            QTest::newRow(rule) << QByteArray(rule);
    }

    void findsTheSameOccurrencesFromAfarAsFromTheStart()
    {
        QFETCH(QByteArray, rule);
        const QByteArray series =
            "SUMMARY:R\nDTSTART;TZID=Europe/Berlin:20200131T083000\nDURATION:PT26H\nRRULE:" + rule;
        // Counting, a rule has to be followed from its start.
        const auto skipping = CalendarIndex::parse(calendar(event("a", series)));
        const auto counting = CalendarIndex::parse(calendar(event("a", series + ";COUNT=20000")));
        QVERIFY(skipping && counting);
        int found = 0;
        for (QDate day(2025, 12, 1); day < QDate(2027, 1, 10); day = day.addDays(17)) {
            const auto some = skipping->events(day.startOfDay(), day.addDays(17).startOfDay());
            const auto all = counting->events(day.startOfDay(), day.addDays(17).startOfDay());
            QCOMPARE(lines(some), lines(all));
            found += static_cast<int>(all.size());
        }
        QVERIFY(found > 0);
    }
};

RANDBLATT_TEST_MAIN(EmbeddedCalendarTest, QCoreApplication)
#include "tst_embeddedcalendar.moc"
