#pragma once

#include "settings/LogCheckpoint.h"

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>
#include <variant>

struct sqlite3;
struct sqlite3_stmt;

namespace randblatt {

/// What a preference can hold. The alternatives are the stored types string, boolean, double, array,
/// dictionary and data, in this order; a number that was stored as a string is a string.
using PreferenceValue = std::variant<QString, bool, double, QJsonArray, QJsonObject, QByteArray>;

/// The user's preferences: typed values by key, in a SQLite file that only the user can read.
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

private:
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

    [[nodiscard]] bool onDisk() const;
    void prepareFolder() const;
    void open();
    int tryOpen(Access access);
    void close();
    void setAside() const;
    /// Stores `value`, or removes the row where there is none; keeps in memory what cannot be written.
    bool store(const QString &key, const std::optional<PreferenceValue> &value);
    bool write(const QString &key, const std::optional<PreferenceValue> &value);

    QString m_path;
    Database m_database;
    Statement m_select;
    Statement m_upsert;
    Statement m_delete;
    QHash<QString, std::optional<PreferenceValue>> m_unwritten;
    QTimer m_checkpointTimer;
    /// None where the preferences are in memory.
    std::optional<LogCheckpoint> m_checkpoint;
};

} // namespace randblatt
