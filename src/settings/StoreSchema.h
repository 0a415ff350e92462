#pragma once

#include "settings/PreferenceValue.h"

#include <QByteArray>
#include <QLatin1StringView>

#include <array>

struct sqlite3;

namespace randblatt {

/// By StoreTable.
inline constexpr std::array storeTables{StoreTable::preferences, StoreTable::drafts};
inline constexpr std::array storeTableNames{"preferences", "drafts"};

[[nodiscard]] inline QLatin1StringView tableName(StoreTable table)
{
    return QLatin1StringView(storeTableNames.at(static_cast<size_t>(table)));
}

/// Whether the connected file has the table; SQLite's error code, or SQLITE_ROW and SQLITE_DONE for yes and
/// no.
[[nodiscard]] int hasTable(sqlite3 *database, const char *name);
/// The single number that a statement gives, in `number`; SQLite's code, SQLITE_ROW where there is one.
[[nodiscard]] int queryNumber(sqlite3 *database, const char *sql, qint64 &number);
/// Whether the connected file is as this version makes it.
[[nodiscard]] int isSetUp(sqlite3 *database, bool &is);
/// Makes the tables that are missing. A file that must have had them, and has not, is SQLITE_CORRUPT.
[[nodiscard]] int ensureSchema(sqlite3 *database);

} // namespace randblatt
