#pragma once

#include "platform/files/FileVersion.h"

#include <QByteArray>
#include <QString>

/// Operations on the files of notes whose results are on the disk when they return. They throw
/// NotesLibraryError.
namespace randblatt::syncedfiles {

/// The note's file. Files of more than `limit` bytes, and what is no regular file, are refused.
[[nodiscard]] FileVersion read(const QString &path, qint64 limit);

/// Makes the file `path`, changed at `modified` in nanoseconds since 1970. There must be none.
void make(const QString &path, const QByteArray &content, qint64 modified);

/// Puts `content` in the place of the version `known`, changed at `modified`. False if that is no longer the
/// version that is there, or another program is just writing one; then nothing happened.
[[nodiscard]] bool replace(const QString &path, const FileVersion &known, const QByteArray &content,
                           qint64 modified);

/// Moves `source` into `folder` under its own name, or under a similar one if that is taken; never replaces a
/// file. Gives the new path.
QString move(const QString &source, const QString &folder);

/// Makes `folder` and the folders above it, readable for the user alone, where they are missing.
void makeFolder(const QString &folder);

/// Removes the file, if it is there.
void remove(const QString &path);

/// Sets the time of the last change, in nanoseconds since 1970; whether the file system took it.
bool setModified(const QString &path, qint64 modified);

} // namespace randblatt::syncedfiles
