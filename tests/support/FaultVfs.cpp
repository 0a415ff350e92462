#include "support/FaultVfs.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

namespace randblatt {

namespace {

constexpr qint64 blockSize = 512;
constexpr auto vfsName = "fault";

} // namespace

struct FaultVfs::Private
{
    /// What a file held before it was written to without a sync.
    struct Unsynced
    {
        QMap<qint64, QByteArray> blocks;
        qint64 size = -1;
    };

    std::mutex mutex;
    sqlite3_vfs vfs{};
    sqlite3_vfs *below = nullptr;
    Fault fault = Fault::none;
    int failFrom = 0;
    int failCount = 0;
    int calls = 0;
    int flakyOneIn = 0;
    bool withoutSharedMemory = false;
    QByteArray readOnly;
    std::mt19937 random;
    QHash<QByteArray, Unsynced> unsynced;

    /// Counts a call; the fault that it has.
    Fault next(bool growsFile)
    {
        const std::scoped_lock lock(mutex);
        ++calls;
        if (fault == Fault::none || calls < failFrom || calls - failFrom >= failCount)
            return Fault::none;
        return fault == Fault::ioError || growsFile ? fault : Fault::none;
    }
    bool isReadOnly(const char *name)
    {
        const std::scoped_lock lock(mutex);
        return !readOnly.isEmpty() && name != nullptr && QByteArray(name).startsWith(readOnly);
    }
    bool isFlaky()
    {
        const std::scoped_lock lock(mutex);
        return flakyOneIn > 0 && random() % static_cast<unsigned>(flakyOneIn) == 0;
    }
};

namespace {

struct FaultFile
{
    sqlite3_file base;
    FaultVfs::Private *d;
    const char *name;
    bool isDatabase;

    [[nodiscard]] sqlite3_file *below() { return reinterpret_cast<sqlite3_file *>(this + 1); }
};

FaultFile &cast(sqlite3_file *file)
{
    return *reinterpret_cast<FaultFile *>(file);
}

FaultVfs::Private &cast(sqlite3_vfs *vfs)
{
    return *static_cast<FaultVfs::Private *>(vfs->pAppData);
}

/// Keeps what a write is about to replace.
void remember(FaultFile &file, qint64 offset, qint64 size)
{
    if (!file.isDatabase)
        return;
    const std::scoped_lock lock(file.d->mutex);
    auto &unsynced = file.d->unsynced[file.name];
    sqlite3_int64 before = 0;
    file.below()->pMethods->xFileSize(file.below(), &before);
    if (unsynced.size < 0)
        unsynced.size = before;
    for (qint64 at = offset / blockSize * blockSize; at < offset + size; at += blockSize) {
        if (unsynced.blocks.contains(at))
            continue;
        QByteArray block(blockSize, '\0');
        // Beyond the end it comes back as zeros.
        file.below()->pMethods->xRead(file.below(), block.data(), blockSize, at);
        unsynced.blocks.insert(at, block);
    }
}

int closeFile(sqlite3_file *file)
{
    const int code = cast(file).below()->pMethods->xClose(cast(file).below());
    file->pMethods = nullptr;
    return code;
}

int readFile(sqlite3_file *file, void *data, int size, sqlite3_int64 offset)
{
    if (cast(file).d->next(false) != FaultVfs::Fault::none)
        return SQLITE_IOERR_READ;
    if (cast(file).d->isFlaky()) {
        if (offset % (2 * blockSize) == 0)
            return SQLITE_IOERR_READ;
        std::memset(data, 0, static_cast<size_t>(size));
        return SQLITE_IOERR_SHORT_READ;
    }
    return cast(file).below()->pMethods->xRead(cast(file).below(), data, size, offset);
}

int writeFile(sqlite3_file *file, const void *data, int size, sqlite3_int64 offset)
{
    const auto fault =
        cast(file).d->isReadOnly(cast(file).name) ? FaultVfs::Fault::full : cast(file).d->next(true);
    if (fault == FaultVfs::Fault::ioError)
        return SQLITE_IOERR_WRITE;
    if (fault == FaultVfs::Fault::full)
        return SQLITE_FULL;
    remember(cast(file), offset, size);
    if (fault == FaultVfs::Fault::shortWrite) {
        cast(file).below()->pMethods->xWrite(cast(file).below(), data, size / 2, offset);
        return SQLITE_FULL;
    }
    return cast(file).below()->pMethods->xWrite(cast(file).below(), data, size, offset);
}

int truncateFile(sqlite3_file *file, sqlite3_int64 size)
{
    if (cast(file).d->next(false) != FaultVfs::Fault::none)
        return SQLITE_IOERR_TRUNCATE;
    sqlite3_int64 before = 0;
    cast(file).below()->pMethods->xFileSize(cast(file).below(), &before);
    remember(cast(file), size, before - size);
    return cast(file).below()->pMethods->xTruncate(cast(file).below(), size);
}

int syncFile(sqlite3_file *file, int flags)
{
    if (cast(file).d->next(false) != FaultVfs::Fault::none)
        return SQLITE_IOERR_FSYNC;
    if (cast(file).isDatabase) {
        const std::scoped_lock lock(cast(file).d->mutex);
        cast(file).d->unsynced.remove(cast(file).name);
    }
    return cast(file).below()->pMethods->xSync(cast(file).below(), flags);
}

int fileSize(sqlite3_file *file, sqlite3_int64 *size)
{
    return cast(file).below()->pMethods->xFileSize(cast(file).below(), size);
}

int lockFile(sqlite3_file *file, int level)
{
    return cast(file).below()->pMethods->xLock(cast(file).below(), level);
}

int unlockFile(sqlite3_file *file, int level)
{
    return cast(file).below()->pMethods->xUnlock(cast(file).below(), level);
}

int checkReservedLock(sqlite3_file *file, int *isReserved)
{
    return cast(file).below()->pMethods->xCheckReservedLock(cast(file).below(), isReserved);
}

int controlFile(sqlite3_file *file, int operation, void *argument)
{
    return cast(file).below()->pMethods->xFileControl(cast(file).below(), operation, argument);
}

int sectorSize(sqlite3_file *file)
{
    return cast(file).below()->pMethods->xSectorSize(cast(file).below());
}

int deviceCharacteristics(sqlite3_file *file)
{
    return cast(file).below()->pMethods->xDeviceCharacteristics(cast(file).below());
}

int mapShared(sqlite3_file *file, int page, int size, int extend, void volatile **memory)
{
    if (cast(file).d->withoutSharedMemory || cast(file).d->isReadOnly(cast(file).name))
        return SQLITE_IOERR_SHMMAP;
    if (cast(file).d->next(true) != FaultVfs::Fault::none)
        return SQLITE_IOERR_SHMSIZE;
    return cast(file).below()->pMethods->xShmMap(cast(file).below(), page, size, extend, memory);
}

int lockShared(sqlite3_file *file, int offset, int count, int flags)
{
    return cast(file).below()->pMethods->xShmLock(cast(file).below(), offset, count, flags);
}

void shmBarrier(sqlite3_file *file)
{
    cast(file).below()->pMethods->xShmBarrier(cast(file).below());
}

int unmapShared(sqlite3_file *file, int remove)
{
    return cast(file).below()->pMethods->xShmUnmap(cast(file).below(), remove);
}

// Without mapped reads, which no fault could meet.
constexpr sqlite3_io_methods methods{2,
                                     closeFile,
                                     readFile,
                                     writeFile,
                                     truncateFile,
                                     syncFile,
                                     fileSize,
                                     lockFile,
                                     unlockFile,
                                     checkReservedLock,
                                     controlFile,
                                     sectorSize,
                                     deviceCharacteristics,
                                     mapShared,
                                     lockShared,
                                     shmBarrier,
                                     unmapShared,
                                     nullptr,
                                     nullptr};

int openFile(sqlite3_vfs *vfs, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    auto &d = cast(vfs);
    auto *opened =
        new (file) FaultFile{{nullptr}, &d, name, (flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL)) != 0};
    if (d.next(false) != FaultVfs::Fault::none)
        return SQLITE_CANTOPEN;
    if (d.isReadOnly(name) && (flags & SQLITE_OPEN_WAL) != 0)
        return SQLITE_CANTOPEN;
    const int code = d.below->xOpen(d.below, name, opened->below(), flags, outFlags);
    if (opened->below()->pMethods != nullptr)
        opened->base.pMethods = &methods;
    return code;
}

int deleteFile(sqlite3_vfs *vfs, const char *name, int syncFolder)
{
    if (cast(vfs).next(false) != FaultVfs::Fault::none)
        return SQLITE_IOERR_DELETE;
    {
        const std::scoped_lock lock(cast(vfs).mutex);
        cast(vfs).unsynced.remove(name);
    }
    return cast(vfs).below->xDelete(cast(vfs).below, name, syncFolder);
}

} // namespace

FaultVfs::FaultVfs()
{
    static auto &all = *new std::vector<std::unique_ptr<Private>>;
    d = all.emplace_back(std::make_unique<Private>()).get();
    d->below = sqlite3_vfs_find(nullptr);
    // All else is as below.
    d->vfs = *d->below;
    d->vfs.szOsFile = static_cast<int>(sizeof(FaultFile)) + d->below->szOsFile;
    d->vfs.pNext = nullptr;
    d->vfs.zName = vfsName;
    d->vfs.pAppData = d;
    d->vfs.xOpen = openFile;
    d->vfs.xDelete = deleteFile;
    d->vfs.xAccess = [](sqlite3_vfs *vfs, const char *name, int flags, int *result) {
        return cast(vfs).below->xAccess(cast(vfs).below, name, flags, result);
    };
    d->vfs.xFullPathname = [](sqlite3_vfs *vfs, const char *name, int size, char *path) {
        return cast(vfs).below->xFullPathname(cast(vfs).below, name, size, path);
    };
    sqlite3_vfs_register(&d->vfs, 1);
}

FaultVfs::~FaultVfs()
{
    heal();
    sqlite3_vfs_unregister(&d->vfs);
    sqlite3_vfs_register(d->below, 1);
}

void FaultVfs::failAt(int nth, Fault fault, int count)
{
    const std::scoped_lock lock(d->mutex);
    d->fault = fault;
    d->failFrom = nth;
    d->failCount = count;
    d->calls = 0;
}

int FaultVfs::calls() const
{
    const std::scoped_lock lock(d->mutex);
    return d->calls;
}

void FaultVfs::heal()
{
    const std::scoped_lock lock(d->mutex);
    d->fault = Fault::none;
    d->calls = 0;
    d->flakyOneIn = 0;
    d->readOnly.clear();
}

void FaultVfs::setWithoutSharedMemory(bool without)
{
    const std::scoped_lock lock(d->mutex);
    d->withoutSharedMemory = without;
}

void FaultVfs::setFlakyReads(int oneIn, quint32 seed)
{
    const std::scoped_lock lock(d->mutex);
    d->flakyOneIn = oneIn;
    d->random.seed(seed);
}

void FaultVfs::setReadOnly(const QString &folder)
{
    const std::scoped_lock lock(d->mutex);
    d->readOnly = QFile::encodeName(folder);
}

void FaultVfs::losePower(const QString &folder, quint32 seed)
{
    const std::scoped_lock lock(d->mutex);
    std::mt19937 random(seed);
    for (auto it = d->unsynced.cbegin(); it != d->unsynced.cend(); ++it) {
        QFile file(folder + QLatin1Char('/') + QFileInfo(QFile::decodeName(it.key())).fileName());
        if (!file.open(QFile::ReadWrite))
            continue;
        // A file that grew may be as short as before, without what came after its old end.
        if (it->size >= 0 && it->size < file.size() && random() % 4 == 0)
            file.resize(it->size);
        for (auto block = it->blocks.cbegin(); block != it->blocks.cend(); ++block) {
            if (random() % 2 == 0 || block.key() >= file.size())
                continue;
            file.seek(block.key());
            file.write(block.value().left(file.size() - block.key()));
        }
    }
}

} // namespace randblatt
