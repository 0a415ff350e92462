#include "settings/StoreLog.h"

#include <QFile>
#include <QtEndian>

#include <sqlite3.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// The log's format: "The Write-Ahead Log" in SQLite's description of its file format.
constexpr qint64 logHeaderSize = 32;
constexpr qint64 frameHeaderSize = 24;
constexpr quint32 logMagic = 0x377f0682;
constexpr quint32 bigEndianSums = 1;
constexpr qint64 smallestPage = 512;
constexpr qint64 largestPage = 65536;

// A log that is used anew counts its first salt on.
constexpr quint32 earlierUses = 1000;

struct LogSum
{
    quint32 first = 0;
    quint32 second = 0;
    bool bigEndian = false;

    void add(const char *data, qint64 size)
    {
        constexpr qint64 pair = 8;
        for (qint64 at = 0; at + pair <= size; at += pair) {
            first += word(data + at) + second;
            second += word(data + at + pair / 2) + first;
        }
    }
    [[nodiscard]] bool stands(const char *at) const
    {
        return qFromBigEndian<quint32>(at) == first && qFromBigEndian<quint32>(at + 4) == second;
    }

private:
    [[nodiscard]] quint32 word(const char *data) const
    {
        return bigEndian ? qFromBigEndian<quint32>(data) : qFromLittleEndian<quint32>(data);
    }
};

int moveAll(sqlite3 *database)
{
    // Only when it has read does a connection know of the log.
    int code = sqlite3_exec(database, "PRAGMA user_version", nullptr, nullptr, nullptr);
    // The first does the work and stands in no writer's way; the second, which does, finds none left.
    if (code == SQLITE_OK)
        code = sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
    return code;
}

} // namespace

StoreResult emptyLog(const QString &path, const std::shared_ptr<sqlite3> &exclusive)
{
    if (exclusive) {
        const int code = moveAll(exclusive.get());
        return storeResult(code, sqlite3_system_errno(exclusive.get()));
    }
    sqlite3 *database = nullptr;
    int code =
        sqlite3_open_v2(QFile::encodeName(path).constData(), &database, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_extended_result_codes(database, 1);
    if (code == SQLITE_OK)
        code = moveAll(database);
    const StoreResult result = storeResult(code, database != nullptr ? sqlite3_system_errno(database) : 0);
    sqlite3_close_v2(database);
    return result;
}

bool isLogDamaged(const QString &path)
{
    QFile log(path + "-wal"_L1);
    if (log.size() <= logHeaderSize || !log.open(QFile::ReadOnly))
        return false;
    const QByteArray header = log.read(logHeaderSize);
    if (header.size() < logHeaderSize)
        return false;
    const auto headerWord = [&](qint64 index) {
        return qFromBigEndian<quint32>(header.constData() + 4 * index);
    };
    const qint64 pageSize = headerWord(2);
    LogSum sum;
    sum.bigEndian = (headerWord(0) & bigEndianSums) != 0;
    constexpr qint64 summed = 24;
    sum.add(header.constData(), summed);
    if ((headerWord(0) & ~bigEndianSums) != logMagic || pageSize < smallestPage || pageSize > largestPage ||
        !sum.stands(header.constData() + summed))
        return true;
    bool isValid = true;
    // The first invalid one has this use's header.
    bool isTorn = false;
    for (;;) {
        // What a process that ended in the middle of a frame has left is none: half a frame at the end, or,
        // in a log that is used anew, a whole one that is half of the earlier use, with more of that behind
        // it.
        const QByteArray frame = log.read(frameHeaderSize + pageSize);
        if (frame.size() < frameHeaderSize + pageSize)
            return isTorn;
        const auto frameWord = [&](qint64 index) {
            return qFromBigEndian<quint32>(frame.constData() + 4 * index);
        };
        const bool isOfThisUse = frameWord(2) == headerWord(4) && frameWord(3) == headerWord(5);
        const bool isOfEarlierUse = headerWord(4) - frameWord(2) - 1 < earlierUses;
        if (isValid) {
            sum.add(frame.constData(), 8);
            sum.add(frame.constData() + frameHeaderSize, pageSize);
            isValid = isOfThisUse && sum.stands(frame.constData() + 16);
            isTorn = !isValid && isOfThisUse;
            if (!isValid && !isTorn && !isOfEarlierUse)
                return true;
        } else if (isOfEarlierUse) {
            isTorn = false;
        } else {
            return true;
        }
    }
}

} // namespace randblatt
