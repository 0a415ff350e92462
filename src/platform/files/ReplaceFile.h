#pragma once

#include "platform/files/FileVersion.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace randblatt {

/// How a replacement ended.
struct FileReplacement
{
    enum class Outcome {
        replaced, ///< the new contents are on the disk
        changed,  ///< another program was quicker: its version is there, and nothing was replaced
        failed,   ///< the system refused; the file is as it was
    };

    Outcome outcome = Outcome::failed;
    /// The operating system's error number, where it failed.
    int error = 0;
    /// A file beside the one at hand that has a version of another program's which had to make way, in a race
    /// of three. Empty as good as always.
    QString kept = {};
};

/// What a replaced file is to be like; where there was one, it keeps its owner, its permissions and its
/// extended attributes.
struct FileReplacementOptions
{
    /// The permissions of a file that was not there.
    unsigned newFileMode = 0600;
    /// The time of the last change in nanoseconds since 1970; the present, if none.
    std::optional<qint64> modified = {};
};

/// Puts `contents` in the place of the version `known` of the regular file at `path`, or, with none, where no
/// file is. If there is any other version, also one that another program is just writing, that one stays and
/// the outcome says so: read again, take account of it, and try again.
///
/// At each moment the path has one whole version, the old or the new one, also through a power failure. On
/// file systems that can't exchange two files there is an instant without any, in which the old version bears
/// a name beside it. Symbolic links are followed and stay. A file that may not be written to is not replaced.
[[nodiscard]] FileReplacement replaceFile(const QString &path, const std::optional<FileVersion> &known,
                                          const QByteArray &contents,
                                          const FileReplacementOptions &options = {});

/// Renames a file within its file system, never onto another one. Gives 0 or the system's error number, which
/// is EEXIST if the new name is taken.
[[nodiscard]] int moveFile(const QString &source, const QString &target);

/// Makes what happened to the names in a folder last through a power failure. Gives 0 or the system's error
/// number; file systems that have no such operation count as done.
[[nodiscard]] int syncFolder(const QString &folder);

} // namespace randblatt
