#include "campaigns/Campaign.h"

#include <csignal>
#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

namespace randblatt {

using namespace Qt::StringLiterals;

constexpr qsizetype blockSize = 512;

QByteArray damagedBlock(const QByteArray &bytes, qsizetype block, bool flips)
{
    QByteArray result = bytes;
    for (qsizetype i = block * blockSize; i < std::min((block + 1) * blockSize, bytes.size()); ++i)
        result[i] = flips ? static_cast<char>(~bytes[i]) : '\0';
    return result;
}

namespace {

void damageEach(const QMap<QString, QByteArray> &healthy, const QString &name, int step, Tally &tally)
{
    const CampaignStore store;
    const QByteArray bytes = healthy.value(name);
    for (qsizetype block = 0; block * blockSize < bytes.size(); block += step) {
        for (const bool flips : {false, true}) {
            QMap<QString, QByteArray> files = healthy;
            files[name] = damagedBlock(bytes, block, flips);
            // Zeros in the place of zeros are no damage.
            if (files.value(name) == bytes)
                continue;
            store.setFiles(files);
            const QString what =
                u"%1, Block %2, %3"_s.arg(name).arg(block).arg(flips ? u"gekippt" : u"genullt");
            Acknowledged left = sampleValues();
            {
                Preferences preferences(store.path());
                check(preferences, left, files, what, tally);
                // What is there now stays, and so does what is written on.
                left = write(preferences, {{u"danach"_s, 1.0}});
            }
            Preferences preferences(store.path());
            if (left.isEmpty() || preferences.get<double>(u"danach"_s) != 1.0)
                tally.violation(what + u": danach lässt sich nicht schreiben"_s);
        }
    }
}

} // namespace

Tally runDamage(int step)
{
    Tally tally;
    const CampaignStore store;
    // As a process leaves it that is killed, with all of it in the log; and as one that ends.
    const pid_t child = fork();
    if (child == 0) {
        Preferences preferences(store.path());
        const bool isWritten = write(preferences, sampleValues()) == sampleValues();
        kill(getpid(), isWritten ? SIGKILL : SIGABRT);
    }
    waitpid(child, nullptr, 0);
    auto withLog = store.files();
    withLog.remove(u"preferences.sqlite-shm"_s);
    Preferences{store.path()};
    const auto closed = store.files();
    if (withLog.size() != 2 || closed.size() != 1)
        qFatal("Die Dateien sind andere als erwartet.");
    damageEach(closed, u"preferences.sqlite"_s, step, tally);
    std::printf("Die Datei: %d Läufe, %d ohne Verlust, in %d fehlte etwas\n", tally.runs,
                tally.runs - tally.lostButTold, tally.lostButTold);
    damageEach(withLog, u"preferences.sqlite-wal"_s, step, tally);
    return tally;
}

} // namespace randblatt
