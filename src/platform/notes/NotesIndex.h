#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <unordered_map>
#include <vector>

#include <dirent.h>

namespace randblatt {

/// Tells whether a file changed since it was last looked at.
struct FileSignature
{
    /// Time of the last change in nanoseconds since 1970.
    qint64 modified = 0;
    qint64 size = 0;
    quint64 inode = 0;

    friend bool operator==(const FileSignature &, const FileSignature &) = default;
};

/// What is known of a note's file without reading its text.
struct NoteEntry
{
    QString id;
    QString folder;
    QString path;
    FileSignature signature;
    /// The note's name once the file has been read for it, which changes nothing of what the entry says.
    mutable std::optional<QString> name;
    /// The scan that saw the file last.
    quint64 lastScan = 0;
};

/// Which notes lie in the folders of a library. A scan looks at every file, but reads none.
///
/// A note's id is its file's name without the ending, so it stays when the file is moved to another folder.
/// Where two folders have a file of that name, the later one's id says the folder as well.
class NotesIndex
{
public:
    /// `root` has one directory per folder; the one named `hidden` is left out.
    NotesIndex(QString root, QString hidden);

    /// Brings the index in line with the disk. Throws NotesLibraryError if the root can't be read. What is
    /// known of a folder that can't be read stays.
    void scan();

    /// The names of the folders: `first`, then the others by the alphabet.
    [[nodiscard]] QStringList folders(const QString &first) const;
    /// Ids by last change, newest first; of one folder, or of all. Throws NotesLibraryError where it is not
    /// known what there is: for a folder that could not be read, and for all if that leaves no note.
    [[nodiscard]] std::vector<QString> notes(const std::optional<QString> &folder) const;
    /// The note with this id, or null. Valid until the index changes.
    [[nodiscard]] const NoteEntry *find(const QString &id) const;

    /// Throws NotesLibraryError if there is a folder that could not be read.
    void requireAllRead() const;

    /// The note with this id, looked at again alone; null if its file is not where it was.
    const NoteEntry *recheck(const QString &id);

    /// Takes up a file that was written since the scan, under the id that it had, else under a new one.
    const NoteEntry &update(const QString &path, const QString &folder);
    void remove(const QString &id);

    /// What the file at `path` is like; none where there is no regular file.
    [[nodiscard]] static std::optional<FileSignature> signatureOf(const QString &path);

private:
    struct Found
    {
        QByteArray directory;
        QByteArray file;
        QString folder;
        FileSignature signature;
    };
    using Files = QHash<QByteArray, NoteEntry *>;

    void scanFolder(int rootDescriptor, const QByteArray &directory, std::vector<Found> &added);
    /// Gives 0 or the system's error number.
    [[nodiscard]] int scanFiles(DIR *opened, const QByteArray &directory, const QString &folder,
                                std::vector<Found> &added);
    void requireRead(const QString &folder) const;
    void removeUnseen();
    NoteEntry &insert(const Found &found);
    [[nodiscard]] NoteEntry *entryAt(const QByteArray &directory, const QByteArray &file) const;
    [[nodiscard]] QString path(const QByteArray &directory, const QByteArray &file) const;

    QString m_root;
    QString m_hidden;
    QStringList m_folders;
    /// The folders that could not be read, with the system's error numbers.
    QHash<QString, int> m_unread;
    /// By id. Entries stay where they are while others come and go.
    std::unordered_map<QString, NoteEntry> m_notes;
    /// By directory and file name. With many notes, looking them up is most of what a scan does.
    QHash<QByteArray, Files> m_files;
    quint64 m_scan = 0;
    std::size_t m_seen = 0;
    mutable std::vector<QString> m_newestFirst;
};

} // namespace randblatt
