#include "settings/StoreCopy.h"

#include "settings/StoreReader.h"
#include "settings/StoreRepair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcCopies, "quillbar.backups")

struct CloseDatabase
{
    void operator()(sqlite3 *database) const { sqlite3_close_v2(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

Database connect(const QString &path, int flags, int &code)
{
    sqlite3 *database = nullptr;
    code = sqlite3_open_v2(QFile::encodeName(path).constData(), &database, flags, nullptr);
    sqlite3_extended_result_codes(database, 1);
    return Database(database);
}

int check(sqlite3 *database)
{
    QList<StoredRow> rows;
    const int code = readRows(database, rows);
    if (code != SQLITE_OK)
        return code;
    const bool isIntact =
        std::all_of(rows.cbegin(), rows.cend(), [](const StoredRow &row) { return row.isIntact; });
    return isIntact ? SQLITE_OK : SQLITE_CORRUPT;
}

int copyPages(sqlite3 *source, sqlite3 *target)
{
    sqlite3_backup *backup = sqlite3_backup_init(target, "main", source, "main");
    if (backup == nullptr)
        return sqlite3_extended_errcode(target);
    const int code = sqlite3_backup_step(backup, -1);
    const int finished = sqlite3_backup_finish(backup);
    return code == SQLITE_DONE ? finished : code;
}

} // namespace

StoreResult copyStore(const QString &path, const std::shared_ptr<sqlite3> &exclusive, const QString &target)
{
    constexpr auto privateFile = QFile::ReadOwner | QFile::WriteOwner;
    const QString folder = QFileInfo(target).absolutePath();
    const QString fresh = target + ".neu"_L1;
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder))
        QFile::setPermissions(folder, privateFile | QFile::ExeOwner);
    QFile::remove(fresh);
    if (QFile file(fresh); !file.open(QFile::NewOnly | QFile::WriteOnly, privateFile))
        return StoreResult::unavailable;
    int code = SQLITE_OK;
    int systemError = 0;
    {
        Database own;
        sqlite3 *source = exclusive.get();
        if (source == nullptr) {
            own = connect(path, SQLITE_OPEN_READONLY, code);
            source = own.get();
        }
        Database copy;
        if (code == SQLITE_OK)
            copy = connect(fresh, SQLITE_OPEN_READWRITE, code);
        if (code == SQLITE_OK)
            code = copyPages(source, copy.get());
        // A copy has no log, so that it can be read wherever it is.
        if (code == SQLITE_OK)
            code = sqlite3_exec(copy.get(), "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = DELETE",
                                nullptr, nullptr, nullptr);
        if (code == SQLITE_OK)
            code = check(copy.get());
        if (copy)
            systemError = sqlite3_system_errno(copy.get());
    }
    const bool isInPlace = code == SQLITE_OK && std::rename(QFile::encodeName(fresh).constData(),
                                                            QFile::encodeName(target).constData()) == 0;
    if (isInPlace)
        return StoreResult::ok;
    QFile::remove(fresh);
    return code == SQLITE_OK ? StoreResult::unavailable : storeResult(code, systemError);
}

QString copiesFolder(const QString &path)
{
    return QFileInfo(path).absolutePath() + "/backups"_L1;
}

QList<StoredRow> latestCopy(const QString &path)
{
    const QDir folder(copiesFolder(path));
    const auto names =
        folder.entryList({u"preferences-*.sqlite"_s}, QDir::Files, QDir::Name | QDir::Reversed);
    for (const QString &name : names) {
        QList<StoredRow> rows = salvageRows(folder.filePath(name));
        // A draft of another day is nothing that anybody is typing.
        rows.removeIf(
            [](const StoredRow &row) { return !row.isIntact || row.place.table != StoreTable::preferences; });
        if (!rows.isEmpty())
            return rows;
    }
    return {};
}

QString chosenStore(const QString &path)
{
    return path + ".gewaehlt"_L1;
}

QString takeChosenStore(const QString &path)
{
    const QString chosen = chosenStore(path);
    if (!QFileInfo::exists(chosen))
        return {};
    QString kept;
    if (QFileInfo::exists(path)) {
        kept = keepAside(path, Keeping::overwritten);
        if (kept.isEmpty()) {
            qCWarning(lcCopies, "Kein Platz, um die Einstellungen vor dem Einspielen aufzuheben");
            return {};
        }
    }
    const StoreResult result = moveIntoPlace(chosen, path);
    if (result != StoreResult::ok)
        qCWarning(lcCopies, "Sicherung nicht eingespielt: %s", describe(result));
    return result == StoreResult::ok ? kept : QString();
}

} // namespace randblatt
