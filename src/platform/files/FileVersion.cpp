#include "platform/files/FileVersion.h"

#include "platform/files/FileDescriptor.h"

#include <QFile>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>

namespace randblatt {

namespace {

using Status = struct stat;

qint64 nanoseconds(const timespec &time)
{
    return static_cast<qint64>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

FileStamp stampOf(const Status &status)
{
    return {.device = static_cast<quint64>(status.st_dev),
            .inode = static_cast<quint64>(status.st_ino),
            .size = static_cast<qint64>(status.st_size),
            .modified = nanoseconds(status.st_mtim),
            .changed = nanoseconds(status.st_ctim)};
}

FileReading failed(int error)
{
    return {.version = {}, .error = error};
}

/// What is left of an open file, at most `limit` bytes.
FileReading readAll(int descriptor, const FileStamp &stamp, qint64 limit)
{
    // One byte more than the size tells that the file has grown.
    QByteArray contents(static_cast<qsizetype>(std::min(stamp.size, limit) + 1), Qt::Uninitialized);
    qsizetype length = 0;
    while (true) {
        const ssize_t count =
            ::read(descriptor, contents.data() + length, static_cast<size_t>(contents.size() - length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failed(errno);
        if (count == 0)
            break;
        length += count;
        if (length > limit)
            return failed(EFBIG);
        if (length == contents.size())
            contents.resize(static_cast<qsizetype>(std::min<qint64>(2 * contents.size(), limit + 1)));
    }
    contents.truncate(length);
    return {.version = FileVersion{contents, stamp}, .error = 0};
}

} // namespace

FileReading readFile(const QString &path, qint64 limit)
{
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen())
        return failed(errno == ENXIO ? notARegularFile : errno);
    return readOpenFile(file.number(), limit);
}

FileReading readOpenFile(int descriptor, qint64 limit)
{
    constexpr int attempts = 3;
    for (int attempt = 1;; ++attempt) {
        Status status{};
        if (::fstat(descriptor, &status) != 0 || ::lseek(descriptor, 0, SEEK_SET) < 0)
            return failed(errno == ESPIPE ? notARegularFile : errno);
        if (!S_ISREG(status.st_mode))
            return failed(S_ISDIR(status.st_mode) ? EISDIR : notARegularFile);
        if (status.st_size > limit)
            return failed(EFBIG);
        const FileStamp stamp = stampOf(status);
        FileReading reading = readAll(descriptor, stamp, limit);
        // Half of one version and half of the next is none. The stamp is the one from before the reading, so
        // that a file that never rests differs from what was read.
        const bool isWhole = ::fstat(descriptor, &status) == 0 && stampOf(status) == stamp;
        if (!reading.version || isWhole || attempt == attempts)
            return reading;
    }
}

std::optional<FileStamp> fileStamp(const QString &path)
{
    Status status{};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return stampOf(status);
}

} // namespace randblatt
