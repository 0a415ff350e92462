#include "platform/notes/NotesIndex.h"

#include "platform/notes/FolderNames.h"
#include "platform/notes/NotesLibraryError.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcNotesIndex, "quillbar.notes")

constexpr auto noteSuffix = ".html";

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
    std::vector<Found> found = filesOnDisk();
    const QHash<QString, NoteEntry> known = std::exchange(m_notes, {});
    const QHash<QString, QString> knownPaths = std::exchange(m_idByPath, {});
    m_notes.reserve(static_cast<qsizetype>(found.size()));
    m_idByPath.reserve(static_cast<qsizetype>(found.size()));
    m_newestFirst.clear();

    // Known files keep their ids before new files are given any.
    const auto firstNew = std::partition(found.begin(), found.end(),
                                         [&](const Found &file) { return knownPaths.contains(file.path); });
    std::for_each(found.begin(), firstNew, [&](Found &file) {
        const NoteEntry &entry = *known.constFind(knownPaths.value(file.path));
        auto name = entry.signature == file.signature ? entry.name : std::nullopt;
        insert({entry.id, file.folder, file.path, file.signature, std::move(name)});
    });
    std::sort(firstNew, found.end(), [](const Found &a, const Found &b) { return a.path < b.path; });
    std::for_each(firstNew, found.end(), [this](Found &file) {
        insert({newID(file.path), file.folder, file.path, file.signature, std::nullopt});
    });
}

std::vector<NotesIndex::Found> NotesIndex::filesOnDisk()
{
    const Directory root = openDirectory(AT_FDCWD, QFile::encodeName(m_root));
    if (!root) {
        throw NotesLibraryError{
            NotesLibraryError::Reason::fileSystem,
            u"Der Notizenordner „%1“ ist nicht lesbar: %2."_s.arg(m_root, systemReason(errno))};
    }
    m_folders.clear();
    std::vector<Found> found;
    found.reserve(static_cast<std::size_t>(m_notes.size()) + 64);
    while (const dirent *entry = ::readdir(root.get())) {
        const QByteArray name(entry->d_name);
        if (!name.startsWith('.') && name != QFile::encodeName(m_hidden))
            scanFolder(::dirfd(root.get()), name, found);
    }
    // Two directories can have one name, where one of them was not made by this application.
    m_folders.removeDuplicates();
    return found;
}

void NotesIndex::scanFolder(int rootDescriptor, const QByteArray &directoryName, std::vector<Found> &found)
{
    const Directory directory = openDirectory(rootDescriptor, directoryName);
    if (!directory) {
        if (errno != ENOTDIR)
            qCWarning(lcNotesIndex, "Ordner „%s“ übergangen: %ls", directoryName.constData(),
                      qUtf16Printable(systemReason(errno)));
        return;
    }
    const QString folder = foldernames::folderName(QFile::decodeName(directoryName));
    const QString prefix = m_root + u'/' + QFile::decodeName(directoryName) + u'/';
    m_folders.append(folder);
    while (const dirent *entry = ::readdir(directory.get())) {
        const QByteArrayView name(entry->d_name);
        struct stat status
        {
        };
        if (name.startsWith('.') || !name.endsWith(noteSuffix) ||
            ::fstatat(::dirfd(directory.get()), entry->d_name, &status, 0) != 0 || !S_ISREG(status.st_mode))
            continue;
        found.push_back({prefix + QFile::decodeName(name.toByteArray()), folder, signature(status)});
    }
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
    if (m_newestFirst.empty()) {
        std::vector<std::pair<qint64, QString>> order;
        order.reserve(static_cast<std::size_t>(m_notes.size()));
        for (const NoteEntry &entry : m_notes)
            order.emplace_back(-entry.signature.modified, entry.id);
        std::sort(order.begin(), order.end());
        m_newestFirst.reserve(order.size());
        for (auto &[time, id] : order)
            m_newestFirst.push_back(std::move(id));
    }
    if (!folder)
        return m_newestFirst;
    std::vector<QString> result;
    std::copy_if(m_newestFirst.cbegin(), m_newestFirst.cend(), std::back_inserter(result),
                 [&](const QString &id) { return m_notes.constFind(id)->folder == *folder; });
    return result;
}

const NoteEntry *NotesIndex::find(const QString &id) const
{
    auto it = m_notes.constFind(id);
    // An id with its folder names the file, also when the short id has become free for it.
    if (it == m_notes.cend() && id.contains(u'/'))
        it = m_notes.constFind(m_idByPath.value(m_root + u'/' + id + QLatin1StringView(noteSuffix)));
    return it != m_notes.cend() ? &*it : nullptr;
}

const NoteEntry &NotesIndex::update(const QString &path, const QString &folder)
{
    const QString known = m_idByPath.value(path);
    const QString id = known.isEmpty() ? newID(path) : known;
    insert({id, folder, path, signatureOf(path).value_or(FileSignature{}), std::nullopt});
    m_newestFirst.clear();
    return *m_notes.constFind(id);
}

void NotesIndex::remove(const QString &id)
{
    m_idByPath.remove(m_notes.value(id).path);
    m_notes.remove(id);
    std::erase(m_newestFirst, id);
}

void NotesIndex::addFolder(const QString &folder)
{
    if (!m_folders.contains(folder))
        m_folders.append(folder);
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

QString NotesIndex::newID(const QString &path) const
{
    const QFileInfo file(path);
    const QString base = file.completeBaseName();
    return m_notes.contains(base) ? file.dir().dirName() + u'/' + base : base;
}

void NotesIndex::insert(NoteEntry entry)
{
    m_idByPath.insert(entry.path, entry.id);
    m_notes.insert(entry.id, std::move(entry));
}

} // namespace randblatt
