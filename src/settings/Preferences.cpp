#include "settings/Preferences.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <sqlite3.h>

#include <array>
#include <chrono>
#include <cmath>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcPreferences, "quillbar.preferences")

constexpr std::array typeNames{"string", "boolean", "double", "array", "dictionary", "data"};
static_assert(typeNames.size() == std::variant_size_v<PreferenceValue>);

constexpr auto quietBeforeCheckpoint = 1s;
constexpr int schemaVersion = 1;

// How long a write may wait for the end of a checkpoint.
constexpr int busyMilliseconds = 1000;

// The page size suits values of 8 bytes as well as a scratch pad of 100 kB. Checkpoints are ours; the
// built-in one is only the limit for a write-ahead log that never gets its quiet second.
constexpr auto setupStatements = R"(
    PRAGMA page_size = 16384;
    PRAGMA journal_mode = WAL;
    PRAGMA synchronous = NORMAL;
    PRAGMA wal_autocheckpoint = 4000;
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
)";
constexpr std::array tableNames{"preferences", "drafts"};
constexpr auto selectStatement = "SELECT type, value FROM %1 WHERE key = ?1"_L1;
constexpr auto upsertStatement =
    "INSERT INTO %1 (key, type, value) VALUES (?1, ?2, ?3) "
    "ON CONFLICT (key) DO UPDATE SET type = excluded.type, value = excluded.value"_L1;
constexpr auto deleteStatement = "DELETE FROM %1 WHERE key = ?1"_L1;

QByteArray json(const QJsonDocument &document)
{
    return document.toJson(QJsonDocument::Compact);
}

/// Borrows `utf8`, which must live until the statement is reset.
int bindText(sqlite3_stmt *statement, int index, const QByteArray &utf8)
{
    return sqlite3_bind_text(statement, index, utf8.constData(), static_cast<int>(utf8.size()),
                             SQLITE_STATIC);
}

/// Binds a value's stored form, and keeps it until the statement has run.
struct Binder
{
    sqlite3_stmt *statement;
    int index;
    QByteArray kept = {};

    int operator()(const QString &text) { return bind(text.toUtf8()); }
    int operator()(bool boolean) { return sqlite3_bind_int(statement, index, boolean ? 1 : 0); }
    int operator()(double number) { return sqlite3_bind_double(statement, index, number); }
    int operator()(const QJsonArray &array) { return bind(json(QJsonDocument(array))); }
    int operator()(const QJsonObject &object) { return bind(json(QJsonDocument(object))); }
    int operator()(const QByteArray &bytes)
    {
        // A null pointer would bind NULL instead of an empty blob.
        kept = bytes;
        const char *data = kept.isEmpty() ? "" : kept.constData();
        return sqlite3_bind_blob(statement, index, data, static_cast<int>(kept.size()), SQLITE_STATIC);
    }

private:
    int bind(const QByteArray &utf8)
    {
        kept = utf8;
        return bindText(statement, index, kept);
    }
};

QByteArray columnBytes(sqlite3_stmt *statement, int column)
{
    const auto *data = static_cast<const char *>(sqlite3_column_blob(statement, column));
    return {data, sqlite3_column_bytes(statement, column)};
}

std::optional<PreferenceValue> readRow(sqlite3_stmt *statement)
{
    const QByteArray type = columnBytes(statement, 0);
    const int storage = sqlite3_column_type(statement, 1);
    if (type == "string" && storage == SQLITE_TEXT)
        return QString::fromUtf8(columnBytes(statement, 1));
    if (type == "boolean" && storage == SQLITE_INTEGER)
        return sqlite3_column_int(statement, 1) != 0;
    if (type == "double" && (storage == SQLITE_FLOAT || storage == SQLITE_INTEGER))
        return sqlite3_column_double(statement, 1);
    if (type == "data" && storage == SQLITE_BLOB)
        return columnBytes(statement, 1);
    if (storage == SQLITE_TEXT) {
        const QJsonDocument document = QJsonDocument::fromJson(columnBytes(statement, 1));
        if (type == "array" && document.isArray())
            return document.array();
        if (type == "dictionary" && document.isObject())
            return document.object();
    }
    return std::nullopt;
}

/// Whether SQLite says that the file is no database of ours, as against one that it cannot reach now.
bool isUnreadable(int result)
{
    return result == SQLITE_NOTADB || result == SQLITE_CORRUPT || result == SQLITE_ERROR;
}

int userVersion(sqlite3 *database)
{
    int version = 0;
    sqlite3_exec(
        database, "PRAGMA user_version",
        [](void *target, int, char **columns, char **) {
            *static_cast<int *>(target) = QByteArray(columns[0]).toInt();
            return 0;
        },
        &version, nullptr);
    return version;
}

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

} // namespace

void Preferences::CloseDatabase::operator()(sqlite3 *database) const
{
    sqlite3_close_v2(database);
}

void Preferences::FinalizeStatement::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

Preferences::Preferences(const QString &path)
    : m_path(path)
{
    m_checkpointTimer.setSingleShot(true);
    m_checkpointTimer.setInterval(quietBeforeCheckpoint);
    QObject::connect(&m_checkpointTimer, &QTimer::timeout, &m_checkpointTimer, [this] {
        if (m_checkpoint)
            m_checkpoint->start();
    });
    if (onDisk())
        m_checkpoint.emplace(QFile::encodeName(path));
    open();
}

Preferences::~Preferences()
{
    const auto unwritten = m_unwritten;
    for (auto it = unwritten.cbegin(); it != unwritten.cend(); ++it)
        store(it.key(), it.value());
    m_checkpoint.reset();
    // The last connection to be closed makes a checkpoint.
    close();
}

QString Preferences::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           "/quillbar/preferences.sqlite"_L1;
}

QString Preferences::inMemory()
{
    return u":memory:"_s;
}

std::optional<PreferenceValue> Preferences::value(const QString &key) const
{
    return read({Table::preferences, key});
}

bool Preferences::setValue(const QString &key, const PreferenceValue &value)
{
    return store({Table::preferences, key}, value);
}

bool Preferences::remove(const QString &key)
{
    return store({Table::preferences, key}, std::nullopt);
}

QJsonObject Preferences::draft(const QString &key) const
{
    const auto stored = read({Table::drafts, key});
    return stored && std::holds_alternative<QJsonObject>(*stored) ? std::get<QJsonObject>(*stored)
                                                                  : QJsonObject();
}

bool Preferences::setDraft(const QString &key, const QJsonObject &draft)
{
    return store({Table::drafts, key},
                 draft.isEmpty() ? std::nullopt : std::optional<PreferenceValue>(draft));
}

std::optional<PreferenceValue> Preferences::read(const Place &place) const
{
    if (const auto it = m_unwritten.constFind(place); it != m_unwritten.cend())
        return *it;
    sqlite3_stmt *select = statements(place.table).select.get();
    if (select == nullptr)
        return std::nullopt;
    const QByteArray name = place.key.toUtf8();
    const StatementUse use(select);
    bindText(select, 1, name);
    if (sqlite3_step(select) != SQLITE_ROW)
        return std::nullopt;
    return readRow(select);
}

bool Preferences::store(const Place &place, const std::optional<PreferenceValue> &value)
{
    if (write(place, value)) {
        m_unwritten.remove(place);
        m_checkpointTimer.start();
        return true;
    }
    m_unwritten.insert(place, value);
    return false;
}

bool Preferences::write(const Place &place, const std::optional<PreferenceValue> &value)
{
    const QString &key = place.key;
    if (!statements(place.table).upsert)
        open();
    if (!statements(place.table).upsert) {
        qCWarning(lcPreferences, "Einstellung „%ls“ nicht gespeichert: Speicher nicht verfügbar",
                  qUtf16Printable(key));
        return false;
    }
    sqlite3_stmt *statement = (value ? statements(place.table).upsert : statements(place.table).remove).get();
    const QByteArray name = key.toUtf8();
    Binder binder{statement, 3};
    const StatementUse use(statement);
    bindText(statement, 1, name);
    if (value) {
        sqlite3_bind_text(statement, 2, typeNames.at(value->index()), -1, SQLITE_STATIC);
        std::visit(binder, *value);
    }
    if (sqlite3_step(statement) == SQLITE_DONE)
        return true;
    qCWarning(lcPreferences, "Einstellung „%ls“ nicht gespeichert: %s", qUtf16Printable(key),
              sqlite3_errmsg(m_database.get()));
    return false;
}

void Preferences::prepareFolder() const
{
    const QFileInfo file(m_path);
    const QString folder = file.absolutePath();
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder))
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    // SQLite gives its companion files the permissions of the database.
    constexpr auto privateFile = QFile::ReadOwner | QFile::WriteOwner;
    if (QFile database(m_path); !database.exists())
        database.open(QFile::NewOnly | QFile::WriteOnly, privateFile);
    else if ((database.permissions() & (QFile::ReadGroup | QFile::ReadOther)) != 0)
        database.setPermissions(privateFile);
}

void Preferences::open()
{
    if (onDisk())
        prepareFolder();
    int result = tryOpen(Access::readWrite);
    if (onDisk() && isUnreadable(result)) {
        setAside();
        result = tryOpen(Access::readWrite);
    }
    if (result == SQLITE_OK)
        return;
    qCWarning(lcPreferences, "Einstellungen unter %ls nicht beschreibbar: %s", qUtf16Printable(m_path),
              sqlite3_errstr(result));
    // In a folder that cannot be written the stored values are still there to be read.
    if (!onDisk() || (tryOpen(Access::readOnly) != SQLITE_OK && tryOpen(Access::immutable) != SQLITE_OK))
        close();
}

int Preferences::tryOpen(Access access)
{
    close();
    QByteArray name = QFile::encodeName(m_path);
    int flags = SQLITE_OPEN_READONLY;
    if (access == Access::readWrite)
        flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    // Without the companion files, which a folder that cannot be written does not let SQLite make.
    if (access == Access::immutable) {
        name = "file:" + name.toPercentEncoding("/") + "?immutable=1";
        flags |= SQLITE_OPEN_URI;
    }
    sqlite3 *database = nullptr;
    int result = sqlite3_open_v2(name.constData(), &database, flags, nullptr);
    m_database.reset(database);
    if (result == SQLITE_OK && access == Access::readWrite) {
        sqlite3_busy_timeout(database, busyMilliseconds);
        result = sqlite3_exec(database, setupStatements, nullptr, nullptr, nullptr);
        if (result == SQLITE_OK && userVersion(database) < schemaVersion)
            result = sqlite3_exec(database, "PRAGMA user_version = 1", nullptr, nullptr, nullptr);
    }
    return result == SQLITE_OK ? prepare(access) : result;
}

int Preferences::prepare(Access access)
{
    int result = SQLITE_OK;
    const auto prepareOne = [&](QLatin1StringView sql, size_t table, Statement &target) {
        const QByteArray text = QString(sql).arg(QLatin1StringView(tableNames.at(table))).toLatin1();
        sqlite3_stmt *statement = nullptr;
        if (result == SQLITE_OK)
            result = sqlite3_prepare_v3(m_database.get(), text.constData(), -1, SQLITE_PREPARE_PERSISTENT,
                                        &statement, nullptr);
        target.reset(statement);
    };
    for (size_t table = 0; table < m_statements.size(); ++table) {
        Statements &statements = m_statements.at(table);
        prepareOne(selectStatement, table, statements.select);
        if (access != Access::readWrite) {
            // A file of an earlier version that cannot be written has no drafts.
            if (table > 0)
                result = SQLITE_OK;
            continue;
        }
        prepareOne(deleteStatement, table, statements.remove);
        prepareOne(upsertStatement, table, statements.upsert);
    }
    return result;
}

void Preferences::close()
{
    m_statements = {};
    m_database.reset();
}

void Preferences::setAside() const
{
    const QString date = QDateTime::currentDateTime().toString(u"yyyy-MM-dd'T'HHmmss.zzz"_s);
    const QString aside = m_path + ".unlesbar-"_L1 + date;
    for (const auto &companion : {QString(), u"-wal"_s, u"-shm"_s})
        QFile::rename(m_path + companion, aside + companion);
    qCWarning(lcPreferences, "Einstellungen unlesbar, beiseitegelegt als %ls", qUtf16Printable(aside));
    prepareFolder();
}

bool Preferences::onDisk() const
{
    return m_path != inMemory();
}

} // namespace randblatt
