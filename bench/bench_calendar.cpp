// How long the embedded calendar takes to answer for seven days out of 50,000 events, 200 of them recurring:
// for a file that it has read before, for one that another program has just written, and after saving an
// event. For the second, how much more of the machine's memory the process has at most while it reads (peak),
// and once it has (kept), is counted in MB beside the file's own size. At most 1 s and 60 MB to read, and
// 10 ms for the week, are promised.

#include "platform/calendar/CalendarFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <array>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

constexpr int eventCount = 50'000;
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

/// A line of the kernel's account of the process, in MB.
double memory(const char *name)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QFile::ReadOnly))
        qFatal("Kein Speicherstand");
    for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
        if (line.startsWith(name))
            return line.sliced(line.indexOf(':') + 1).trimmed().split(' ').first().toDouble() / 1024;
    }
    qFatal("Kein %s", name);
}

void reloadOfAChangedFile(benchmark::State &state)
{
    const Calendar calendar;
    {
        const double before = memory("VmRSS");
        CalendarFile file(calendar.path);
        benchmark::DoNotOptimize(fetch(file));
        state.counters["peak"] = memory("VmHWM") - before;
        state.counters["kept"] = memory("VmRSS") - before;
        state.counters["file"] = static_cast<double>(QFile(calendar.path).size()) / (1024 * 1024);
    }
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

// The memory's peak is the whole process's: first.
BENCHMARK(reloadOfAChangedFile)->Unit(benchmark::kMillisecond);
BENCHMARK(reload)->Unit(benchmark::kMillisecond);
BENCHMARK(saveAndReload)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
