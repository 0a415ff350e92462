#pragma once

#include "settings/PreferenceValue.h"
#include "settings/StoreResult.h"

#include <QList>

#include <array>
#include <chrono>
#include <functional>
#include <memory>

class QTemporaryDir;
struct sqlite3;
struct sqlite3_stmt;

namespace randblatt {

/// The store's SQLite file: finds the way in which it can be opened where it is, reads its rows and writes
/// single ones. A write is in the operating system's hands when it returns, and on the disk after the next
/// checkpoint of the log. To be used on one thread.
class StoreFile
{
public:
    enum class Access { none, readOnly, readWrite };

    explicit StoreFile(const QString &path);
    ~StoreFile();
    StoreFile(const StoreFile &) = delete;
    StoreFile &operator=(const StoreFile &) = delete;

    [[nodiscard]] const QString &path() const { return m_path; }
    /// Whether there is a file at all.
    [[nodiscard]] bool isOnDisk() const;
    [[nodiscard]] Access access() const { return m_access; }

    /// Opens or creates the file for reading and writing, with its folder, which becomes the user's alone.
    /// Where file systems share no memory between processes the file is held for this one.
    StoreResult open();
    /// Opens it as it is, with its log, where nothing can be written.
    StoreResult openForReading();
    void close();
    /// Whether another file is at the path now, or none.
    [[nodiscard]] bool hasMoved() const;

    /// Appends all rows, until the first error.
    StoreResult read(QList<StoredRow> &rows);
    /// Stores `value`, or removes the row where there is none.
    StoreResult write(const StorePlace &place, const std::optional<PreferenceValue> &value);
    /// All or none of them.
    StoreResult write(const QList<StoredRow> &rows);

    /// Until when operations wait for somebody else's lock.
    void waitUntil(std::chrono::steady_clock::time_point deadline) { m_deadline = deadline; }
    /// Null while nothing is open. It may be used on other threads.
    [[nodiscard]] std::shared_ptr<sqlite3> connection() const { return m_database; }
    /// Whether no other connection can be made to the file while this one lives.
    [[nodiscard]] bool isExclusive() const { return m_sharing == Sharing::none && m_database != nullptr; }

private:
    enum class Sharing { memory, none };
    struct FinalizeStatement
    {
        void operator()(sqlite3_stmt *statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;
    struct Statements
    {
        Statement upsert;
        Statement remove;
    };

    void prepareFolder() const;
    int connect(const QByteArray &name, int flags);
    int openShared(Sharing sharing);
    int setUp(Sharing sharing);
    int prepare();
    int prepareOne(const QString &sql, Statement &target);
    int run(const char *sql);
    int writeRow(const StorePlace &place, const std::optional<PreferenceValue> &value);
    StoreResult transaction(const char *begin, const std::function<int()> &body);
    StoreResult result(int code);
    static int waitForLock(void *file, int count);

    QString m_path;
    Access m_access = Access::none;
    Sharing m_sharing = Sharing::memory;
    std::shared_ptr<sqlite3> m_database;
    /// By table.
    std::array<Statements, 2> m_statements;
    Statement m_upsertSum;
    Statement m_deleteSum;
    std::chrono::steady_clock::time_point m_deadline;
    QByteArray m_buffer;
    /// Of a copy that is read in place of the file.
    std::unique_ptr<QTemporaryDir> m_copy;
};

} // namespace randblatt
