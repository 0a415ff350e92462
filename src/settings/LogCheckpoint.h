#pragma once

#include <QByteArray>
#include <QThreadPool>

#include <atomic>

namespace randblatt {

/// Moves what the write-ahead log of a SQLite database holds into the database, with a sync, on a thread of
/// its own: a slow disk may take a tenth of a second for that.
class LogCheckpoint
{
public:
    /// For the database file of that name, which somebody else has open.
    explicit LogCheckpoint(const QByteArray &fileName);
    /// Waits for the runs under way.
    ~LogCheckpoint();
    LogCheckpoint(const LogCheckpoint &) = delete;
    LogCheckpoint &operator=(const LogCheckpoint &) = delete;

    /// Begins a run, or has another follow the one under way. Writing goes on meanwhile.
    void start();

private:
    void run() const;

    QByteArray m_fileName;
    std::atomic_int m_requests = 0;
    QThreadPool m_thread;
};

} // namespace randblatt
