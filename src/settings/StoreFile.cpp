#include "settings/StoreFile.h"

#include "settings/RowCoding.h"
#include "settings/StoreReader.h"
#include "settings/StoreSchema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <algorithm>
#include <thread>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A damaged file may name any size; what no value has is not asked of the memory.
constexpr int longestValue = 256 * 1024 * 1024;

// The page size suits values of 8 bytes as well as a scratch pad of 100 kB. Checkpoints are ours; the
// built-in one is only the limit for a write-ahead log that never gets its quiet second.
constexpr auto setupStatements = R"(
    PRAGMA page_size = 16384;
    PRAGMA synchronous = NORMAL;
    PRAGMA wal_autocheckpoint = 4000;
)";

constexpr auto upsertStatement =
    "INSERT INTO %1 (key, type, value) VALUES (?1, ?2, ?3) "
    "ON CONFLICT (key) DO UPDATE SET type = excluded.type, value = excluded.value"_L1;
constexpr auto deleteStatement = "DELETE FROM %1 WHERE key = ?1"_L1;
constexpr auto upsertSumStatement = "INSERT INTO sums (place, key, sum) VALUES (?1, ?2, ?3) "
                                    "ON CONFLICT (place, key) DO UPDATE SET sum = excluded.sum"_L1;
constexpr auto deleteSumStatement = "DELETE FROM sums WHERE place = ?1 AND key = ?2"_L1;

/// Ends a use of a prepared statement, so that no read transaction stays open.
class StatementUse
{
public:
    explicit StatementUse(sqlite3_stmt *statement)
        : m_statement(statement)
    {
    }
    ~StatementUse()
    {
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
    }
    StatementUse(const StatementUse &) = delete;
    StatementUse &operator=(const StatementUse &) = delete;

private:
    sqlite3_stmt *m_statement;
};

/// Borrows `utf8`, which must live until the statement is reset.
void bindText(sqlite3_stmt *statement, int index, const QByteArray &utf8)
{
    sqlite3_bind_text(statement, index, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_STATIC);
}

void setOwnerOnly(const QString &path, QFile::Permissions wanted)
{
    constexpr auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                            QFile::WriteOther | QFile::ExeOther;
    if (QFileInfo::exists(path) && (QFile::permissions(path) & (owner | others)) != wanted)
        QFile::setPermissions(path, wanted);
}

} // namespace

void StoreFile::FinalizeStatement::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

StoreFile::StoreFile(const QString &path)
    : m_path(path)
{
}

StoreFile::~StoreFile()
{
    close();
}

bool StoreFile::isOnDisk() const
{
    return m_path != ":memory:"_L1;
}

void StoreFile::prepareFolder() const
{
    constexpr auto privateFile = QFile::ReadOwner | QFile::WriteOwner;
    const QString folder = QFileInfo(m_path).absolutePath();
    QDir().mkpath(folder);
    setOwnerOnly(folder, privateFile | QFile::ExeOwner);
    // SQLite gives its companion files the permissions of the database.
    if (QFile database(m_path); !database.exists())
        database.open(QFile::NewOnly | QFile::WriteOnly, privateFile);
    for (const auto &companion : {""_L1, "-wal"_L1, "-shm"_L1})
        setOwnerOnly(m_path + companion, privateFile);
}

StoreResult StoreFile::open()
{
    if (isOnDisk())
        prepareFolder();
    const StoreResult first = result(openShared(Sharing::memory));
    if (first == StoreResult::ok || first == StoreResult::busy || first == StoreResult::damaged)
        return first;
    const StoreResult second = result(openShared(Sharing::none));
    return second == StoreResult::ok || second == StoreResult::damaged ? second : first;
}

StoreResult StoreFile::openForReading()
{
    const QByteArray name = QFile::encodeName(m_path);
    qint64 objects = 0;
    const auto tryOpen = [&](const QByteArray &source, int flags) {
        int code = connect(source, flags);
        if (code == SQLITE_OK)
            code = queryNumber(m_database.get(), "SELECT count(*) FROM sqlite_schema", objects);
        if (code == SQLITE_ROW)
            m_access = Access::readOnly;
        return result(code);
    };
    if (!QFileInfo::exists(m_path))
        return StoreResult::unavailable;
    const StoreResult plain = tryOpen(name, SQLITE_OPEN_READONLY);
    if (plain == StoreResult::ok || plain == StoreResult::busy || plain == StoreResult::damaged)
        return plain;
    // Without the companion files, which a folder that cannot be written does not let SQLite make, it would
    // overlook a log.
    if (QFileInfo(m_path + "-wal"_L1).size() == 0)
        return tryOpen("file:" + name.toPercentEncoding("/") + "?immutable=1",
                       SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    auto copy = std::make_unique<QTemporaryDir>();
    const QString copied = copy->filePath(u"preferences.sqlite"_s);
    if (!QFile::copy(m_path, copied) || !QFile::copy(m_path + "-wal"_L1, copied + "-wal"_L1))
        return plain;
    const StoreResult result = tryOpen(QFile::encodeName(copied), SQLITE_OPEN_READWRITE);
    m_copy = std::move(copy);
    return result;
}

int StoreFile::connect(const QByteArray &name, int flags)
{
    close();
    sqlite3 *database = nullptr;
    const int code = sqlite3_open_v2(name.constData(), &database, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
    m_database.reset(database, sqlite3_close_v2);
    if (code != SQLITE_OK)
        return code;
    sqlite3_extended_result_codes(database, 1);
    sqlite3_limit(database, SQLITE_LIMIT_LENGTH, longestValue);
    // They are for others; our own writes know of the sums.
    sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    // Closing must not wait for a slow disk.
    sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_busy_handler(database, &StoreFile::waitForLock, this);
    return SQLITE_OK;
}

int StoreFile::openShared(Sharing sharing)
{
    int code = connect(QFile::encodeName(m_path), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (code == SQLITE_OK)
        code = setUp(sharing);
    if (code != SQLITE_OK)
        return code;
    m_access = Access::readWrite;
    m_sharing = sharing;
    return code;
}

int StoreFile::setUp(Sharing sharing)
{
    // SQLite opens for reading what it cannot open for writing.
    if (sqlite3_db_readonly(m_database.get(), "main") == 1)
        return SQLITE_READONLY;
    int code = SQLITE_OK;
    if (sharing == Sharing::none)
        code = run("PRAGMA locking_mode = EXCLUSIVE");
    if (code == SQLITE_OK)
        code = run(setupStatements);
    // Nothing is changed in a damaged file.
    bool isDone = false;
    QList<StoredRow> rows;
    if (code == SQLITE_OK)
        code = isSetUp(m_database.get(), isDone);
    if (code == SQLITE_OK && !isDone)
        code = readRows(m_database.get(), rows);
    if (code == SQLITE_OK && isOnDisk()) {
        qint64 isLogged = 0;
        code = queryNumber(m_database.get(), "PRAGMA journal_mode = WAL", isLogged);
        if (code == SQLITE_ROW)
            code = queryNumber(m_database.get(), "SELECT journal_mode = 'wal' FROM pragma_journal_mode",
                               isLogged);
        if (code == SQLITE_ROW)
            code = isLogged == 1 ? SQLITE_OK : SQLITE_CANTOPEN;
    }
    if (code == SQLITE_OK)
        code = ensureSchema(m_database.get());
    return code == SQLITE_OK ? prepare() : code;
}

int StoreFile::prepare()
{
    int code = prepareOne(upsertSumStatement, m_upsertSum);
    if (code == SQLITE_OK)
        code = prepareOne(deleteSumStatement, m_deleteSum);
    for (const StoreTable table : storeTables) {
        Statements &statements = m_statements.at(static_cast<size_t>(table));
        if (code == SQLITE_OK)
            code = prepareOne(QString(upsertStatement).arg(tableName(table)), statements.upsert);
        if (code == SQLITE_OK)
            code = prepareOne(QString(deleteStatement).arg(tableName(table)), statements.remove);
    }
    return code;
}

int StoreFile::prepareOne(const QString &sql, Statement &target)
{
    sqlite3_stmt *statement = nullptr;
    const int code = sqlite3_prepare_v3(m_database.get(), sql.toLatin1().constData(), -1,
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    target.reset(statement);
    return code;
}

void StoreFile::close()
{
    m_access = Access::none;
    m_sharing = Sharing::memory;
    m_statements = {};
    m_upsertSum.reset();
    m_deleteSum.reset();
    // A checkpoint on another thread may hold the connection for a while yet.
    if (m_database && m_database.use_count() > 1)
        sqlite3_busy_handler(m_database.get(), nullptr, nullptr);
    m_database.reset();
    m_copy.reset();
}

bool StoreFile::hasMoved() const
{
    int moved = 0;
    return m_database && isOnDisk() &&
           sqlite3_file_control(m_database.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
           moved != 0;
}

StoreResult StoreFile::read(QList<StoredRow> &rows)
{
    return transaction("BEGIN", [&] { return readRows(m_database.get(), rows); });
}

StoreResult StoreFile::write(const StorePlace &place, const std::optional<PreferenceValue> &value)
{
    if (m_access != Access::readWrite)
        return StoreResult::unavailable;
    return transaction("BEGIN IMMEDIATE", [&] { return writeRow(place, value); });
}

StoreResult StoreFile::write(const QList<StoredRow> &rows)
{
    if (m_access != Access::readWrite)
        return StoreResult::unavailable;
    return transaction("BEGIN IMMEDIATE", [&] {
        int code = SQLITE_OK;
        for (const StoredRow &row : rows) {
            if (code == SQLITE_OK)
                code = writeRow(row.place, row.value);
        }
        return code;
    });
}

int StoreFile::writeRow(const StorePlace &place, const std::optional<PreferenceValue> &value)
{
    const Statements &statements = m_statements.at(static_cast<size_t>(place.table));
    sqlite3_stmt *row = (value ? statements.upsert : statements.remove).get();
    sqlite3_stmt *sum = (value ? m_upsertSum : m_deleteSum).get();
    const QByteArray key = place.key.toUtf8();
    std::optional<BoundValue> bound;
    const StatementUse rowUse(row);
    bindText(row, 1, key);
    if (value)
        bound.emplace(row, 2, *value, m_buffer);
    if (const int code = sqlite3_step(row); code != SQLITE_DONE)
        return code;
    const StatementUse sumUse(sum);
    sqlite3_bind_text(sum, 1, tableName(place.table).data(), -1, SQLITE_STATIC);
    bindText(sum, 2, key);
    if (bound)
        sqlite3_bind_int64(sum, 3, bound->sum(key));
    const int code = sqlite3_step(sum);
    return code == SQLITE_DONE ? SQLITE_OK : code;
}

StoreResult StoreFile::transaction(const char *begin, const std::function<int()> &body)
{
    if (!m_database)
        return StoreResult::unavailable;
    int code = run(begin);
    if (code == SQLITE_OK)
        code = body();
    if (code == SQLITE_OK)
        code = run("COMMIT");
    const StoreResult outcome = result(code);
    if (sqlite3_get_autocommit(m_database.get()) == 0)
        run("ROLLBACK");
    return outcome;
}

int StoreFile::run(const char *sql)
{
    return sqlite3_exec(m_database.get(), sql, nullptr, nullptr, nullptr);
}

StoreResult StoreFile::result(int code)
{
    return storeResult(code, m_database ? sqlite3_system_errno(m_database.get()) : 0);
}

int StoreFile::waitForLock(void *file, int count)
{
    const auto left = static_cast<StoreFile *>(file)->m_deadline - std::chrono::steady_clock::now();
    if (left <= 0s)
        return 0;
    constexpr std::chrono::nanoseconds shortest = 1ms;
    constexpr std::chrono::nanoseconds longest = 10ms;
    std::this_thread::sleep_for(
        std::min<std::chrono::nanoseconds>(left, std::min(longest, shortest * (count + 1))));
    return 1;
}

} // namespace randblatt
