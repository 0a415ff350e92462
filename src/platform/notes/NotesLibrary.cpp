#include "platform/notes/NotesLibrary.h"

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
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcNotesLibrary, "quillbar.notes")

constexpr qint64 largestNote = 32LL * 1024 * 1024;
constexpr qint64 headSize = 2048;
constexpr qint64 daysUntilGone = 30;
constexpr qint64 secondsBetweenEmptying = 3600;
constexpr qint64 nanosecondsPerMillisecond = 1'000'000;

QByteArray digest(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha1);
}

[[noreturn]] void fail(NotesLibraryError::Reason reason, const QString &message)
{
    throw NotesLibraryError{reason, message};
}

QString readName(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        if (const auto name = NoteDocument::nameFromHead(file.read(headSize)))
            return *name;
        file.close();
    }
    try {
        return NoteDocument::fromFile(syncedfiles::read(path, largestNote)).name;
    } catch (const NotesLibraryError &error) {
        // One file that can't be read must not take the list of all the others away.
        qCWarning(lcNotesLibrary, "Name einer Notiz nicht gelesen: %ls", qUtf16Printable(error.message));
        return QFileInfo(path).completeBaseName();
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
    if (m_wasSeen && !QFileInfo::exists(m_root)) {
        fail(NotesLibraryError::Reason::fileSystem,
             u"Der Notizenordner „%1“ ist nicht mehr da."_s.arg(m_root));
    }
    if (!QFileInfo(folderPath(defaultFolder())).isDir()) {
        try {
            syncedfiles::makeFolder(folderPath(defaultFolder()));
        } catch (const NotesLibraryError &) {
            // A library on a medium that can't be written is still there to be read.
            if (!QFileInfo(m_root).isDir())
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

bool NotesLibrary::contains(const QString &id)
{
    return find(id) != nullptr;
}

QString NotesLibrary::folderOf(const QString &id)
{
    return entry(id).folder;
}

QDateTime NotesLibrary::modified(const QString &id)
{
    return QDateTime::fromMSecsSinceEpoch(entry(id).signature.modified / nanosecondsPerMillisecond);
}

QString NotesLibrary::name(const QString &id)
{
    const NoteEntry &note = entry(id);
    if (!note.name)
        note.name = readName(note.path);
    return *note.name;
}

QString NotesLibrary::body(const QString &id)
{
    const NoteEntry &note = entry(id);
    const QByteArray content = syncedfiles::read(note.path, largestNote);
    m_lastRead.insert(note.id, digest(content));
    return NoteDocument::fromFile(content).body;
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
    write(path, folder, note.toFile(), now());
    return m_index.update(path, folder).id;
}

void NotesLibrary::setBody(const QString &id, const QString &body)
{
    const NoteEntry note = entry(id);
    const QByteArray present = syncedfiles::read(note.path, largestNote);
    NoteDocument changed = NoteDocument::fromFile(present);
    if (const auto titled = NoteDocument::fromTitledBody(body))
        changed = *titled;
    else
        changed.body = body;
    const QByteArray content = changed.toFile();
    if (content == present) {
        m_lastRead.insert(note.id, digest(content));
        return;
    }
    const auto read = m_lastRead.constFind(note.id);
    if (read != m_lastRead.cend() && *read != digest(present))
        keepOlderText(note, present);
    write(note.path, note.folder, content, now());
    m_lastRead.insert(note.id, digest(content));
}

void NotesLibrary::setName(const QString &id, const QString &name)
{
    const NoteEntry note = entry(id);
    const QByteArray present = syncedfiles::read(note.path, largestNote);
    const QByteArray content = NoteDocument::renamed(present, name);
    write(note.path, note.folder, content, now());
    // The text is the one that was read, so saving it later is no conflict with this.
    const auto read = m_lastRead.find(note.id);
    if (read != m_lastRead.end() && *read == digest(present))
        *read = digest(content);
}

void NotesLibrary::deleteNote(const QString &id)
{
    const NoteEntry note = entry(id);
    const QString deleted = m_root + u'/' + deletedFolder();
    syncedfiles::makeFolder(deleted);
    const QString path = syncedfiles::move(note.path, deleted);
    m_index.remove(note.id);
    m_lastRead.remove(note.id);
    // From now on the file's time says when the note was deleted.
    syncedfiles::setModified(path, now());
}

void NotesLibrary::createFolder(const QString &name)
{
    const QString directory = foldernames::directoryName(name);
    if (directory.isEmpty() || name == deletedFolder())
        fail(NotesLibraryError::Reason::notPossible, u"Einen Ordner „%1“ kann es nicht geben."_s.arg(name));
    if (folders().contains(name))
        fail(NotesLibraryError::Reason::notPossible, u"Der Ordner „%1“ ist schon vorhanden."_s.arg(name));
    syncedfiles::makeFolder(m_root + u'/' + directory);
    m_index.addFolder(name);
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
        fail(NotesLibraryError::Reason::noSuchObject,
             u"Eine Notiz mit der Kennung „%1“ ist nicht vorhanden."_s.arg(id));
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

void NotesLibrary::write(const QString &path, const QString &folder, const QByteArray &content,
                         qint64 modified)
{
    if (content.size() > largestNote)
        fail(NotesLibraryError::Reason::notPossible, u"Die Notiz ist zu groß."_s);
    syncedfiles::write(path, content, modified);
    m_index.update(path, folder);
}

qint64 NotesLibrary::now()
{
    // Each change is later than the one before, also where the clock is coarse, so that the order shows it.
    m_lastChange = std::max(m_clock().toMSecsSinceEpoch() * nanosecondsPerMillisecond, m_lastChange + 1);
    return m_lastChange;
}

void NotesLibrary::keepOlderText(const NoteEntry &note, const QByteArray &content)
{
    const QFileInfo file(note.path);
    const QString path =
        file.absolutePath() + u'/' + QUuid::createUuid().toString(QUuid::WithoutBraces) + ".html"_L1;
    const QString name = NoteDocument::fromFile(content).name + u" (ältere Fassung)"_s;
    // It keeps its time, and so its place in the order behind the note that replaces it.
    const auto signature = NotesIndex::signatureOf(note.path);
    write(path, note.folder, NoteDocument::renamed(content, name), signature ? signature->modified : now());
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
