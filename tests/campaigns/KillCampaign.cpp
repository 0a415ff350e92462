#include "campaigns/Campaign.h"

#include "settings/StoreLog.h"

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <random>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr int keyCount = 8;

/// What the writer, which is about to be killed, has been told of.
struct Shared
{
    std::array<std::atomic_int, keyCount> acknowledged;
};

QString keyName(int key)
{
    return u"zaehler%1"_s.arg(key);
}

/// A number, as text that is longer the higher the key.
QString text(int key, int number)
{
    return QString::number(number) + u' ' + QString(key * key * 700, QChar(u'a' + number % 26));
}

int numberIn(const Preferences &preferences, int key)
{
    const QString stored = preferences.get<QString>(keyName(key)).value_or(QString());
    const int number = stored.section(u' ', 0, 0).toInt();
    return number == 0 || stored == text(key, number) ? number : -1;
}

[[noreturn]] void writeUntilKilled(const QString &path, Shared &shared, quint32 seed)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Preferences preferences(path);
    std::mt19937 random(seed);
    // Checkpoints beside it, more often than any program would.
    std::thread checkpoints([&path] {
        for (;;)
            emptyLog(path, nullptr);
    });
    for (;;) {
        const int key = static_cast<int>(random() % keyCount);
        const int number = shared.acknowledged.at(key) + 1;
        if (preferences.setValue(keyName(key), text(key, number)))
            shared.acknowledged.at(key) = number;
    }
}

} // namespace

Tally runKills(int count, quint32 seed)
{
    Tally tally;
    const CampaignStore store;
    auto *shared = static_cast<Shared *>(
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (shared == MAP_FAILED)
        qFatal("Kein gemeinsamer Speicher.");
    std::mt19937 random(seed);
    constexpr unsigned longestMicroseconds = 20'000;
    for (int round = 0; round < count; ++round) {
        const pid_t child = fork();
        if (child == 0)
            writeUntilKilled(store.path(), *shared, seed + static_cast<quint32>(round));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % longestMicroseconds));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        ++tally.runs;
        Preferences preferences(store.path());
        for (int key = 0; key < keyCount; ++key) {
            // The write that was under way may have come through.
            const int acknowledged = shared->acknowledged.at(key);
            const int stored = numberIn(preferences, key);
            if (stored != acknowledged && stored != acknowledged + 1)
                tally.violation(u"Runde %1, Schlüssel %2: %3 statt %4"_s.arg(round).arg(key).arg(stored).arg(
                    acknowledged));
            shared->acknowledged.at(key) = stored;
        }
        if (preferences.health().asidePath().isEmpty()) {
            ++tally.untouched;
        } else {
            ++tally.told;
            preferences.health().dismissAside();
        }
    }
    int writes = 0;
    for (const auto &acknowledged : shared->acknowledged)
        writes += acknowledged;
    std::printf("%d Schreibvorgänge\n", writes);
    munmap(shared, sizeof(Shared));
    return tally;
}

} // namespace randblatt
