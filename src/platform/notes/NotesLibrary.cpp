#include "platform/notes/NotesLibrary.h"

#include "platform/html/HtmlText.h"
#include "platform/notes/FolderNames.h"
#include "platform/notes/NoteDocument.h"
#include "platform/notes/NotesLibraryError.h"
#include "platform/notes/SyncedFiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcNotesLibrary, "quillbar.notes")

constexpr qint64 largestNote = 32LL * 1024 * 1024;
constexpr qint64 headSize = 2048;
constexpr qint64 daysUntilGone = 30;
constexpr qint64 secondsBetweenEmptying = 3600;
constexpr auto longestPause = std::chrono::milliseconds(500);
constexpr qint64 nanosecondsPerMillisecond = 1'000'000;

QByteArray digest(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha1);
}

[[noreturn]] void fail(NotesLibraryError::Reason reason, const QString &message)
{
    throw NotesLibraryError{reason, message};
}

QByteArray textDigest(const QString &html)
{
    return digest(htmlToPlainText(html).toUtf8());
}

void requireSize(const QByteArray &contents)
{
    if (contents.size() > largestNote)
        fail(NotesLibraryError::Reason::notPossible, u"Die Notiz ist zu groß."_s);
}

/// What a note is called whose name can't be read.
QString nameOfFile(const QString &path)
{
    return QFileInfo(path).completeBaseName();
}

/// None, if the file can't be read.
std::optional<QString> readName(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        if (const auto name = NoteDocument::nameFromHead(file.read(headSize)))
            return *name;
        file.close();
    }
    try {
        return NoteDocument::fromFile(syncedfiles::read(path, largestNote).contents).name;
    } catch (const NotesLibraryError &) {
        // Told where it happened. One file must not take the list of all the others away.
        return std::nullopt;
    }
}

} // namespace

NotesLibrary::NotesLibrary(const QString &root, Clock clock)
    : m_root(QDir::cleanPath(root))
    , m_clock(std::move(clock))
    , m_index(m_root, deletedFolder())
{
}

QString NotesLibrary::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/quillbar/notes"_L1;
}

QString NotesLibrary::defaultFolder()
{
    return u"Notizen"_s;
}

QString NotesLibrary::deletedFolder()
{
    return u"Zuletzt gelöscht"_s;
}

void NotesLibrary::refresh()
{
    struct stat status
    {
    };
    const bool isThere = ::stat(QFile::encodeName(m_root).constData(), &status) == 0;
    if (!isThere && (m_wasSeen || errno != ENOENT))
        throw NotesLibraryError::ofSystem(errno, u"Der Notizordner lässt sich nicht lesen."_s, m_root);
    // A library on a medium that can't be written is still there to be read.
    if (!isThere ||
        ::faccessat(AT_FDCWD, QFile::encodeName(m_root).constData(), W_OK | X_OK, AT_EACCESS) == 0) {
        try {
            syncedfiles::makeFolder(folderPath(defaultFolder()));
        } catch (const NotesLibraryError &) {
            if (!isThere)
                throw;
        }
    }
    m_wasSeen = true;
    m_isStale = true;
    const QDateTime now = m_clock();
    if (!m_lastEmptied.isValid() || m_lastEmptied.secsTo(now) >= secondsBetweenEmptying) {
        emptyDeleted();
        m_lastEmptied = now;
    }
}

void NotesLibrary::scan()
{
    if (m_isStale)
        m_index.scan();
    m_isStale = false;
}

QStringList NotesLibrary::folders()
{
    scan();
    return m_index.folders(defaultFolder());
}

std::vector<QString> NotesLibrary::notes(const std::optional<QString> &folder)
{
    scan();
    return m_index.notes(folder);
}

QString NotesLibrary::folderOf(const QString &id)
{
    return entry(id).folder;
}

QString NotesLibrary::name(const QString &id)
{
    const NoteEntry &note = entry(id);
    if (!note.name)
        note.name = readName(note.path);
    return note.name.value_or(nameOfFile(note.path));
}

QString NotesLibrary::body(const QString &id)
{
    const NoteEntry &note = entry(id);
    const QByteArray content = syncedfiles::read(note.path, largestNote).contents;
    QString body = NoteDocument::fromFile(content).body;
    m_known.insert(note.id, {digest(content), textDigest(body)});
    return body;
}

QString NotesLibrary::createNote(const QString &folder, const std::optional<QString> &name,
                                 const QString &body)
{
    NoteDocument note{{}, body};
    if (const auto titled = NoteDocument::fromTitledBody(body))
        note = *titled;
    else
        note.name = NoteDocument::firstLine(body);
    if (name)
        note.name = *name;
    const QString directory = folderPath(folder);
    if (folder == defaultFolder())
        syncedfiles::makeFolder(directory);
    const QString path = directory + u'/' + QUuid::createUuid().toString(QUuid::WithoutBraces) + ".html"_L1;
    const QByteArray contents = note.toFile();
    requireSize(contents);
    syncedfiles::make(path, contents, now());
    return m_index.update(path, folder).id;
}

void NotesLibrary::setBody(const QString &id, const QString &body)
{
    const NoteEntry note = entry(id);
    bool isSeen = true;
    const QByteArray contents = rewrite(note, [&](const QByteArray &present) -> Rewriting {
        const NoteDocument stored = NoteDocument::fromFile(present);
        NoteDocument wanted = NoteDocument::fromTitledBody(body).value_or(NoteDocument{stored.name, body});
        // What the list calls a note whose name could not be read is no new name for it.
        if (wanted.name == nameOfFile(note.path))
            wanted.name = stored.name;
        const auto known = m_known.constFind(note.id);
        const bool isForeign = known != m_known.cend() && known->file != digest(present);
        const bool isUnchanged =
            textDigest(wanted.body) == (isForeign ? known->text : textDigest(stored.body));
        isSeen = !isForeign || !isUnchanged;
        // Other programs' markup outlives a save that changes none of the words.
        if (isUnchanged)
            return renaming(present, stored, wanted.name);
        return {wanted.toFile(), isForeign                      ? Former::becomesNote
                                 : NoteDocument::isOwn(present) ? Former::goes
                                                                : Former::isDeleted};
    });
    if (isSeen)
        m_known.insert(note.id, {digest(contents), textDigest(NoteDocument::fromFile(contents).body)});
}

void NotesLibrary::deleteNote(const QString &id)
{
    const NoteEntry note = entry(id);
    const QString path = syncedfiles::move(note.path, madeDeletedFolder());
    m_deleted.insert(note.id, {path, note.signature.modified});
    m_index.remove(note.id);
    m_known.remove(note.id);
    // From now on the file's time says when the note was deleted.
    syncedfiles::setModified(path, now());
}

bool NotesLibrary::isDeleted(const QString &id)
{
    return find(id) == nullptr && deletedNote(id).has_value();
}

QString NotesLibrary::moveNote(const QString &id, const QString &folder)
{
    if (!folders().contains(folder)) {
        fail(NotesLibraryError::Reason::noSuchObject,
             u"Dieser Ordner ist nicht vorhanden: „%1“"_s.arg(folder));
    }
    const NoteEntry *present = find(id);
    if (present != nullptr && present->folder == folder)
        return present->id;
    const auto deleted = present == nullptr ? deletedNote(id) : std::nullopt;
    const QString path = syncedfiles::move(deleted ? deleted->path : entry(id).path, folderPath(folder));
    if (deleted && deleted->modified)
        syncedfiles::setModified(path, *deleted->modified);
    m_index.remove(id);
    m_deleted.remove(id);
    const QString moved = m_index.update(path, folder).id;
    if (moved != id && m_known.contains(id))
        m_known.insert(moved, m_known.take(id));
    return moved;
}

const NoteEntry *NotesLibrary::find(const QString &id)
{
    // Looking at one file again is enough as long as it is where it was.
    if (m_isStale) {
        if (const NoteEntry *known = m_index.recheck(id))
            return known;
        scan();
    }
    return m_index.find(id);
}

const NoteEntry &NotesLibrary::entry(const QString &id)
{
    const NoteEntry *note = find(id);
    if (note == nullptr) {
        m_index.requireAllRead();
        fail(NotesLibraryError::Reason::noSuchObject, u"Diese Notiz ist nicht vorhanden: „%1“"_s.arg(id));
    }
    return *note;
}

QString NotesLibrary::folderPath(const QString &name) const
{
    // A directory that another program made is called by its own name where that can't be decoded.
    const QString plain = m_root + u'/' + name;
    const QString encoded = m_root + u'/' + foldernames::directoryName(name);
    const bool isOwn = !name.contains(u'/') && !name.startsWith(u'.') &&
                       foldernames::folderName(name) == name && QFileInfo(plain).isDir();
    return isOwn ? plain : encoded;
}

QByteArray NotesLibrary::rewrite(const NoteEntry &note,
                                 const std::function<Rewriting(const QByteArray &)> &change)
{
    using namespace std::chrono_literals;
    // Another program can come between reading and writing, time and again.
    for (auto pause = 1ms; pause < longestPause; pause *= 2) {
        const FileVersion present = syncedfiles::read(note.path, largestNote);
        const Rewriting rewriting = change(present.contents);
        if (rewriting.contents == present.contents)
            return present.contents;
        requireSize(rewriting.contents);
        const QString copy = keep(note, present, rewriting.former);
        if (syncedfiles::replace(note.path, present, rewriting.contents, now())) {
            m_index.update(note.path, note.folder);
            if (rewriting.former == Former::becomesNote)
                m_index.update(copy, note.folder);
            return rewriting.contents;
        }
        if (!copy.isEmpty())
            syncedfiles::remove(copy);
        std::this_thread::sleep_for(pause);
    }
    throw NotesLibraryError::ofSystem(EBUSY, u"Die Notiz lässt sich nicht speichern."_s, note.path);
}

NotesLibrary::Rewriting NotesLibrary::renaming(const QByteArray &file, const NoteDocument &document,
                                               const QString &name)
{
    if (document.name == name)
        return {file, Former::goes};
    if (const auto renamed = NoteDocument::renamed(file, name))
        return {*renamed, Former::goes};
    return {NoteDocument{name, document.body}.toFile(), Former::isDeleted};
}

qint64 NotesLibrary::now()
{
    // Each change is later than the one before, also where the clock is coarse, so that the order shows it.
    m_lastChange = std::max(m_clock().toMSecsSinceEpoch() * nanosecondsPerMillisecond, m_lastChange + 1);
    return m_lastChange;
}

QString NotesLibrary::keep(const NoteEntry &note, const FileVersion &version, Former former)
{
    if (former == Former::goes)
        return {};
    const QString file = u'/' + QUuid::createUuid().toString(QUuid::WithoutBraces) + ".html"_L1;
    if (former == Former::isDeleted) {
        const QString path = madeDeletedFolder() + file;
        syncedfiles::make(path, version.contents, now());
        return path;
    }
    const QString path = QFileInfo(note.path).absolutePath() + file;
    const QString name = NoteDocument::fromFile(version.contents).name + u" (ältere Fassung)"_s;
    // It keeps its time, and so its place in the order behind the note that replaces it.
    syncedfiles::make(path, NoteDocument::renamed(version.contents, name).value_or(version.contents),
                      version.stamp.modified);
    return path;
}

QString NotesLibrary::madeDeletedFolder() const
{
    QString path = m_root + u'/' + deletedFolder();
    syncedfiles::makeFolder(path);
    return path;
}

std::optional<NotesLibrary::Deleted> NotesLibrary::deletedNote(const QString &id) const
{
    const auto known = m_deleted.constFind(id);
    if (known != m_deleted.cend() && QFileInfo::exists(known->path))
        return *known;
    const QString path =
        m_root + u'/' + deletedFolder() + u'/' + id.sliced(id.lastIndexOf(u'/') + 1) + ".html"_L1;
    return QFileInfo::exists(path) ? std::optional(Deleted{path, std::nullopt}) : std::nullopt;
}

void NotesLibrary::emptyDeleted()
{
    const QDateTime oldest = m_clock().addDays(-daysUntilGone);
    const QDir deleted(m_root + u'/' + deletedFolder());
    const QFileInfoList files = deleted.entryInfoList({u"*.html"_s}, QDir::Files | QDir::System);
    for (const QFileInfo &file : files) {
        // A file that was moved here by hand keeps its old time of change, but not its time of move.
        if (std::max(file.lastModified(), file.metadataChangeTime()) >= oldest)
            continue;
        try {
            syncedfiles::remove(file.absoluteFilePath());
        } catch (const NotesLibraryError &error) {
            qCWarning(lcNotesLibrary, "Gelöschte Notiz nicht entfernt: %ls", qUtf16Printable(error.message));
        }
    }
}

} // namespace randblatt
