#pragma once

#include <QByteArray>
#include <QString>

/// File operations whose results are on the disk when they return. They throw NotesLibraryError.
namespace randblatt::syncedfiles {

/// Replaces the file at `path` by one with this content, changed at `modified` in nanoseconds since 1970, or
/// makes it. Whatever happens, the file is there with its old or its new content.
void write(const QString &path, const QByteArray &content, qint64 modified);

/// Moves `source` into `folder` under its own name, or under a similar one if that is taken; never replaces a
/// file. Gives the new path.
QString move(const QString &source, const QString &folder);

/// The whole file. Files of more than `limit` bytes, and what is no regular file, are refused.
[[nodiscard]] QByteArray read(const QString &path, qint64 limit);

/// Makes `folder` and the folders above it, readable for the user alone, where they are missing.
void makeFolder(const QString &folder);

/// Removes the file, if it is there.
void remove(const QString &path);

/// Sets the time of the last change, in nanoseconds since 1970; whether the file system took it.
bool setModified(const QString &path, qint64 modified);

} // namespace randblatt::syncedfiles
