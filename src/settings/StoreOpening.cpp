#include "settings/StoreOpening.h"

#include "settings/StoreFile.h"
#include "settings/StoreLog.h"
#include "settings/StoreReader.h"
#include "settings/StoreRepair.h"

#include <algorithm>

namespace randblatt {

namespace {

constexpr int attempts = 3;

StoreResult readAll(StoreFile &file, QList<StoredRow> &rows)
{
    rows.clear();
    const StoreResult result = file.read(rows);
    if (result != StoreResult::ok)
        return result;
    const bool isIntact =
        std::all_of(rows.cbegin(), rows.cend(), [](const StoredRow &row) { return row.isIntact; });
    return isIntact ? StoreResult::ok : StoreResult::damaged;
}

} // namespace

OpenedStore openStore(StoreFile &file)
{
    OpenedStore opened;
    bool isAlwaysDamaged = true;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        opened.result = file.open();
        if (opened.result == StoreResult::ok)
            opened.result = readAll(file, opened.rows);
        if (opened.result != StoreResult::damaged && opened.result != StoreResult::ioError)
            return opened;
        isAlwaysDamaged = isAlwaysDamaged && opened.result == StoreResult::damaged;
    }
    opened.result = isAlwaysDamaged ? StoreResult::damaged : StoreResult::ioError;
    return opened;
}

OpenedStore readStore(StoreFile &file)
{
    OpenedStore opened;
    opened.result = file.openForReading();
    if (opened.result == StoreResult::ok)
        opened.result = readAll(file, opened.rows);
    file.close();
    if (opened.result == StoreResult::ioError || opened.result == StoreResult::damaged)
        opened.rows = salvageRows(file.path());
    return opened;
}

bool keepDamagedLog(const StoreFile &file, QString &kept)
{
    if (!file.isOnDisk() || !isLogDamaged(file.path()) || !isLogDamaged(file.path()))
        return true;
    kept = keepAside(file.path(), Keeping::damagedLog);
    return !kept.isEmpty();
}

} // namespace randblatt
