#pragma once

#include "settings/StoreResult.h"

#include <QString>

#include <memory>

struct sqlite3;

namespace randblatt {

/// Moves what the write-ahead log of a store holds into its file, with a sync, and empties it: a slow disk
/// may take a tenth of a second for that. Writing goes on meanwhile, unless `exclusive`, the only connection
/// there can be, is given.
StoreResult emptyLog(const QString &path, const std::shared_ptr<sqlite3> &exclusive);

/// Whether the log at rest beside a store lacks what was written to it: SQLite reads a log up to the first
/// fault and takes the rest for what an earlier use left.
[[nodiscard]] bool isLogDamaged(const QString &path);

} // namespace randblatt
