// Campaigns against the store, and against the calendar file and the notes: store-campaign
// damage|faults|file-damage|file-faults [every nth place], store-campaign kill|power <times> [seed]. Ends
// with 1 where anything that was acknowledged is gone and nobody was told.

#include "campaigns/Campaign.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <chrono>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace randblatt;

int main(int argc, char **argv)
{
    const TestEnvironment environment;
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(u"quillbar.*=false"_s);
    const QString campaign = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    const int number = argc > 2 ? QByteArray(argv[2]).toInt() : 1;
    constexpr quint32 defaultSeed = 20261123;
    const quint32 seed = argc > 3 ? QByteArray(argv[3]).toUInt() : defaultSeed;
    const auto begin = std::chrono::steady_clock::now();
    Tally tally;
    if (number > 0 && campaign == "damage"_L1) {
        tally = runDamage(number);
    } else if (number > 0 && campaign == "faults"_L1) {
        tally = runFaults(number);
    } else if (number > 0 && campaign == "file-damage"_L1) {
        tally = runFileDamage(number);
    } else if (number > 0 && campaign == "file-faults"_L1) {
        tally = runFileFaults(number, seed);
    } else if (number > 0 && campaign == "kill"_L1) {
        tally = runKills(number, seed);
    } else if (number > 0 && campaign == "power"_L1) {
        tally = runPower(number, seed);
    } else {
        std::fprintf(
            stderr,
            "store-campaign damage|faults|file-damage|file-faults [jede n-te Stelle] | kill|power <Anzahl> "
            "[Startwert]\n");
        return 2;
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::printf(
        "%s: %d Läufe in %.0f s (Startwert %u): %d ohne Verlust, %d mit Meldung, davon oder dabei fehlte in "
        "%d etwas; verletzt: %d\n",
        qPrintable(campaign), tally.runs, taken.count(), seed, tally.untouched, tally.told, tally.lostButTold,
        tally.violations);
    return tally.violations == 0 && tally.runs > 0 ? 0 : 1;
}
