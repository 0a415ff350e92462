// Prints when events recur, for scripts/compare-recurrences.py. Each line of the standard input is a case:
// the zone, the start on its clocks, the rule, and the first and the last second to be looked at, between
// tabs. Each line of the output has the starts found, on the same clocks.

#include "platform/calendar/CalendarIndex.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimeZone>

using namespace Qt::StringLiterals;
using namespace randblatt;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QTextStream in(stdin);
    QTextStream out(stdout);
    const QString form = u"yyyyMMdd'T'HHmmss"_s;
    for (QString line = in.readLine(); !line.isNull(); line = in.readLine()) {
        const QStringList parts = line.split(u'\t');
        if (parts.size() != 5)
            qFatal("%s: ein Fall hat fünf Teile", qUtf8Printable(line));
        const QTimeZone zone(parts.at(0).toLatin1());
        const auto time = [&](qsizetype part) {
            const QDateTime wall = QDateTime::fromString(parts.at(part), form);
            return QDateTime(wall.date(), wall.time(), zone).toLocalTime();
        };
        const QString event = u"BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:a\r\nDTSTART;TZID="_s + parts.at(0) +
                              u':' + parts.at(1) + u"\r\nRRULE:"_s + parts.at(2) +
                              u"\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"_s;
        const auto index = CalendarIndex::parse(event.toUtf8());
        if (!index)
            qFatal("%s: kein Kalender", qUtf8Printable(line));
        QStringList found;
        for (const CalendarEvent &occurrence : index->events(time(3), time(4)))
            found.append(occurrence.start.toTimeZone(zone).toString(form));
        out << found.join(u' ') << '\n';
    }
    return 0;
}
