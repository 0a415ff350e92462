#include "platform/calendar/CalendarIndex.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;
using namespace randblatt;

/// Dates that others have found: see the heads of the files in reference/.
class CalendarReferenceTest : public QObject
{
    Q_OBJECT

private:
    /// The sections of a file: a title in brackets, and lines.
    [[nodiscard]] static QList<std::pair<QString, QStringList>> sections(const QString &name)
    {
        QFile file(QStringLiteral(REFERENCE_FOLDER) + u'/' + name);
        if (!file.open(QFile::ReadOnly))
            qFatal("%s fehlt", qUtf8Printable(file.fileName()));
        QList<std::pair<QString, QStringList>> sections;
        const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        for (const QString &line : lines) {
            if (line.startsWith(u'['))
                sections.append({line.sliced(1).chopped(1), {}});
            else if (!line.startsWith(u'#'))
                sections.last().second.append(line);
        }
        return sections;
    }

    [[nodiscard]] static std::optional<CalendarIndex> index(const QString &components)
    {
        return CalendarIndex::parse("BEGIN:VCALENDAR\r\n" + components.toUtf8() + "END:VCALENDAR\r\n");
    }

    [[nodiscard]] static QString startLine(const QString &start, const QString &zone)
    {
        const QString parameter = start.contains(u'T') ? u"TZID="_s + zone : u"VALUE=DATE"_s;
        return u"DTSTART;"_s + parameter + u':' + start + u"\r\n";
    }

private Q_SLOTS:
    void findsOccurrences_data()
    {
        QTest::addColumn<QStringList>("lines");
        for (const auto &[title, lines] : sections(u"recurrences.txt"_s))
            QTest::newRow(qUtf8Printable(title)) << lines;
    }

    void findsOccurrences()
    {
        QFETCH(QStringList, lines);
        const QStringList start = lines.takeFirst().split(u' ');
        const QString zone = start.at(2);
        const bool isAllDay = !start.at(1).contains(u'T');
        QString event = u"BEGIN:VEVENT\r\nUID:a\r\nDURATION:PT5M\r\n"_s + startLine(start.at(1), zone);
        if (isAllDay)
            event.remove(u"DURATION:PT5M\r\n"_s);
        while (!lines.first().startsWith(u"from "))
            event += lines.takeFirst() + u"\r\n"_s;
        const QStringList range = lines.takeFirst().split(u' ');
        const QTimeZone clocks(zone.toLatin1());
        const auto day = [&clocks](const QString &text) {
            return QDate::fromString(text, u"yyyyMMdd"_s).startOfDay(clocks).toLocalTime();
        };
        const auto calendar = index(event + u"END:VEVENT\r\n"_s);
        QVERIFY(calendar);
        QElapsedTimer timer;
        timer.start();
        QStringList found;
        for (const CalendarEvent &occurrence : calendar->events(day(range.at(1)), day(range.at(3))))
            found.append(isAllDay ? occurrence.start.date().toString(u"yyyyMMdd")
                                  : occurrence.start.toTimeZone(clocks).toString(u"yyyyMMdd'T'HHmmss"));
        QCOMPARE(found, lines.join(u' ').split(u' ', Qt::SkipEmptyParts));
        QVERIFY2(timer.elapsed() < 20'000, qPrintable(QString::number(timer.elapsed())));
    }

    void readsTheClocksOfZones_data()
    {
        QTest::addColumn<QStringList>("lines");
        for (const auto &[zone, lines] : sections(u"zones.txt"_s))
            QTest::newRow(qUtf8Printable(zone)) << lines;
    }

    void readsTheClocksOfZones()
    {
        QFETCH(QStringList, lines);
        const QString zone = QString::fromUtf8(QTest::currentDataTag());
        QVERIFY(lines.size() >= 10 - (zone.contains(u"Nuuk"_s) ? 1 : 0));
        for (const QString &line : lines) {
            for (const QString &pair : line.split(u' ')) {
                const QStringList sides = pair.split(u'=');
                const auto calendar = index(u"BEGIN:VEVENT\r\nUID:a\r\n"_s + startLine(sides.at(0), zone) +
                                            u"END:VEVENT\r\n"_s);
                QVERIFY(calendar);
                const QDate day = QDate::fromString(sides.at(0).first(8), u"yyyyMMdd"_s);
                const auto events =
                    calendar->events(day.addDays(-3).startOfDay(), day.addDays(3).startOfDay());
                QCOMPARE(events.size(), 1);
                QCOMPARE(sides.at(0) + u'=' + events.first().start.toUTC().toString(u"dd'T'HHmmss'Z'"), pair);
            }
        }
    }
};

RANDBLATT_TEST_MAIN(CalendarReferenceTest, QCoreApplication)
#include "tst_calendarreference.moc"
