#pragma once

#include "modules/todo/TodoStore.h"
#include "settings/Draft.h"

#include <QUuid>
#include <QVariant>

#include <functional>

namespace randblatt {

class UndoHistory;

/// What a person does with the tasks: operations of the store, each with a way back, and what is being typed.
/// Views change tasks through this alone.
///
/// A way back leaves alone what has changed since: a title or a status goes back only where it is still the
/// one that was given. To be used on the main thread.
class TodoActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The to-do module makes its actions.")
    Q_PROPERTY(randblatt::Draft *newTitle READ newTitle CONSTANT FINAL)
    Q_PROPERTY(QVariant editedTask READ editedTaskValue NOTIFY editedTaskChanged FINAL)
    Q_PROPERTY(QString editText READ editText WRITE setEditText NOTIFY editTextChanged FINAL)

public:
    /// Takes up the drafts of an earlier run. All are borrowed; store and preferences must outlive the
    /// object, the history its last use.
    TodoActions(TodoStore &store, UndoHistory &history, Preferences &preferences, QObject *parent = nullptr);

    /// Makes a task of the draft for a new one, and empties it.
    Q_INVOKABLE void add();
    /// Makes a task of each title, and offers to take them back. False if there are none, or too many for a
    /// person to want them all.
    bool addAll(const QStringList &titles);
    /// Finishes the task, or puts a finished one back into the backlog.
    Q_INVOKABLE void toggleDone(const QUuid &id);
    /// Sets the status with the stored string.
    Q_INVOKABLE void setStatusName(const QUuid &id, const QString &name);
    Q_INVOKABLE void deleteTask(const QUuid &id);
    /// Deletes all finished tasks.
    Q_INVOKABLE void removeDone();

    /// Opens the title of the task for editing. Another one that is open is committed before.
    Q_INVOKABLE void beginEdit(const QUuid &id);
    /// Renames the task that is being edited to the text; a blank text leaves its title.
    Q_INVOKABLE void commitEdit();
    /// Ends the editing without renaming. A text that was changed can be taken up again.
    Q_INVOKABLE void dropEdit();

    /// The draft for a new task.
    [[nodiscard]] Draft *newTitle() { return &m_newTitle; }
    /// The task whose title is being edited; null while none is.
    [[nodiscard]] QUuid editedTask() const;
    /// The same for QML, which knows no such type.
    [[nodiscard]] QVariant editedTaskValue() const { return editedTask(); }
    [[nodiscard]] QString editText() const;
    /// Does nothing while nothing is being edited.
    void setEditText(const QString &text);

Q_SIGNALS:
    void editedTaskChanged();
    void editTextChanged();
    /// A way back was taken that changed this task, or went on with editing it: it is to be seen.
    void returned(const QUuid &id);

private:
    void changeStatus(const QUuid &id, const std::function<void()> &change);
    void rename(const QUuid &id, const QString &title);
    template <typename Predicate>
    [[nodiscard]] QList<PlacedItem> placed(Predicate predicate) const;
    void commitEditOf(const QList<PlacedItem> &items);
    void offerRestoring(const QString &message, const QList<PlacedItem> &items);
    void offer(const QString &message, const std::function<void()> &undo);
    void resumeEdit(const QUuid &id, const QString &text);
    void rescueEdit();
    void keepText(const QString &text);
    void setEdit(const QUuid &id, const QString &text);

    TodoStore &m_store;
    UndoHistory &m_history;
    Draft m_newTitle;
    // The task's id and the text.
    Draft m_edit;
};

} // namespace randblatt
