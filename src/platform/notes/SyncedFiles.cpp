#include "platform/notes/SyncedFiles.h"

#include "platform/files/ReplaceFile.h"
#include "platform/notes/NotesLibraryError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace randblatt::syncedfiles {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcSyncedFiles, "quillbar.notes")

constexpr unsigned newFileMode = 0600;

QString notSaved()
{
    return u"Die Notiz lässt sich nicht speichern."_s;
}

QString parentOf(const QString &path)
{
    return QFileInfo(path).absolutePath();
}

void sync(const QString &folder, const QString &sentence)
{
    if (const int error = syncFolder(folder); error != 0)
        throw NotesLibraryError::ofSystem(error, sentence, folder);
}

/// Whether it was replaced; not, if there is another version.
bool replaced(const QString &path, const FileReplacement &replacement)
{
    if (!replacement.kept.isEmpty()) {
        qCWarning(lcSyncedFiles, "Fassung eines anderen Programms aufgehoben: %ls",
                  qUtf16Printable(replacement.kept));
    }
    if (replacement.outcome == FileReplacement::Outcome::failed)
        throw NotesLibraryError::ofSystem(replacement.error, notSaved(), path);
    return replacement.outcome == FileReplacement::Outcome::replaced;
}

} // namespace

FileVersion read(const QString &path, qint64 limit)
{
    FileReading reading = readFile(path, limit);
    if (!reading.version)
        throw NotesLibraryError::ofSystem(reading.error, u"Die Notiz lässt sich nicht lesen."_s, path);
    return *std::move(reading.version);
}

void make(const QString &path, const QByteArray &content, qint64 modified)
{
    if (!replaced(path, replaceFile(path, std::nullopt, content,
                                    {.newFileMode = newFileMode, .modified = modified})))
        throw NotesLibraryError::ofSystem(EEXIST, notSaved(), path);
}

bool replace(const QString &path, const FileVersion &known, const QByteArray &content, qint64 modified)
{
    return replaced(path,
                    replaceFile(path, known, content, {.newFileMode = newFileMode, .modified = modified}));
}

QString move(const QString &source, const QString &folder)
{
    constexpr int attempts = 10000;
    const QString notMoved = u"Die Notiz lässt sich nicht verschieben."_s;
    const QFileInfo file(source);
    int error = EEXIST;
    for (int attempt = 1; error == EEXIST && attempt <= attempts; ++attempt) {
        const QString suffix = attempt == 1 ? QString() : u'-' + QString::number(attempt);
        const QString target = folder + u'/' + file.completeBaseName() + suffix + u'.' + file.suffix();
        error = moveFile(source, target);
        if (error == 0) {
            sync(folder, notMoved);
            sync(parentOf(source), notMoved);
            return target;
        }
    }
    throw NotesLibraryError::ofSystem(error, notMoved, source);
}

void makeFolder(const QString &folder)
{
    const QString path = QDir::cleanPath(folder);
    if (QFileInfo(path).isDir())
        return;
    if (const QString parent = parentOf(path); parent != path)
        makeFolder(parent);
    const QString notMade = u"Der Ordner „%1“ lässt sich nicht anlegen."_s.arg(QFileInfo(path).fileName());
    const int error = ::mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0 ? 0 : errno;
    if (error != 0 && !QFileInfo(path).isDir())
        throw NotesLibraryError::ofSystem(error == EEXIST ? ENOTDIR : error, notMade, path);
    sync(parentOf(path), notMade);
}

void remove(const QString &path)
{
    const QString notRemoved = u"Die Notiz lässt sich nicht entfernen."_s;
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        throw NotesLibraryError::ofSystem(errno, notRemoved, path);
    sync(parentOf(path), notRemoved);
}

bool setModified(const QString &path, qint64 modified)
{
    constexpr qint64 second = 1'000'000'000;
    const std::array<timespec, 2> times{
        timespec{.tv_sec = 0, .tv_nsec = UTIME_OMIT},
        timespec{.tv_sec = static_cast<time_t>(modified / second), .tv_nsec = modified % second}};
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times.data(), 0) == 0;
}

} // namespace randblatt::syncedfiles
