#include "CalendarContract.h"

#include <QSet>
#include <QSignalSpy>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

const QDate autumnChange(2026, 10, 25); // a Sunday; at 03:00 the clocks go back to 02:00
const QDate springChange(2026, 3, 29);  // a Sunday; at 02:00 the clocks go forward to 03:00

/// A zone that no database knows: eight hours ahead of UTC, without summer time.
constexpr auto ownZone =
    "BEGIN:VTIMEZONE\r\nTZID:Haus am Meer\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
    "TZOFFSETFROM:+0800\r\nTZOFFSETTO:+0800\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";

template <typename T>
T awaited(const std::optional<T> &answer)
{
    const bool answered = QTest::qWaitFor([&] { return answer.has_value(); }, 30'000);
    if (!answered)
        qFatal("Der Kalender antwortet nicht.");
    return *answer;
}

} // namespace

QByteArray CalendarContract::calendar(const QByteArray &components)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Test//Test//DE\r\n" + components +
           "END:VCALENDAR\r\n";
}

QByteArray CalendarContract::event(const QByteArray &uid, const QByteArray &properties)
{
    QByteArray text = "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTAMP:20260101T000000Z\r\n";
    for (const QByteArray &property : properties.split('\n'))
        text += property.trimmed() + "\r\n";
    return text + "END:VEVENT\r\n";
}

bool CalendarContract::access(CalendarStore &store)
{
    std::optional<bool> answer;
    store.requestAccess(&store,
                        [&](const CalendarStore::Access &access) { answer = static_cast<bool>(access); });
    return awaited(answer);
}

CalendarStore::Events CalendarContract::fetch(CalendarStore &store, const QDate &first, int days)
{
    std::optional<CalendarStore::Events> answer;
    store.fetchEvents(first.startOfDay(), first.addDays(days).startOfDay(), &store,
                      [&](const CalendarStore::Events &events) { answer = events; });
    return awaited(answer);
}

QStringList CalendarContract::lines(const CalendarStore::Events &events)
{
    if (!events)
        return {u"(keine Antwort)"_s};
    QStringList lines;
    for (const CalendarEvent &event : *events) {
        const QString start = event.start.toString(u"yyyy-MM-dd HH:mm");
        if (event.allDay) {
            const auto days = event.start.date().daysTo(event.end.date());
            lines.append(u"%1 +%2 %3"_s.arg(start.chopped(6)).arg(days).arg(event.title));
        } else {
            lines.append(u"%1 – %2 %3"_s.arg(start, event.end.toString(u"yyyy-MM-dd HH:mm"), event.title));
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

CalendarStore::Saved CalendarContract::save(CalendarStore &store, const NewCalendarEvent &event)
{
    std::optional<CalendarStore::Saved> answer;
    store.saveEvent(event, &store, [&](const CalendarStore::Saved &saved) { answer = saved; });
    return awaited(answer);
}

CalendarStore::Removed CalendarContract::remove(CalendarStore &store, const SavedEvent &event)
{
    std::optional<CalendarStore::Removed> answer;
    store.removeEvent(event, &store, [&](const CalendarStore::Removed &removed) { answer = removed; });
    return awaited(answer);
}

void CalendarContract::findsWhatTakesPlaceInTheRange_data()
{
    QTest::addColumn<QByteArray>("components");
    QTest::addColumn<QDate>("first");
    QTest::addColumn<QStringList>("expected");
    const QByteArray berlin = ";TZID=Europe/Berlin:";

    QTest::newRow("across midnight, into and out of the range")
        << event("in",
                 "SUMMARY:Hinein\nDTSTART" + berlin + "20261024T233000\nDTEND" + berlin + "20261025T010000") +
               event("out", "SUMMARY:Hinaus\nDTSTART" + berlin + "20261031T233000\nDTEND" + berlin +
                                "20261101T010000") +
               event("before", "SUMMARY:Davor\nDTSTART" + berlin + "20261024T230000\nDTEND" + berlin +
                                   "20261025T000000") +
               event("after", "SUMMARY:Danach\nDTSTART" + berlin + "20261101T000000\nDTEND" + berlin +
                                  "20261101T010000")
        << autumnChange
        << QStringList{u"2026-10-24 23:30 – 2026-10-25 01:00 Hinein"_s,
                       u"2026-10-31 23:30 – 2026-11-01 01:00 Hinaus"_s};
    QTest::newRow("daily over the end of summer time")
        << event("d", "SUMMARY:Tee\nDTSTART" + berlin + "20260701T160000\nDTEND" + berlin +
                          "20260701T163000\nRRULE:FREQ=DAILY;UNTIL=20261027T150000Z")
        << autumnChange.addDays(-1)
        << QStringList{
               u"2026-10-24 16:00 – 2026-10-24 16:30 Tee"_s, u"2026-10-25 16:00 – 2026-10-25 16:30 Tee"_s,
               u"2026-10-26 16:00 – 2026-10-26 16:30 Tee"_s, u"2026-10-27 16:00 – 2026-10-27 16:30 Tee"_s};
    QTest::newRow("daily at an hour that the clocks skip")
        << event("h", "SUMMARY:Lüften\nDTSTART" + berlin + "20260320T023000\nDTEND" + berlin +
                          "20260320T024500\nRRULE:FREQ=DAILY;UNTIL=20260331T003000Z")
        << springChange.addDays(-1)
        << QStringList{u"2026-03-28 02:30 – 2026-03-28 02:45 Lüften"_s,
                       u"2026-03-29 03:30 – 2026-03-29 03:45 Lüften"_s,
                       u"2026-03-30 02:30 – 2026-03-30 02:45 Lüften"_s,
                       u"2026-03-31 02:30 – 2026-03-31 02:45 Lüften"_s};
    QTest::newRow("a floating time that the clocks skip")
        << event("v", "SUMMARY:Wecker\nDTSTART:20260329T023000\nDURATION:PT15M") << springChange
        << QStringList{u"2026-03-29 03:30 – 2026-03-29 03:45 Wecker"_s};
    QTest::newRow("a night shift keeps its length on the short night")
        << event("n", "SUMMARY:Wache\nDTSTART" + berlin + "20260301T220000\nDTEND" + berlin +
                          "20260302T060000\nRRULE:FREQ=WEEKLY;BYDAY=SA;COUNT=9")
        << springChange.addDays(-1) << QStringList{u"2026-03-28 22:00 – 2026-03-29 07:00 Wache"_s};
    QTest::newRow("weekly in a zone that changes its clocks on another day")
        << event("y", "SUMMARY:Anruf\nDTSTART;TZID=America/New_York:20260105T090000\n"
                      "DTEND;TZID=America/New_York:20260105T093000\nRRULE:FREQ=WEEKLY;BYDAY=MO")
        << QDate(2026, 3, 9) << QStringList{u"2026-03-09 14:00 – 2026-03-09 14:30 Anruf"_s};
    QTest::newRow("a zone that only the calendar knows")
        << ownZone + event("z", "SUMMARY:Ebbe\nDTSTART;TZID=Haus am Meer:20261026T080000\n"
                                "DTEND;TZID=Haus am Meer:20261026T090000\nRRULE:FREQ=DAILY;COUNT=2")
        << QDate(2026, 10, 26)
        << QStringList{u"2026-10-26 01:00 – 2026-10-26 02:00 Ebbe"_s,
                       u"2026-10-27 01:00 – 2026-10-27 02:00 Ebbe"_s};
    const QByteArray quoted = "\"(UTC+08:00) Haus, Meer\"";
    QTest::newRow("a zone whose name has a colon and a comma")
        << QByteArray(ownZone).replace("Haus am Meer", "(UTC+08:00) Haus\\, Meer") +
               event("q", "SUMMARY:Ebbe\nDTSTART;TZID=" + quoted + ":20261026T080000\nDTEND;TZID=" + quoted +
                              ":20261026T090000\nRRULE:FREQ=DAILY;COUNT=3\nEXDATE;TZID=" + quoted +
                              ":20261027T080000")
        << QDate(2026, 10, 26)
        << QStringList{u"2026-10-26 01:00 – 2026-10-26 02:00 Ebbe"_s,
                       u"2026-10-28 01:00 – 2026-10-28 02:00 Ebbe"_s};
    QTest::newRow("further dates with lengths of their own")
        << event("p", "SUMMARY:Schicht\nDTSTART" + berlin +
                          "20261026T080000\nDURATION:PT1H\n"
                          "RDATE;VALUE=PERIOD:20261027T070000Z/PT4H,20261028T070000Z/20261028T073000Z\n"
                          "RDATE" +
                          berlin + "20261029T080000")
        << QDate(2026, 10, 26)
        << QStringList{u"2026-10-26 08:00 – 2026-10-26 09:00 Schicht"_s,
                       u"2026-10-27 08:00 – 2026-10-27 12:00 Schicht"_s,
                       u"2026-10-28 08:00 – 2026-10-28 08:30 Schicht"_s,
                       u"2026-10-29 08:00 – 2026-10-29 09:00 Schicht"_s};
    QTest::newRow("a zone that nobody knows, and none")
        << event("u", "SUMMARY:Irgendwo\nDTSTART;TZID=Nirgends/Nie:20261026T080000\n"
                      "DTEND;TZID=Nirgends/Nie:20261026T090000") +
               event("f", "SUMMARY:Überall\nDTSTART:20261026T100000\nDTEND:20261026T110000")
        << QDate(2026, 10, 26)
        << QStringList{u"2026-10-26 08:00 – 2026-10-26 09:00 Irgendwo"_s,
                       u"2026-10-26 10:00 – 2026-10-26 11:00 Überall"_s};
    QTest::newRow("all-day events, also over several days")
        << event("1", "SUMMARY:Fest\nDTSTART;VALUE=DATE:20261025\nDTEND;VALUE=DATE:20261026") +
               event("2", "SUMMARY:Messe\nDTSTART;VALUE=DATE:20261022\nDTEND;VALUE=DATE:20261027") +
               event("3", "SUMMARY:Ohne Ende\nDTSTART;VALUE=DATE:20261030") +
               event("4", "SUMMARY:Ende wie Anfang\nDTSTART;VALUE=DATE:20261031\nDTEND;VALUE=DATE:20261031") +
               event("5", "SUMMARY:Vorbei\nDTSTART;VALUE=DATE:20261020\nDTEND;VALUE=DATE:20261025") +
               event("6", "SUMMARY:Geburtstag\nDTSTART;VALUE=DATE:19801028\nRRULE:FREQ=YEARLY")
        << autumnChange
        << QStringList{u"2026-10-22 +5 Messe"_s, u"2026-10-25 +1 Fest"_s, u"2026-10-28 +1 Geburtstag"_s,
                       u"2026-10-30 +1 Ohne Ende"_s, u"2026-10-31 +1 Ende wie Anfang"_s};
    QTest::newRow("a recurrence with exceptions")
        << event("x", "SUMMARY:Kurs\nDTSTART" + berlin + "20261001T180000\nDTEND" + berlin +
                          "20261001T190000\nRRULE:FREQ=DAILY\nEXDATE" + berlin +
                          "20261026T180000,20261027T180000\nRDATE" + berlin + "20261030T100000") +
               event("x", "RECURRENCE-ID" + berlin + "20261028T180000\nSUMMARY:Kurs im Park\nDTSTART" +
                              berlin + "20261028T170000\nDTEND" + berlin + "20261028T173000") +
               event("x", "RECURRENCE-ID" + berlin + "20261029T180000\nSUMMARY:Weit weg\nDTSTART" + berlin +
                              "20261210T180000\nDTEND" + berlin + "20261210T190000") +
               event("x", "RECURRENCE-ID" + berlin + "20261111T180000\nSUMMARY:Vorgezogen\nDTSTART" + berlin +
                              "20261031T080000\nDTEND" + berlin + "20261031T090000")
        << autumnChange << QStringList{u"2026-10-25 18:00 – 2026-10-25 19:00 Kurs"_s,
                                       u"2026-10-28 17:00 – 2026-10-28 17:30 Kurs im Park"_s,
                                       u"2026-10-30 10:00 – 2026-10-30 11:00 Kurs"_s,
                                       u"2026-10-30 18:00 – 2026-10-30 19:00 Kurs"_s,
                                       u"2026-10-31 08:00 – 2026-10-31 09:00 Vorgezogen"_s,
                                       u"2026-10-31 18:00 – 2026-10-31 19:00 Kurs"_s};
    QTest::newRow("every other week, counted from far away")
        << event("w", "SUMMARY:Papiertonne\nDTSTART;VALUE=DATE:20200113\nRRULE:FREQ=WEEKLY;INTERVAL=2")
        << autumnChange << QStringList{u"2026-10-26 +1 Papiertonne"_s};
    QTest::newRow("long, short and nameless events")
        << event("c", "SUMMARY:Jahrhundert\nDTSTART:19500101T000000Z\nDTEND:20500101T000000Z") +
               event("0", "SUMMARY:Augenblick\nDTSTART:20261026T080000Z\nDTEND:20261026T080000Z") +
               event("m", "SUMMARY:Mitternacht\nDTSTART:20261024T220000Z\nDTEND:20261024T220000Z") +
               event("e", "DTSTART:20261026T100000Z\nDURATION:PT45M")
        << autumnChange
        << QStringList{u"1950-01-01 01:00 – 2050-01-01 01:00 Jahrhundert"_s,
                       u"2026-10-25 00:00 – 2026-10-25 00:00 Mitternacht"_s,
                       u"2026-10-26 09:00 – 2026-10-26 09:00 Augenblick"_s,
                       u"2026-10-26 11:00 – 2026-10-26 11:45 "_s};
    QTest::newRow("nothing") << QByteArray() << autumnChange << QStringList();
}

void CalendarContract::findsWhatTakesPlaceInTheRange()
{
    QFETCH(QByteArray, components);
    QFETCH(QDate, first);
    QFETCH(QStringList, expected);
    const auto store = makeStore(calendar(components));
    QVERIFY(access(*store));
    QCOMPARE(lines(fetch(*store, first, 7)), expected);
}

void CalendarContract::namesOccurrencesForGood()
{
    const auto store =
        makeStore(calendar(event("s", "SUMMARY:Reihe\nDTSTART:20261026T080000Z\n"
                                      "DURATION:PT1H\nRRULE:FREQ=DAILY") +
                           event("e", "SUMMARY:Allein\nDTSTART:20261027T080000Z\nDURATION:PT1H")));
    QVERIFY(access(*store));
    const auto week = fetch(*store, QDate(2026, 10, 26), 7);
    const auto shifted = fetch(*store, QDate(2026, 10, 27), 7);
    QVERIFY(week && shifted);
    QCOMPARE(week->size(), 8);
    const auto ids = [](const QList<CalendarEvent> &events) {
        QSet<QString> found;
        for (const CalendarEvent &event : events)
            found.insert(event.id);
        return found;
    };
    QCOMPARE(ids(*week).size(), 8);
    QCOMPARE((ids(*week) & ids(*shifted)).size(), 7);
    QVERIFY(!week->first().calendarName.isEmpty());
}

void CalendarContract::savesAnEventThatItFindsAgain()
{
    const auto store =
        makeStore(calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z\nDURATION:PT1H")));
    QVERIFY(access(*store));
    const QString title =
        u"Größe; Maß, \\ und ein sehr langer Titel, der nicht in eine Zeile der Datei passt "
        "– mit Gedankenstrich und „Anführung“"_s;
    const QDateTime start(autumnChange, QTime(1, 30));
    QVERIFY(save(*store, {title, start, start.addSecs(7200)}));
    QCOMPARE(lines(fetch(*store, autumnChange, 7)),
             (QStringList{u"2026-10-25 01:30 – 2026-10-25 02:30 "_s + title,
                          u"2026-10-26 09:00 – 2026-10-26 10:00 Alt"_s}));
}

void CalendarContract::removesWhatItHasSaved()
{
    const auto store =
        makeStore(calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z\nDURATION:PT1H")));
    QVERIFY(access(*store));
    const QDateTime start(autumnChange, QTime(12, 0));
    const auto saved = save(*store, {u"Größe; Maß"_s, start, start.addSecs(3600)});
    QVERIFY(saved);
    const auto other = save(*store, {u"Bleibt"_s, start, start.addSecs(3600)});
    QVERIFY(other);
    const auto removed = remove(*store, *saved);
    QVERIFY(removed);
    QCOMPARE(*removed, Removal::removed);
    QCOMPARE(lines(fetch(*store, autumnChange, 7)),
             (QStringList{u"2026-10-25 12:00 – 2026-10-25 13:00 Bleibt"_s,
                          u"2026-10-26 09:00 – 2026-10-26 10:00 Alt"_s}));
    const auto again = remove(*store, *saved);
    QVERIFY(again);
    QCOMPARE(*again, Removal::gone);

    changeByOthers(*other, "LOCATION:Garten");
    const auto kept = remove(*store, *other);
    QVERIFY(kept);
    QCOMPARE(*kept, Removal::changed);
    QCOMPARE(fetch(*store, autumnChange, 1)->size(), 1);
}

void CalendarContract::savesAnEventOnceThatIsTriedTwice()
{
    const auto store = makeStore(calendar({}));
    QVERIFY(access(*store));
    const QDateTime start(autumnChange, QTime(12, 0));
    const NewCalendarEvent event{u"Zahnarzt"_s, start, start.addSecs(3600)};
    QVERIFY(save(*store, event));
    const auto again = save(*store, event);
    QVERIFY(again);
    QCOMPARE(fetch(*store, autumnChange, 1)->size(), 1);
    QCOMPARE(*remove(*store, *again), Removal::removed);
    QCOMPARE(fetch(*store, autumnChange, 1)->size(), 0);
}

void CalendarContract::tellsOfChangesByOthers()
{
    const auto store = makeStore(calendar({}));
    QVERIFY(access(*store));
    QCOMPARE(fetch(*store, autumnChange, 7)->size(), 0);
    QSignalSpy changes(store.get(), &CalendarStore::changed);
    addByOthers(calendar(event("n", "SUMMARY:Neu\nDTSTART:20261026T080000Z\nDURATION:PT1H")));
    QTRY_VERIFY_WITH_TIMEOUT(!changes.isEmpty(), 30'000);
    QTRY_COMPARE_WITH_TIMEOUT(lines(fetch(*store, autumnChange, 7)),
                              QStringList{u"2026-10-26 09:00 – 2026-10-26 10:00 Neu"_s}, 30'000);
}

} // namespace randblatt
