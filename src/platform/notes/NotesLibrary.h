#pragma once

#include "platform/notes/NotesIndex.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace randblatt {

/// The user's notes on disk: a directory per folder, an HTML file per note. Other programs may add, change
/// and remove files at any time.
///
/// Every change is on the disk when its operation returns. Operations throw NotesLibraryError. To be used on
/// one thread at a time.
class NotesLibrary
{
public:
    using Clock = std::function<QDateTime()>;

    /// The library in the directory `root`, which is made at the first refresh(). `clock` gives the present.
    explicit NotesLibrary(
        const QString &root, Clock clock = [] { return QDateTime::currentDateTime(); });

    /// `notes` in the application's folder under XDG_DATA_HOME (XDG Base Directory Specification).
    [[nodiscard]] static QString defaultPath();
    /// The folder that always exists, and that new notes are put into.
    [[nodiscard]] static QString defaultFolder();
    /// Where deleted notes are kept for 30 days; no folder of the library.
    [[nodiscard]] static QString deletedFolder();

    /// Takes in what other programs have changed; the other operations see the library as of then. A root
    /// that has vanished is an error and is not made again: its volume may be away for a while.
    void refresh();

    /// The default folder, then the others by the alphabet.
    [[nodiscard]] QStringList folders();
    /// Ids of the notes of one folder, or of all, by last change, newest first.
    [[nodiscard]] std::vector<QString> notes(const std::optional<QString> &folder = std::nullopt);
    [[nodiscard]] bool contains(const QString &id);
    /// The folder of a note.
    [[nodiscard]] QString folderOf(const QString &id);
    [[nodiscard]] QDateTime modified(const QString &id);
    [[nodiscard]] QString name(const QString &id);
    /// HTML without the name, as it now is on the disk.
    [[nodiscard]] QString body(const QString &id);

    /// Makes a note and gives its id. A body that begins with a bold title gives the name, unless one is
    /// given, and is kept without it.
    QString createNote(const QString &folder, const std::optional<QString> &name, const QString &body);
    /// Replaces the body; one that begins with a bold title sets the name and is kept without it. If the file
    /// changed since body() gave its text, that file's content is kept as a note of its own beside it.
    void setBody(const QString &id, const QString &body);
    void setName(const QString &id, const QString &name);
    /// Moves the note to the deleted ones.
    void deleteNote(const QString &id);
    /// Makes an empty folder.
    void createFolder(const QString &name);

private:
    [[nodiscard]] const NoteEntry &entry(const QString &id);
    [[nodiscard]] const NoteEntry *find(const QString &id);
    void scan();
    [[nodiscard]] QString folderPath(const QString &name) const;
    void write(const QString &path, const QString &folder, const QByteArray &content, qint64 modified);
    [[nodiscard]] qint64 now();
    void keepOlderText(const NoteEntry &note, const QByteArray &content);
    void emptyDeleted();

    QString m_root;
    Clock m_clock;
    NotesIndex m_index;
    bool m_wasSeen = false;
    /// Whether the index is not known to be as the disk is.
    bool m_isStale = true;
    qint64 m_lastChange = 0;
    QDateTime m_lastEmptied;
    /// Digests of the files that body() gave, by id.
    QHash<QString, QByteArray> m_lastRead;
};

} // namespace randblatt
