#include "platform/notes/SyncedFiles.h"

#include "platform/notes/NotesLibraryError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <array>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace randblatt::syncedfiles {

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void fail(const QString &what, const QString &path, const QString &reason)
{
    throw NotesLibraryError{NotesLibraryError::Reason::fileSystem,
                            u"%1 „%2“: %3."_s.arg(what, QDir::toNativeSeparators(path), reason)};
}

void syncFolder(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    // File systems that can't sync a folder say so; the rename itself has succeeded.
    ::fsync(descriptor);
    ::close(descriptor);
}

/// The times of access and change that the system wants to be told.
std::array<struct timespec, 2> fileTimes(qint64 modified)
{
    constexpr qint64 second = 1'000'000'000;
    return {timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT},
            timespec{.tv_sec = static_cast<time_t>(modified / second), .tv_nsec = modified % second}};
}

QString parentOf(const QString &path)
{
    return QFileInfo(path).absolutePath();
}

} // namespace

void write(const QString &path, const QByteArray &content, qint64 modified)
{
    QSaveFile file(path);
    errno = 0;
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
                           file.flush() && ::futimens(file.handle(), fileTimes(modified).data()) == 0 &&
                           ::fsync(file.handle()) == 0 && file.commit();
    if (!isWritten) {
        const int number = errno;
        file.cancelWriting();
        fail(u"Nicht geschrieben wurde die Datei"_s, path,
             number != 0 ? systemReason(number) : file.errorString());
    }
    syncFolder(parentOf(path));
}

QString move(const QString &source, const QString &folder)
{
    constexpr int attempts = 10000;
    const QFileInfo file(source);
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        const QString suffix = attempt == 1 ? QString() : u'-' + QString::number(attempt);
        QString target = folder + u'/' + file.completeBaseName() + suffix + u'.' + file.suffix();
        const QByteArray from = QFile::encodeName(source);
        const QByteArray to = QFile::encodeName(target);
        int result = ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE);
        // Some network file systems can't promise not to replace.
        if (result != 0 && errno == EINVAL && !QFileInfo::exists(target))
            result = ::rename(from.constData(), to.constData());
        if (result == 0) {
            syncFolder(folder);
            syncFolder(parentOf(source));
            return target;
        }
        if (errno != EEXIST && errno != EINVAL)
            break;
    }
    fail(u"Nicht verschoben wurde die Datei"_s, source, systemReason(errno));
}

QByteArray read(const QString &path, qint64 limit)
{
    // Without waiting for the other end of what turns out to be a pipe.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        fail(u"Nicht gelesen wurde die Datei"_s, path, systemReason(errno));
    QFile file;
    struct stat status
    {
    };
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        fail(u"Nicht gelesen wurde die Datei"_s, path, file.errorString());
    }
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        fail(u"Nicht gelesen wurde die Datei"_s, path, u"keine gewöhnliche Datei"_s);
    if (status.st_size > limit)
        fail(u"Nicht gelesen wurde die Datei"_s, path, u"zu groß"_s);
    QByteArray content = file.read(limit);
    if (file.error() != QFileDevice::NoError)
        fail(u"Nicht gelesen wurde die Datei"_s, path, file.errorString());
    return content;
}

void makeFolder(const QString &folder)
{
    const QString path = QDir::cleanPath(folder);
    if (QFileInfo(path).isDir())
        return;
    if (const QString parent = parentOf(path); parent != path)
        makeFolder(parent);
    if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) != 0 && !QFileInfo(path).isDir())
        fail(u"Nicht angelegt wurde der Ordner"_s, path, systemReason(errno == EEXIST ? ENOTDIR : errno));
    syncFolder(parentOf(path));
}

void remove(const QString &path)
{
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        fail(u"Nicht gelöscht wurde die Datei"_s, path, systemReason(errno));
    syncFolder(parentOf(path));
}

bool setModified(const QString &path, qint64 modified)
{
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), fileTimes(modified).data(), 0) == 0;
}

} // namespace randblatt::syncedfiles
