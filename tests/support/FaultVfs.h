#pragma once

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QtGlobal>

#include <mutex>
#include <random>

namespace randblatt {

/// The file system as SQLite sees it, with the faults of real ones: for as long as the object lives every
/// connection that is opened goes through it. May be used on several threads.
class FaultVfs
{
public:
    enum class Fault {
        none,
        /// The call fails, and does nothing.
        ioError,
        /// A write or what makes a file longer finds no space; other calls go well.
        full,
        /// Half of a write is done before there is no space left; other calls go well.
        shortWrite,
    };

    FaultVfs();
    ~FaultVfs();
    FaultVfs(const FaultVfs &) = delete;
    FaultVfs &operator=(const FaultVfs &) = delete;

    /// The `nth` call from now on fails, counted from 1, and `count` - 1 more after it.
    void failAt(int nth, Fault fault, int count = 1);
    /// The calls since failAt() or heal().
    [[nodiscard]] int calls() const;
    /// No more faults of any kind.
    void heal();

    /// As with FUSE and network file systems: memory cannot be shared between processes.
    void setWithoutSharedMemory(bool without);
    /// Every so many reads, at random, one fails or comes back empty; 0 ends it.
    void setFlakyReads(int oneIn, quint32 seed);
    /// Below the folder nothing can be written and no file be made; none for nowhere.
    void setReadOnly(const QString &folder);

    /// The power goes, as seen in a copy of the files in `folder`: of what was written since each file's last
    /// sync, some blocks of 512 bytes, drawn at random, are as before.
    void losePower(const QString &folder, quint32 seed);

    struct Private;

private:
    // A job that outlives its store may outlive this object: it is never freed.
    Private *d;
};

} // namespace randblatt
