#include "fuzz/Targets.h"
#include "platform/calendar/CalendarFile.h"
#include "platform/calendar/CalendarIndex.h"
#include "platform/calendar/Ical.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTimeZone>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whether `after` is `before` with something put in at one place.
bool isInsertion(const QByteArray &before, const QByteArray &after)
{
    const auto same = std::mismatch(before.cbegin(), before.cend(), after.cbegin(), after.cend()).first;
    const auto rest = std::mismatch(before.crbegin(), before.crend(), after.crbegin(), after.crend()).first;
    return std::distance(before.cbegin(), same) + std::distance(before.crbegin(), rest) >= before.size();
}

} // namespace

void fuzzCalendar(const QByteArray &bytes)
{
    constexpr int days = 400;
    const QDateTime start(QDate(2026, 1, 1), QTime(0, 0), QTimeZone::utc());
    const QDateTime end = start.addDays(days);
    (void)eventFingerprint(bytes);
    if (const auto index = CalendarIndex::parse(bytes)) {
        const QList<CalendarEvent> events = index->events(start, end);
        for (const CalendarEvent &event : events)
            require(event.start <= event.end && event.start < end && event.end >= start,
                    "an event overlaps the time that was asked for");
    }

    // What is no calendar is left alone after a while of waiting for the rest of it, too long for here.
    if (!CalendarIndex::isCalendar(bytes))
        return;
    static const QTemporaryDir folder;
    const QString path = folder.filePath(u"calendar.ics"_s);
    QFile file(path);
    require(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size(), "there is space");
    file.close();
    CalendarFile calendar(path);
    const auto saved = calendar.append({u"Neu"_s, start, start.addSecs(3600)});
    const QByteArray after = contents(path);
    require(saved ? isInsertion(bytes, after) : after == bytes, "all else in a calendar stays as it is");
    if (!saved)
        return;
    require(CalendarIndex::isCalendar(after), "what was added to a calendar leaves one");
    const auto removed = calendar.remove(*saved);
    require(removed && *removed == Removal::removed && contents(path).size() <= after.size(),
            "what was added can be taken back");
}

} // namespace randblatt
