#pragma once

#include "settings/LogCheckpoint.h"

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QTimer>

#include <array>
#include <memory>
#include <optional>
#include <variant>

struct sqlite3;
struct sqlite3_stmt;

namespace randblatt {

/// What a preference can hold. The alternatives are the stored types string, boolean, double, array,
/// dictionary and data, in this order; a number that was stored as a string is a string.
using PreferenceValue = std::variant<QString, bool, double, QJsonArray, QJsonObject, QByteArray>;

/// The user's preferences: typed values by key, and drafts of what is being typed, in a SQLite file that only
/// the user can read.
///
/// A value is on disk, safe from the end of the process, when setValue() returns; it is safe from a power
/// failure after a second without writes. A file that SQLite cannot read is set aside under a dated name. A
/// write that fails is logged, its value kept in memory, and tried again with the next write of that key and
/// when the object is destroyed. To be used on one thread.
class Preferences
{
public:
    /// Opens or creates the file at `path`, with its folder. Never fails: where nothing can be opened, the
    /// values live in memory as after failed writes.
    explicit Preferences(const QString &path);
    ~Preferences();
    Preferences(const Preferences &) = delete;
    Preferences &operator=(const Preferences &) = delete;

    /// `preferences.sqlite` in the application's folder under XDG_DATA_HOME (XDG Base Directory
    /// Specification).
    [[nodiscard]] static QString defaultPath();
    /// A path whose preferences end with the object.
    [[nodiscard]] static QString inMemory();

    /// The value under `key`; none where there is none, or where the row cannot be read.
    [[nodiscard]] std::optional<PreferenceValue> value(const QString &key) const;
    /// The value under `key` if it has the type T, one of PreferenceValue's alternatives.
    template <typename T>
    [[nodiscard]] std::optional<T> get(const QString &key) const
    {
        const auto found = value(key);
        if (!found || !std::holds_alternative<T>(*found))
            return std::nullopt;
        return std::get<T>(*found);
    }
    /// Stores `value` under `key`; whether it is on disk. Where it is not, value() returns it all the same.
    bool setValue(const QString &key, const PreferenceValue &value);
    /// Takes the value under `key` away; whether it is gone from the disk. Where it is not, value() returns
    /// none all the same.
    bool remove(const QString &key);

    /// What is being typed, under a key of its own: drafts have a table to themselves, and the same promise
    /// as values. Empty where there is none, or where it cannot be read.
    [[nodiscard]] QJsonObject draft(const QString &key) const;
    /// Stores a draft, or takes it away where `draft` is empty; whether that is on disk.
    bool setDraft(const QString &key, const QJsonObject &draft);

private:
    enum class Table { preferences, drafts };
    enum class Access { readWrite, readOnly, immutable };
    struct CloseDatabase
    {
        void operator()(sqlite3 *database) const;
    };
    struct FinalizeStatement
    {
        void operator()(sqlite3_stmt *statement) const;
    };
    using Database = std::unique_ptr<sqlite3, CloseDatabase>;
    using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;
    struct Statements
    {
        Statement select;
        Statement upsert;
        Statement remove;
    };
    /// A row's table and key.
    struct Place
    {
        Table table;
        QString key;

        friend bool operator==(const Place &, const Place &) = default;
        friend size_t qHash(const Place &place, size_t seed)
        {
            return qHashMulti(seed, static_cast<int>(place.table), place.key);
        }
    };

    [[nodiscard]] bool onDisk() const;
    void prepareFolder() const;
    void open();
    int tryOpen(Access access);
    int prepare(Access access);
    void close();
    void setAside() const;
    [[nodiscard]] Statements &statements(Table table) { return m_statements.at(static_cast<size_t>(table)); }
    [[nodiscard]] const Statements &statements(Table table) const
    {
        return m_statements.at(static_cast<size_t>(table));
    }
    [[nodiscard]] std::optional<PreferenceValue> read(const Place &place) const;
    /// Stores `value`, or removes the row where there is none; keeps in memory what cannot be written.
    bool store(const Place &place, const std::optional<PreferenceValue> &value);
    bool write(const Place &place, const std::optional<PreferenceValue> &value);

    QString m_path;
    Database m_database;
    /// By table.
    std::array<Statements, 2> m_statements;
    QHash<Place, std::optional<PreferenceValue>> m_unwritten;
    QTimer m_checkpointTimer;
    /// None where the preferences are in memory.
    std::optional<LogCheckpoint> m_checkpoint;
};

} // namespace randblatt
