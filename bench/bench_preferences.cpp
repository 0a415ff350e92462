// How long a setting takes until it is on disk. Each figure is the time of one write; p50 and p99 are over
// all writes of a run, in microseconds, by the clock and in processor time: on a busy machine the first says
// how busy it is.

#include "settings/Preferences.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

using namespace Qt::StringLiterals;
using randblatt::Preferences;

namespace {

double percentile(std::vector<double> &sorted, double part)
{
    return sorted.at(static_cast<size_t>(part * static_cast<double>(sorted.size() - 1)));
}

double processorMicroseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

/// Writes texts of state.range(0) characters that differ in one keystroke, as a scratch pad does.
void writeText(benchmark::State &state)
{
    const QTemporaryDir folder;
    Preferences preferences(folder.filePath(u"preferences.sqlite"_s));
    QString text(state.range(0), u'x');
    std::vector<double> microseconds;
    std::vector<double> processor;
    qsizetype keystroke = 0;
    for ([[maybe_unused]] auto iteration : state) {
        text[keystroke++ % text.size()] = u'y';
        const double processorBegin = processorMicroseconds();
        const auto begin = std::chrono::steady_clock::now();
        preferences.setValue(u"notesScratch"_s, text);
        const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - begin;
        processor.push_back(processorMicroseconds() - processorBegin);
        microseconds.push_back(taken.count());
    }
    std::sort(microseconds.begin(), microseconds.end());
    std::sort(processor.begin(), processor.end());
    state.counters["p50_us"] = percentile(microseconds, 0.5);
    state.counters["p99_us"] = percentile(microseconds, 0.99);
    state.counters["cpu_p50_us"] = percentile(processor, 0.5);
    state.counters["cpu_p99_us"] = percentile(processor, 0.99);
}

} // namespace

BENCHMARK(writeText)->Arg(8)->Arg(100'000)->Iterations(2000)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
