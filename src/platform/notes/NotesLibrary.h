#pragma once

#include "platform/files/FileVersion.h"
#include "platform/notes/NotesIndex.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace randblatt {

struct NoteDocument;

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
    /// The folder of a note.
    [[nodiscard]] QString folderOf(const QString &id);
    [[nodiscard]] QString name(const QString &id);
    /// HTML without the name, as it now is on the disk.
    [[nodiscard]] QString body(const QString &id);

    /// Makes a note and gives its id. A body that begins with a bold title gives the name, unless one is
    /// given, and is kept without it.
    QString createNote(const QString &folder, const std::optional<QString> &name, const QString &body);
    /// Replaces the body; one that begins with a bold title sets the name and is kept without it. A body with
    /// the same words leaves the file's as it is, whatever its markup. If the file changed since body() gave
    /// its text, that file's content is kept as a note of its own beside it; if it is another program's and
    /// was more than plain text, among the deleted notes.
    void setBody(const QString &id, const QString &body);
    /// Moves the note to the deleted ones.
    void deleteNote(const QString &id);
    /// Whether there is a deleted note that had this id.
    [[nodiscard]] bool isDeleted(const QString &id);
    /// Moves a note, or a deleted one, into a folder. It keeps its id, unless another note has that by now;
    /// gives the id. A note that comes back has its time of last change again while it is remembered.
    QString moveNote(const QString &id, const QString &folder);

private:
    /// What becomes of a file's former contents.
    enum class Former {
        goes,        ///< nothing
        isDeleted,   ///< they are kept among the deleted notes
        becomesNote, ///< they are kept as a note beside
    };
    struct Rewriting
    {
        QByteArray contents;
        Former former = Former::goes;
    };
    /// The version of a file whose text was last given out, or taken in: digests of file and plain text.
    struct Known
    {
        QByteArray file;
        QByteArray text;
    };
    struct Deleted
    {
        QString path;
        /// When it had been changed last.
        std::optional<qint64> modified;
    };

    [[nodiscard]] const NoteEntry &entry(const QString &id);
    [[nodiscard]] const NoteEntry *find(const QString &id);
    void scan();
    [[nodiscard]] QString folderPath(const QString &name) const;
    /// Makes a note's file what `change` makes of its contents, and gives that. Asks again if another program
    /// changed the file meanwhile.
    QByteArray rewrite(const NoteEntry &note, const std::function<Rewriting(const QByteArray &)> &change);
    [[nodiscard]] static Rewriting renaming(const QByteArray &file, const NoteDocument &document,
                                            const QString &name);
    /// Gives the path of the copy; empty if there is none.
    QString keep(const NoteEntry &note, const FileVersion &version, Former former);
    [[nodiscard]] QString madeDeletedFolder() const;
    [[nodiscard]] std::optional<Deleted> deletedNote(const QString &id) const;
    [[nodiscard]] qint64 now();
    void emptyDeleted();

    QString m_root;
    Clock m_clock;
    NotesIndex m_index;
    bool m_wasSeen = false;
    /// Whether the index is not known to be as the disk is.
    bool m_isStale = true;
    qint64 m_lastChange = 0;
    QDateTime m_lastEmptied;
    /// By id.
    QHash<QString, Known> m_known;
    QHash<QString, Deleted> m_deleted;
};

} // namespace randblatt
