#include "platform/notes/NotesIndex.h"

#include "platform/notes/FolderNames.h"
#include "platform/notes/NotesLibraryError.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <tuple>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView noteSuffix(".html");

struct CloseDirectory
{
    void operator()(DIR *directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

/// Opens a directory under `parent`, or from the working directory for AT_FDCWD.
Directory openDirectory(int parent, const QByteArray &path)
{
    const int descriptor = ::openat(parent, path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    DIR *directory = ::fdopendir(descriptor);
    if (directory == nullptr)
        ::close(descriptor);
    return Directory(directory);
}

/// The next of a directory's entries; null at the end, with the error number that ended it, else 0, in errno.
const dirent *nextEntry(DIR *directory)
{
    errno = 0;
    return ::readdir(directory);
}

FileSignature signature(const struct stat &status)
{
    return {.modified = static_cast<qint64>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec,
            .size = static_cast<qint64>(status.st_size),
            .inode = static_cast<quint64>(status.st_ino)};
}

} // namespace

NotesIndex::NotesIndex(QString root, QString hidden)
    : m_root(std::move(root))
    , m_hidden(std::move(hidden))
{
}

void NotesIndex::scan()
{
    const Directory root = openDirectory(AT_FDCWD, QFile::encodeName(m_root));
    const QString notRead = u"Der Notizordner lässt sich nicht lesen."_s;
    if (!root)
        throw NotesLibraryError::ofSystem(errno, notRead, m_root);
    ++m_scan;
    m_seen = 0;
    m_folders.clear();
    m_unread.clear();
    std::vector<Found> added;
    while (const dirent *entry = nextEntry(root.get())) {
        const QByteArray name(entry->d_name);
        const bool canBeFolder =
            entry->d_type == DT_DIR || entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN;
        if (canBeFolder && !name.startsWith('.') && name != QFile::encodeName(m_hidden))
            scanFolder(::dirfd(root.get()), name, added);
    }
    if (errno != 0)
        throw NotesLibraryError::ofSystem(errno, notRead, m_root);
    // Two directories can have one name, where one of them was not made by this application.
    m_folders.removeDuplicates();
    // First what is gone, so that a file that was moved gets its id back.
    if (m_seen != m_notes.size())
        removeUnseen();
    std::sort(added.begin(), added.end(), [](const Found &a, const Found &b) {
        return std::tie(a.directory, a.file) < std::tie(b.directory, b.file);
    });
    m_notes.reserve(m_notes.size() + added.size());
    for (const Found &found : added)
        insert(found);
}

void NotesIndex::scanFolder(int rootDescriptor, const QByteArray &directory, std::vector<Found> &added)
{
    const Directory opened = openDirectory(rootDescriptor, directory);
    // A file, a link that leads nowhere, or a folder that has just gone
    if (!opened && (errno == ENOTDIR || errno == ENOENT || errno == ELOOP))
        return;
    const int openError = opened ? 0 : errno;
    const QString folder = foldernames::folderName(QFile::decodeName(directory));
    m_folders.append(folder);
    const int error = opened ? scanFiles(opened.get(), directory, folder, added) : openError;
    if (error == 0)
        return;
    m_unread.insert(folder, error);
    const Files known = m_files.value(directory);
    for (NoteEntry *entry : known) {
        m_seen += entry->lastScan == m_scan ? 0 : 1;
        entry->lastScan = m_scan;
    }
}

int NotesIndex::scanFiles(DIR *opened, const QByteArray &directory, const QString &folder,
                          std::vector<Found> &added)
{
    int error = 0;
    const Files known = m_files.value(directory);
    while (const dirent *file = nextEntry(opened)) {
        const QByteArrayView name(file->d_name);
        if (name.startsWith('.') || !name.endsWith(noteSuffix))
            continue;
        struct stat status
        {
        };
        if (::fstatat(::dirfd(opened), file->d_name, &status, 0) != 0) {
            if (errno != ENOENT && errno != ELOOP)
                error = errno;
            continue;
        }
        if (!S_ISREG(status.st_mode))
            continue;
        NoteEntry *entry = known.value(QByteArray::fromRawData(name.data(), name.size()));
        if (entry == nullptr) {
            added.push_back({directory, name.toByteArray(), folder, signature(status)});
            continue;
        }
        ++m_seen;
        entry->lastScan = m_scan;
        if (entry->signature != signature(status)) {
            entry->signature = signature(status);
            entry->name.reset();
            m_newestFirst.clear();
        }
    }
    return errno != 0 ? errno : error;
}

void NotesIndex::requireRead(const QString &folder) const
{
    if (const int error = m_unread.value(folder); error != 0) {
        throw NotesLibraryError::ofSystem(error, u"Der Ordner „%1“ lässt sich nicht lesen."_s.arg(folder),
                                          m_root + u'/' + folder);
    }
}

void NotesIndex::requireAllRead() const
{
    for (const QString &folder : m_folders)
        requireRead(folder);
}

void NotesIndex::removeUnseen()
{
    for (Files &files : m_files)
        files.removeIf([this](Files::iterator file) { return file.value()->lastScan != m_scan; });
    std::erase_if(m_notes, [this](const auto &note) { return note.second.lastScan != m_scan; });
    m_newestFirst.clear();
}

NoteEntry &NotesIndex::insert(const Found &found)
{
    const QString base = QFile::decodeName(found.file.chopped(noteSuffix.size()));
    const QString id = m_notes.contains(base) ? QFile::decodeName(found.directory) + u'/' + base : base;
    NoteEntry &entry = m_notes[id];
    entry = {id, found.folder, path(found.directory, found.file), found.signature, std::nullopt, m_scan};
    m_files[found.directory].insert(found.file, &entry);
    m_newestFirst.clear();
    return entry;
}

QStringList NotesIndex::folders(const QString &first) const
{
    QStringList names = m_folders;
    names.removeAll(first);
    QCollator collator(QLocale(QLocale::German, QLocale::Germany));
    collator.setNumericMode(true);
    std::sort(names.begin(), names.end(), collator);
    names.prepend(first);
    return names;
}

std::vector<QString> NotesIndex::notes(const std::optional<QString> &folder) const
{
    if (folder)
        requireRead(*folder);
    else if (m_notes.empty())
        requireAllRead();
    if (m_newestFirst.empty()) {
        std::vector<std::pair<qint64, QString>> order;
        order.reserve(m_notes.size());
        for (const auto &[id, entry] : m_notes)
            order.emplace_back(-entry.signature.modified, id);
        std::sort(order.begin(), order.end());
        m_newestFirst.reserve(order.size());
        for (auto &[time, id] : order)
            m_newestFirst.push_back(std::move(id));
    }
    if (!folder)
        return m_newestFirst;
    std::vector<QString> result;
    std::copy_if(m_newestFirst.cbegin(), m_newestFirst.cend(), std::back_inserter(result),
                 [&](const QString &id) { return m_notes.at(id).folder == *folder; });
    return result;
}

const NoteEntry *NotesIndex::find(const QString &id) const
{
    const auto it = m_notes.find(id);
    if (it != m_notes.cend())
        return &it->second;
    // An id with its folder names the file, also when the short id has become free for it.
    const qsizetype slash = id.indexOf(u'/');
    return slash < 0 ? nullptr
                     : entryAt(QFile::encodeName(id.first(slash)),
                               QFile::encodeName(id.sliced(slash + 1)) + noteSuffix.data());
}

NoteEntry *NotesIndex::entryAt(const QByteArray &directory, const QByteArray &file) const
{
    const auto files = m_files.constFind(directory);
    return files != m_files.cend() ? files->value(file) : nullptr;
}

QString NotesIndex::path(const QByteArray &directory, const QByteArray &file) const
{
    return m_root + u'/' + QFile::decodeName(directory) + u'/' + QFile::decodeName(file);
}

const NoteEntry *NotesIndex::recheck(const QString &id)
{
    const NoteEntry *known = find(id);
    const auto present = known != nullptr ? signatureOf(known->path) : std::nullopt;
    if (!present)
        return nullptr;
    return *present == known->signature ? known : &update(known->path, known->folder);
}

const NoteEntry &NotesIndex::update(const QString &path, const QString &folder)
{
    const QFileInfo file(path);
    const Found found{QFile::encodeName(file.dir().dirName()), QFile::encodeName(file.fileName()), folder,
                      signatureOf(path).value_or(FileSignature{})};
    NoteEntry *known = entryAt(found.directory, found.file);
    if (known == nullptr)
        return insert(found);
    known->signature = found.signature;
    known->name.reset();
    m_newestFirst.clear();
    return *known;
}

void NotesIndex::remove(const QString &id)
{
    const auto it = m_notes.find(id);
    if (it == m_notes.end())
        return;
    const QFileInfo file(it->second.path);
    m_files[QFile::encodeName(file.dir().dirName())].remove(QFile::encodeName(file.fileName()));
    m_notes.erase(it);
    std::erase(m_newestFirst, id);
}

std::optional<FileSignature> NotesIndex::signatureOf(const QString &path)
{
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return signature(status);
}

} // namespace randblatt
