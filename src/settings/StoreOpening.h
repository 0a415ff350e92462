#pragma once

#include "settings/PreferenceValue.h"
#include "settings/StoreResult.h"

#include <QList>

namespace randblatt {

class StoreFile;

struct OpenedStore
{
    StoreResult result = StoreResult::unavailable;
    QList<StoredRow> rows;
};

/// Opens the file for writing and reads all of it. It is not called damaged because of a disk or a network
/// that reads wrongly once.
[[nodiscard]] OpenedStore openStore(StoreFile &file);

/// Reads what can be read of a file that cannot be opened for writing, and leaves it closed. Where the result
/// is not ok there may be more.
[[nodiscard]] OpenedStore readStore(StoreFile &file);

/// Keeps the closed file as it is where the log beside it is damaged, as the log's next use removes what
/// cannot be read of it. In `kept` its name, where that was necessary; whether there was room for it.
[[nodiscard]] bool keepDamagedLog(const StoreFile &file, QString &kept);

} // namespace randblatt
