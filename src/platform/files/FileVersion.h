#pragma once

#include <QByteArray>
#include <QString>

#include <cerrno>
#include <optional>

namespace randblatt {

/// The error number for what is there, but is no regular file: a pipe, a socket, a device.
constexpr int notARegularFile = EMEDIUMTYPE;

/// Tells versions of a file apart without reading them. Times are nanoseconds since 1970.
struct FileStamp
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    /// Of the last change of the contents, as programs can set it.
    qint64 modified = 0;
    /// Of the last change of anything, which no program can set.
    qint64 changed = 0;

    friend bool operator==(const FileStamp &, const FileStamp &) = default;
};

/// A file as it was at one moment.
struct FileVersion
{
    QByteArray contents;
    FileStamp stamp;
};

/// A file's version, or why there is none.
struct FileReading
{
    std::optional<FileVersion> version;
    /// The operating system's error number; 0 with a version. ENOENT says that there is no file, EFBIG that
    /// it is larger than was asked for.
    int error = 0;
};

/// Reads a file of at most `limit` bytes. Does not wait for the other side of what is no regular file.
[[nodiscard]] FileReading readFile(const QString &path, qint64 limit);
/// The same of a file that is open; the descriptor stays open.
[[nodiscard]] FileReading readOpenFile(int descriptor, qint64 limit);

/// The stamp of the regular file at `path`; none where there is none, or it can't be looked at.
[[nodiscard]] std::optional<FileStamp> fileStamp(const QString &path);

} // namespace randblatt
