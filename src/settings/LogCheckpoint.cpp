#include "settings/LogCheckpoint.h"

#include <sqlite3.h>

namespace randblatt {

LogCheckpoint::LogCheckpoint(const QByteArray &fileName)
    : m_fileName(fileName)
{
    m_thread.setMaxThreadCount(1);
    m_thread.setExpiryTimeout(0);
}

LogCheckpoint::~LogCheckpoint()
{
    m_thread.waitForDone();
}

void LogCheckpoint::start()
{
    if (m_requests++ > 0)
        return;
    m_thread.start([this] {
        int answered = 0;
        do {
            answered = m_requests;
            run();
        } while (m_requests.fetch_sub(answered) != answered);
    });
}

void LogCheckpoint::run() const
{
    sqlite3 *database = nullptr;
    if (sqlite3_open_v2(m_fileName.constData(), &database, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
        // Only when it has read does a connection know of the log.
        sqlite3_exec(database, "PRAGMA user_version", nullptr, nullptr, nullptr);
        // The first does the work and stands in no writer's way; the second, which does, finds none left.
        sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
        sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
    }
    sqlite3_close_v2(database);
}

} // namespace randblatt
