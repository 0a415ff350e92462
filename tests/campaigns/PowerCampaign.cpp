#include "campaigns/Campaign.h"

#include "settings/StoreLog.h"
#include "support/FaultVfs.h"

#include <array>
#include <random>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr int keyCount = 6;

QString text(int key, int number)
{
    return u"%1 %2"_s.arg(number).arg(QString(key * 5'000, QChar(u'a' + number % 26)));
}

} // namespace

Tally runPower(int count, quint32 seed)
{
    Tally tally;
    for (int round = 0; round < count; ++round) {
        std::mt19937 random(seed + static_cast<quint32>(round));
        FaultVfs disk;
        const CampaignStore store;
        const CampaignStore afterwards;
        std::array<int, keyCount> latest{};
        std::array<int, keyCount> safe{};
        Preferences preferences(store.path());
        const int writes = 5 + static_cast<int>(random() % 60);
        for (int i = 0; i < writes; ++i) {
            const int key = static_cast<int>(random() % keyCount);
            if (preferences.setValue(u"wert%1"_s.arg(key), text(key, latest.at(key) + 1)))
                ++latest.at(key);
            // As after a second of quiet; its end is what makes it safe.
            if (random() % 15 == 0 && emptyLog(store.path(), nullptr) == StoreResult::ok)
                safe = latest;
        }
        auto files = store.files();
        files.remove(u"preferences.sqlite-shm"_s);
        afterwards.setFiles(files);
        disk.losePower(afterwards.folder(), seed + static_cast<quint32>(round));
        ++tally.runs;
        Preferences found(afterwards.path());
        bool isBack = false;
        for (int key = 0; key < keyCount; ++key) {
            const QString stored = found.get<QString>(u"wert%1"_s.arg(key)).value_or(QString());
            const int number = stored.section(u' ', 0, 0).toInt();
            isBack = isBack || number < latest.at(key);
            if (number < safe.at(key) || number > latest.at(key) ||
                (number > 0 && stored != text(key, number)))
                tally.violation(
                    u"Runde %1, Schlüssel %2: %3, sicher war %4"_s.arg(round).arg(key).arg(number).arg(
                        safe.at(key)));
        }
        if (!found.health().asidePath().isEmpty())
            ++tally.told;
        if (isBack)
            ++tally.lostButTold;
        else
            ++tally.untouched;
    }
    return tally;
}

} // namespace randblatt
