#include "settings/StoreReader.h"

#include "settings/RowCoding.h"
#include "settings/StoreSchema.h"

#include <QFile>
#include <QHash>
#include <QSet>

#include <sqlite3.h>

#include <algorithm>
#include <memory>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

struct FinalizeStatement
{
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

using Sums = QHash<StorePlace, qint64>;

Statement prepare(sqlite3 *database, const QString &sql, int &code)
{
    sqlite3_stmt *statement = nullptr;
    code = sqlite3_prepare_v2(database, sql.toLatin1().constData(), -1, &statement, nullptr);
    return Statement(statement);
}

int endOfScan(int code)
{
    return code == SQLITE_DONE ? SQLITE_OK : code;
}

int readSums(sqlite3 *database, Sums &sums)
{
    // An earlier version wrote none.
    if (const int known = hasTable(database, "sums"); known != SQLITE_ROW)
        return endOfScan(known);
    int code = SQLITE_OK;
    const Statement scan = prepare(database, u"SELECT place, key, sum FROM sums"_s, code);
    if (code != SQLITE_OK)
        return code;
    while ((code = sqlite3_step(scan.get())) == SQLITE_ROW) {
        const QByteArray place = columnBytes(scan.get(), 0);
        const auto name = std::find(storeTableNames.cbegin(), storeTableNames.cend(), place);
        if (name == storeTableNames.cend())
            return SQLITE_CORRUPT;
        sums.insert({storeTables.at(static_cast<size_t>(name - storeTableNames.cbegin())),
                     QString::fromUtf8(columnBytes(scan.get(), 1))},
                    sqlite3_column_int64(scan.get(), 2));
    }
    return endOfScan(code);
}

/// The row that a statement for key, type and value is at; SQLITE_OK, or SQLITE_CORRUPT.
int takeRow(sqlite3_stmt *statement, StoreTable table, Sums &sums, QList<StoredRow> &rows)
{
    if (sqlite3_column_type(statement, 0) != SQLITE_TEXT ||
        sqlite3_column_type(statement, 1) != SQLITE_TEXT || sqlite3_column_type(statement, 2) == SQLITE_NULL)
        return SQLITE_CORRUPT;
    const QByteArray key = columnBytes(statement, 0);
    StoredRow row{{table, QString::fromUtf8(key)}, columnValue(statement, 1)};
    if (const auto sum = sums.constFind(row.place); sum != sums.cend()) {
        row.isIntact = *sum == columnSum(statement, 1, key);
        sums.erase(sum);
    }
    rows.append(row);
    return SQLITE_OK;
}

int readTable(sqlite3 *database, StoreTable table, Sums &sums, QList<StoredRow> &rows)
{
    if (const int known = hasTable(database, tableName(table).data()); known != SQLITE_ROW)
        return endOfScan(known);
    int code = SQLITE_OK;
    const Statement scan = prepare(
        database, QString("SELECT key, type, value FROM %1 ORDER BY key"_L1).arg(tableName(table)), code);
    if (code != SQLITE_OK)
        return code;
    while ((code = sqlite3_step(scan.get())) == SQLITE_ROW) {
        if (const int taken = takeRow(scan.get(), table, sums, rows); taken != SQLITE_OK)
            return taken;
    }
    return endOfScan(code);
}

// Beyond a damaged page no row can be counted to; beyond a damaged row they can.
constexpr int damagedRowsInARow = 100;

class Salvage
{
public:
    explicit Salvage(sqlite3 *database)
        : m_database(database)
    {
        // As many as there are.
        readSums(database, m_sums);
    }

    void takeTable(StoreTable table)
    {
        // By their numbers: to look for a key is to read the rows that are compared with it.
        walk(table, "SELECT key, type, value FROM %1 ORDER BY key LIMIT 1 OFFSET ?1"_L1);
        walk(table, "SELECT key, type, value FROM %1 ORDER BY key DESC LIMIT 1 OFFSET ?1"_L1);
    }

    [[nodiscard]] const QList<StoredRow> &rows() const { return m_rows; }

private:
    void walk(StoreTable table, QLatin1StringView sql)
    {
        int code = SQLITE_OK;
        const Statement select = prepare(m_database, QString(sql).arg(tableName(table)), code);
        int failures = 0;
        for (int number = 0; code == SQLITE_OK && failures < damagedRowsInARow; ++number) {
            sqlite3_bind_int(select.get(), 1, number);
            const int stepped = sqlite3_step(select.get());
            if (stepped == SQLITE_DONE)
                return;
            if (stepped == SQLITE_ROW && takeNew(select.get(), table))
                failures = 0;
            else
                ++failures;
            sqlite3_reset(select.get());
        }
    }

    bool takeNew(sqlite3_stmt *statement, StoreTable table)
    {
        const StorePlace place{table, QString::fromUtf8(columnBytes(statement, 0))};
        if (m_seen.contains(place))
            return true;
        if (takeRow(statement, table, m_sums, m_rows) != SQLITE_OK)
            return false;
        m_seen.insert(place);
        return true;
    }

    sqlite3 *m_database;
    Sums m_sums;
    QSet<StorePlace> m_seen;
    QList<StoredRow> m_rows;
};

} // namespace

int readRows(sqlite3 *database, QList<StoredRow> &rows)
{
    Sums sums;
    int code = readSums(database, sums);
    for (const StoreTable table : storeTables) {
        if (code == SQLITE_OK)
            code = readTable(database, table, sums, rows);
    }
    // What has a sum was written, and is not there.
    return code == SQLITE_OK && !sums.isEmpty() ? SQLITE_CORRUPT : code;
}

QList<StoredRow> salvageRows(const QString &path)
{
    QList<StoredRow> rows;
    sqlite3 *database = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &database, SQLITE_OPEN_READWRITE, nullptr) ==
        SQLITE_OK) {
        // Its log is read, and neither emptied nor written to.
        sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        sqlite3_exec(database, "PRAGMA locking_mode = EXCLUSIVE", nullptr, nullptr, nullptr);
        Salvage salvage(database);
        for (const StoreTable table : storeTables)
            salvage.takeTable(table);
        rows = salvage.rows();
    }
    sqlite3_close_v2(database);
    return rows;
}

} // namespace randblatt
