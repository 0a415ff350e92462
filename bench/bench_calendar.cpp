// How long the embedded calendar takes to answer for seven days out of 10,000 events, 200 of them recurring:
// for a file that it has read before, for one that another program has just written, and after saving an
// event.

#include "platform/calendar/CalendarFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <array>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

constexpr int eventCount = 10'000;
constexpr int recurringCount = 200;
const QDate today(2026, 11, 16);

QByteArray event(int number)
{
    const QDate day = today.addDays(number % 3000 - 2500);
    QByteArray text = "BEGIN:VEVENT\r\nUID:" + QByteArray::number(number) +
                      "@bench\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:Termin " + QByteArray::number(number) +
                      "\r\nDTSTART;TZID=Europe/Berlin:" + day.toString(u"yyyyMMdd").toLatin1() +
                      "T090000\r\nDTEND;TZID=Europe/Berlin:" + day.toString(u"yyyyMMdd").toLatin1() +
                      "T100000\r\nDESCRIPTION:Eine Beschreibung von mittlerer Länge\r\n";
    static constexpr std::array rules{"FREQ=DAILY", "FREQ=WEEKLY;BYDAY=MO,TH", "FREQ=MONTHLY;BYDAY=-1FR",
                                      "FREQ=YEARLY;COUNT=50"};
    if (number < recurringCount)
        text += "RRULE:" + QByteArray(rules.at(static_cast<size_t>(number) % rules.size())) + "\r\n";
    return text + "END:VEVENT\r\n";
}

/// The calendar in a folder of its own.
struct Calendar
{
    QTemporaryDir folder;
    QString path = folder.filePath(u"calendar.ics"_s);

    Calendar()
    {
        QFile file(path);
        if (!file.open(QFile::WriteOnly))
            qFatal("Keine Datei");
        file.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Bench//Bench//DE\r\n");
        for (int number = 0; number < eventCount; ++number)
            file.write(event(number));
        file.write("END:VCALENDAR\r\n");
    }
};

qsizetype fetch(CalendarFile &file)
{
    return file.events(today.startOfDay(), today.addDays(7).startOfDay())->size();
}

void reload(benchmark::State &state)
{
    const Calendar calendar;
    CalendarFile file(calendar.path);
    state.counters["events"] = static_cast<double>(fetch(file));
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(fetch(file));
}

void reloadOfAChangedFile(benchmark::State &state)
{
    const Calendar calendar;
    for ([[maybe_unused]] auto iteration : state) {
        CalendarFile file(calendar.path);
        benchmark::DoNotOptimize(fetch(file));
    }
}

void saveAndReload(benchmark::State &state)
{
    const Calendar calendar;
    CalendarFile file(calendar.path);
    const QDateTime start(today, QTime(12, 0));
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(file.append({u"Neu"_s, start, start.addSecs(3600)}));
        benchmark::DoNotOptimize(fetch(file));
    }
}

} // namespace

BENCHMARK(reload)->Unit(benchmark::kMillisecond);
BENCHMARK(reloadOfAChangedFile)->Unit(benchmark::kMillisecond);
BENCHMARK(saveAndReload)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
