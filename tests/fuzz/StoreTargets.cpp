#include "fuzz/Targets.h"
#include "modules/todo/TodoItem.h"
#include "settings/RowCoding.h"
#include "settings/StoreReader.h"
#include "theme/ThemeConfig.h"

#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <memory>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

struct CloseDatabase
{
    void operator()(sqlite3 *database) const { sqlite3_close_v2(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinalizeStatement
{
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

Database opened(const char *path)
{
    sqlite3 *database = nullptr;
    sqlite3_open_v2(path, &database, SQLITE_OPEN_READWRITE, nullptr);
    return Database(database);
}

Statement oneRow(sqlite3 *database)
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(database, "SELECT ?1, ?2", -1, &statement, nullptr);
    return Statement(statement);
}

void readFile(const QByteArray &bytes)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(u"store.sqlite"_s);
    QFile file(path);
    require(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size(), "there is space");
    file.close();
    QList<StoredRow> rows;
    (void)readRows(opened(QFile::encodeName(path).constData()).get(), rows);
    (void)salvageRows(path);
    require(file.open(QFile::ReadOnly) && file.readAll() == bytes, "reading changes nothing");
}

void readRow(const QByteArray &bytes)
{
    // How SQLite holds the value, its type, and the value.
    static const Database database = opened(":memory:");
    const Statement row = oneRow(database.get());
    const qsizetype end = bytes.indexOf('\n');
    if (end < 1)
        return;
    const QByteArray type = bytes.sliced(1, end - 1);
    const QByteArray value = bytes.mid(end + 1);
    sqlite3_bind_text(row.get(), 1, type.constData(), static_cast<int>(type.size()), SQLITE_STATIC);
    if (bytes.front() == 'b')
        sqlite3_bind_blob(row.get(), 2, value.constData(), static_cast<int>(value.size()), SQLITE_STATIC);
    else if (bytes.front() == 'i')
        sqlite3_bind_int64(row.get(), 2, value.toLongLong());
    else if (bytes.front() == 'd')
        sqlite3_bind_double(row.get(), 2, value.toDouble());
    else
        sqlite3_bind_text(row.get(), 2, value.constData(), static_cast<int>(value.size()), SQLITE_STATIC);
    require(sqlite3_step(row.get()) == SQLITE_ROW, "a row can be made of it");
    (void)columnSum(row.get(), 0, "key");
    const auto stored = columnValue(row.get(), 0);
    if (!stored)
        return;
    const Statement again = oneRow(database.get());
    QByteArray buffer;
    const BoundValue bound(again.get(), 1, *stored, buffer);
    require(sqlite3_step(again.get()) == SQLITE_ROW && columnValue(again.get(), 0) == stored,
            "a value that was read can be written and read again");
    require(columnSum(again.get(), 0, "key") == bound.sum("key"), "both sums of a row are the same");
}

} // namespace

void fuzzTasks(const QByteArray &bytes)
{
    const auto items = decodeItems(bytes);
    if (!items)
        return;
    QList<QByteArray> encoded;
    for (const TodoItem &item : *items)
        encoded.append(encodeItem(item));
    require(decodeItems(joinItems(encoded)) == items, "tasks that were read can be written and read again");
}

void fuzzThemes(const QByteArray &bytes)
{
    if (const auto theme = decodeTheme(bytes)) {
        const auto encoded = encodeTheme(*theme);
        require(encoded && decodeTheme(*encoded) == theme, "a theme can be written and read again");
    }
    if (const auto themes = decodeThemes(bytes)) {
        const auto encoded = encodeThemes(*themes);
        require(encoded && decodeThemes(*encoded) == themes, "themes can be written and read again");
    }
}

void fuzzRows(const QByteArray &bytes)
{
    if (bytes.startsWith("SQLite format 3"))
        readFile(bytes);
    else
        readRow(bytes);
}

} // namespace randblatt
