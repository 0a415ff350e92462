#pragma once

#include "settings/PreferenceValue.h"
#include "settings/StoreFile.h"
#include "settings/StoreHealth.h"
#include "settings/StoreWorker.h"

#include <QHash>
#include <QSet>
#include <QTimer>

#include <functional>

namespace randblatt {

/// The user's preferences: typed values by key, and drafts of what is being typed, in a SQLite file that only
/// the user can read. All rows are read at the start and held in memory.
///
/// A value is on disk, safe from the end of the process, when setValue() returns; it is safe from a power
/// failure after a second without writes. What cannot be written is held, told by health(), and tried again
/// after a growing pause, with every write and when the object is destroyed. What could not be read is not
/// written over before it could. A damaged file is kept under a dated name, and all its rows that can be read
/// are taken over. No call waits longer than 100 ms for somebody else's lock. To be used on one thread.
class Preferences
{
public:
    /// Opens or creates the file at `path`, with its folder. Never fails: where nothing can be opened, the
    /// values live in memory as after failed writes.
    explicit Preferences(const QString &path);
    /// Takes at most a second.
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

    [[nodiscard]] StoreHealth &health() { return m_health; }
    [[nodiscard]] const QString &path() const { return m_file.path(); }

    /// Copies all of it to a file of its own beside the main thread; whether it could be begun. `ended` is
    /// called for as long as `context` lives.
    bool copyTo(const QString &target, const QObject *context, const std::function<void(StoreResult)> &ended);

private:
    using Value = std::optional<PreferenceValue>;
    struct Unwritten
    {
        /// What was on the disk when it was last seen there.
        Value before;
        StoreResult reason = StoreResult::unavailable;
    };

    [[nodiscard]] Value read(const StorePlace &place) const;
    bool store(const StorePlace &place, const Value &value);
    StoreResult write(const StorePlace &place);
    StoreResult writeHeld(const StorePlace &place);
    [[nodiscard]] bool isOpen() const { return m_file.access() == StoreFile::Access::readWrite; }
    void open();
    void readWithoutWriting();
    void take(const QList<StoredRow> &rows, bool isWhole);
    void takeRow(const StoredRow &row);
    void takeMissing(const QList<StoredRow> &rows);
    StoreResult repair();
    void retry();
    void flush();
    void hold(const StorePlace &place, const Value &before, StoreResult reason);
    void tryAgain(StoreResult reason);
    void tell();
    void checkpoint();
    void checkpointEnded(StoreResult result, const QSet<StorePlace> &places);
    void nameAside(const QString &path);

    StoreFile m_file;
    StoreHealth m_health;
    /// The present values, on the disk or not.
    QHash<StorePlace, PreferenceValue> m_values;
    QHash<StorePlace, Unwritten> m_unwritten;
    /// What was written since the last checkpoint began, and what the last one could not bring to the disk.
    QSet<StorePlace> m_sinceCheckpoint;
    QSet<StorePlace> m_unsynced;
    /// The rows that were read, where not all could be.
    QSet<StorePlace> m_known;
    /// Why not all could be read; ok where they were.
    StoreResult m_unread = StoreResult::unavailable;
    /// How the last opening ended.
    StoreResult m_opened = StoreResult::unavailable;
    std::chrono::steady_clock::time_point m_lastOpened;
    /// The name under which the damaged file is kept while there is no new one yet.
    QString m_aside;
    bool m_isStarted = false;
    bool m_hasWaited = false;
    /// A value is about to be written over that was not known.
    bool m_overwrites = false;
    QTimer m_checkpointTimer;
    QTimer m_retryTimer;
    std::chrono::milliseconds m_pause{0};
    StoreWorker m_worker;
};

} // namespace randblatt
