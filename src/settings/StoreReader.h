#pragma once

#include "settings/PreferenceValue.h"

#include <QList>

struct sqlite3;

namespace randblatt {

/// Appends all rows of a connected store and checks them. SQLite's code: SQLITE_CORRUPT also where rows are
/// missing that have been written.
[[nodiscard]] int readRows(sqlite3 *database, QList<StoredRow> &rows);

/// The rows of the store at `path` that can still be read, each for itself, whatever happens at others; those
/// that are not what was written are marked. The file and its log are left as they are.
[[nodiscard]] QList<StoredRow> salvageRows(const QString &path);

} // namespace randblatt
