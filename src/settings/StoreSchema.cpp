#include "settings/StoreSchema.h"

#include <sqlite3.h>

namespace randblatt {

namespace {

constexpr int schemaVersion = 1;

// The sums are beside the rows because everyone may write rows, with a tool for databases as well: what is
// written without a sum takes the one of before away.
constexpr auto createStatements = R"(
    CREATE TABLE IF NOT EXISTS preferences (
        key   TEXT PRIMARY KEY NOT NULL,
        type  TEXT NOT NULL,
        value ANY NOT NULL
    ) STRICT, WITHOUT ROWID;
    CREATE TABLE IF NOT EXISTS drafts (
        key   TEXT PRIMARY KEY NOT NULL,
        type  TEXT NOT NULL,
        value ANY NOT NULL
    ) STRICT, WITHOUT ROWID;
    CREATE TABLE IF NOT EXISTS sums (
        place TEXT NOT NULL,
        key   TEXT NOT NULL,
        sum   INTEGER NOT NULL,
        PRIMARY KEY (place, key)
    ) STRICT, WITHOUT ROWID;
    CREATE TRIGGER IF NOT EXISTS preferences_inserted AFTER INSERT ON preferences
        BEGIN DELETE FROM sums WHERE place = 'preferences' AND key = new.key; END;
    CREATE TRIGGER IF NOT EXISTS preferences_updated AFTER UPDATE ON preferences
        BEGIN DELETE FROM sums WHERE place = 'preferences' AND key IN (old.key, new.key); END;
    CREATE TRIGGER IF NOT EXISTS preferences_deleted AFTER DELETE ON preferences
        BEGIN DELETE FROM sums WHERE place = 'preferences' AND key = old.key; END;
    CREATE TRIGGER IF NOT EXISTS drafts_inserted AFTER INSERT ON drafts
        BEGIN DELETE FROM sums WHERE place = 'drafts' AND key = new.key; END;
    CREATE TRIGGER IF NOT EXISTS drafts_updated AFTER UPDATE ON drafts
        BEGIN DELETE FROM sums WHERE place = 'drafts' AND key IN (old.key, new.key); END;
    CREATE TRIGGER IF NOT EXISTS drafts_deleted AFTER DELETE ON drafts
        BEGIN DELETE FROM sums WHERE place = 'drafts' AND key = old.key; END;
    PRAGMA user_version = 1;
)";

// Of this version: what it makes.
constexpr int schemaObjects = 9;
constexpr auto countObjects =
    "SELECT count(*) FROM sqlite_schema WHERE name IN ('preferences', 'drafts', 'sums', "
    "'preferences_inserted', 'preferences_updated', 'preferences_deleted', "
    "'drafts_inserted', 'drafts_updated', 'drafts_deleted')";

} // namespace

int queryNumber(sqlite3 *database, const char *sql, qint64 &number)
{
    sqlite3_stmt *statement = nullptr;
    int code = sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_step(statement);
    if (code == SQLITE_ROW)
        number = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    return code;
}

int hasTable(sqlite3 *database, const char *name)
{
    sqlite3_stmt *statement = nullptr;
    int code = sqlite3_prepare_v2(database, "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?1",
                                  -1, &statement, nullptr);
    if (code == SQLITE_OK) {
        sqlite3_bind_text(statement, 1, name, -1, SQLITE_STATIC);
        code = sqlite3_step(statement);
    }
    sqlite3_finalize(statement);
    return code;
}

int isSetUp(sqlite3 *database, bool &is)
{
    qint64 objects = 0;
    qint64 isLogged = 0;
    int code = queryNumber(database, countObjects, objects);
    if (code == SQLITE_ROW)
        code = queryNumber(database, "SELECT journal_mode = 'wal' FROM pragma_journal_mode", isLogged);
    is = objects == schemaObjects && isLogged == 1;
    return code == SQLITE_ROW ? SQLITE_OK : code;
}

int ensureSchema(sqlite3 *database)
{
    qint64 objects = 0;
    qint64 version = 0;
    if (const int code = queryNumber(database, countObjects, objects); code != SQLITE_ROW)
        return code;
    if (const int code = queryNumber(database, "PRAGMA user_version", version); code != SQLITE_ROW)
        return code;
    if (objects == schemaObjects && version >= schemaVersion)
        return SQLITE_OK;
    const int preferences = hasTable(database, storeTableNames.front());
    if (preferences != SQLITE_ROW && preferences != SQLITE_DONE)
        return preferences;
    if (version >= schemaVersion && preferences == SQLITE_DONE)
        return SQLITE_CORRUPT;
    int code = sqlite3_exec(database, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_exec(database, createStatements, nullptr, nullptr, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
    if (code != SQLITE_OK && sqlite3_get_autocommit(database) == 0)
        sqlite3_exec(database, "ROLLBACK", nullptr, nullptr, nullptr);
    return code;
}

} // namespace randblatt
