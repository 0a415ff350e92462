#pragma once

#include "modules/notes/ASResult.h"
#include "modules/notes/FolderListModel.h"
#include "modules/notes/NoteListModel.h"
#include "modules/notes/NoteSummary.h"
#include "modules/notes/ScriptQueue.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>

namespace randblatt {

class ScriptRunner;

/// Lists, reads, creates, rewrites and deletes the notes of the notes application, which it reaches by
/// scripts alone.
///
/// To be used on the main thread. Scripts run one at a time, in the order of the calls, on a thread of their
/// own; completions come on the main thread in the same order, also when the service is gone by then.
class NotesService : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The notes module has it.")
    Q_PROPERTY(randblatt::NoteListModel *notes READ noteModel CONSTANT FINAL)
    Q_PROPERTY(randblatt::FolderListModel *folders READ folderModel CONSTANT FINAL)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged FINAL)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged FINAL)
    Q_PROPERTY(QString currentFolder READ currentFolderName WRITE setCurrentFolderName NOTIFY
                   currentFolderChanged FINAL)

public:
    using ResultCompletion = std::function<void(const ASResult &)>;
    using TextCompletion = std::function<void(const QString &)>;
    /// Takes a note's text, and whether it is one: else it is a message that stands in its place.
    using BodyCompletion = std::function<void(const QString &text, bool isLoaded)>;
    using WriteCompletion = std::function<void(bool)>;

    explicit NotesService(std::shared_ptr<ScriptRunner> runner, QObject *parent = nullptr);

    /// Runs one script. Completions are called on the main thread, but may be destroyed on the queue's.
    void run(const QString &source, const ResultCompletion &completion);
    /// Brings folders() up to date; a failure leaves them as they are and says nothing.
    Q_INVOKABLE void loadFolders();
    /// Brings notes() up to date with at most `limit` notes of the current folder.
    Q_INVOKABLE void loadNotes(int limit);
    /// Gives the text of a note; in place of one that can't be read, a text that says why.
    void loadBody(const QString &id, const BodyCompletion &completion);
    /// Gives the name of the folder that a note is in; an empty one where that is not known.
    void locateNote(const QString &id, const TextCompletion &completion);
    /// Creates a note in the default folder. As with the other changes, notes() is brought up to date after a
    /// success, and statusMessage() says why after a failure.
    void createNote(const QString &title, const QString &body, const WriteCompletion &completion);
    /// Replaces a note's name and text.
    void saveBody(const QString &id, const QString &title, const QString &body,
                  const WriteCompletion &completion);
    void deleteNote(const QString &id, const WriteCompletion &completion);
    /// Takes a deletion back: the note is in `folder` again, as locateNote() told before, or without one in
    /// the default folder. It has its old id, unless another note has come to have that.
    void restoreNote(const QString &id, const std::optional<QString> &folder,
                     const WriteCompletion &completion);

    /// In the application's order.
    [[nodiscard]] const QList<NoteSummary> &notes() const { return m_notes.rows(); }
    [[nodiscard]] NoteListModel *noteModel() { return &m_notes; }
    /// The names of the account's folders, in the application's order.
    [[nodiscard]] const QStringList &folders() const { return m_folders.rows(); }
    [[nodiscard]] FolderListModel *folderModel() { return &m_folders; }
    /// The last status or error for the view; empty where there is nothing to say.
    [[nodiscard]] QString statusMessage() const { return m_statusMessage; }
    /// Whether the list of notes is being loaded.
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    /// The folder whose notes are listed; none lists the notes of the whole account. In QML none is the empty
    /// string.
    [[nodiscard]] std::optional<QString> currentFolder() const { return m_currentFolder; }
    /// Takes effect with the next loadNotes().
    void setCurrentFolder(const std::optional<QString> &folder);

Q_SIGNALS:
    void notesChanged();
    void statusMessageChanged();
    void isLoadingChanged();
    void currentFolderChanged();

private:
    void showNotes(const ASResult &result, int limit);
    void write(const QString &source, const QString &failurePrefix, const WriteCompletion &completion);
    void setStatusMessage(const QString &message);
    void setLoading(bool loading);
    [[nodiscard]] QString currentFolderName() const { return m_currentFolder.value_or(QString()); }
    void setCurrentFolderName(const QString &name);

    std::shared_ptr<ScriptRunner> m_runner;
    NoteListModel m_notes;
    FolderListModel m_folders;
    QString m_statusMessage;
    bool m_isLoading = false;
    std::optional<QString> m_currentFolder;
    ScriptQueue m_queue;
};

} // namespace randblatt
