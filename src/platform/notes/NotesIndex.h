#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

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

    /// Brings the index in line with the disk. Throws NotesLibraryError if the root can't be read.
    void scan();

    /// The names of the folders: `first`, then the others by the alphabet.
    [[nodiscard]] QStringList folders(const QString &first) const;
    /// Ids by last change, newest first; of one folder, or of all.
    [[nodiscard]] std::vector<QString> notes(const std::optional<QString> &folder) const;
    /// The note with this id, or null. Valid until the index changes.
    [[nodiscard]] const NoteEntry *find(const QString &id) const;

    /// Takes up a file that was written since the scan, under the id that it had, else under a new one.
    const NoteEntry &update(const QString &path, const QString &folder);
    void remove(const QString &id);
    void addFolder(const QString &folder);

    /// What the file at `path` is like; none where there is no regular file.
    [[nodiscard]] static std::optional<FileSignature> signatureOf(const QString &path);

private:
    struct Found
    {
        QString path;
        QString folder;
        FileSignature signature;
    };

    [[nodiscard]] std::vector<Found> filesOnDisk();
    void scanFolder(int rootDescriptor, const QByteArray &directoryName, std::vector<Found> &found);
    [[nodiscard]] QString newID(const QString &path) const;
    void insert(NoteEntry entry);

    QString m_root;
    QString m_hidden;
    QStringList m_folders;
    QHash<QString, NoteEntry> m_notes;
    QHash<QString, QString> m_idByPath;
    mutable std::vector<QString> m_newestFirst;
};

} // namespace randblatt
