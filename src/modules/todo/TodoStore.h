#pragma once

#include "modules/todo/TodoItem.h"
#include "settings/Preferences.h"

#include <QObject>

#include <functional>
#include <optional>

namespace randblatt {

/// A task and its position in the store's items.
struct PlacedItem
{
    int position = 0;
    TodoItem item;
};

/// The user's tasks, kept as one JSON value in the preferences. Every operation that changes the tasks stores
/// the whole list before it announces the change. Positions in signals are those in items(). To be used on
/// the main thread.
class TodoStore : public QObject
{
    Q_OBJECT

public:
    /// Tells the present time in seconds since 2001-01-01 00:00:00 UTC.
    using Clock = std::function<double()>;

    /// Loads the stored tasks. `preferences` is borrowed and must outlive the store.
    explicit TodoStore(Preferences &preferences, QObject *parent = nullptr);
    TodoStore(Preferences &preferences, Clock clock, QObject *parent = nullptr);
    ~TodoStore() override;

    /// The key of the preferences under which the tasks are stored.
    [[nodiscard]] static QString key();

    /// All tasks in the order in which they were added; not the order in which they are shown.
    [[nodiscard]] const QList<TodoItem> &items() const { return m_items; }
    /// The tasks of one status as they are shown: by `order`, and by their places in items() where it is
    /// equal.
    [[nodiscard]] QList<TodoItem> items(TodoStatus status) const;
    /// The first task with the id; null where there is none. Valid until the next change.
    [[nodiscard]] const TodoItem *find(const QUuid &id) const;

    /// Replaces the tasks by the stored ones. A stored value that cannot be decoded changes nothing; the next
    /// save() keeps it under a dated key and overwrites it.
    void load();
    /// Stores the tasks; where an undecodable value is in the way that cannot be kept, later: with the next
    /// save, and at the end of the store.
    void save();

    /// Appends a task with the title, trimmed; a blank title does nothing.
    void add(const QString &title, TodoStatus status = TodoStatus::backlog);
    /// Gives the first task with the id the title, trimmed. A blank title or an unknown id does nothing.
    void rename(const QUuid &id, const QString &title);
    /// Sets the status of the first task with the id; an unknown id does nothing.
    void setStatus(const QUuid &id, TodoStatus status);
    /// The same with the status's stored string; an unknown string does nothing.
    void setStatusName(const QUuid &id, const QString &name);
    /// Finishes the task, or puts a finished one back into the backlog. An unknown id does nothing.
    void toggleDone(const QUuid &id);
    /// Deletes all finished tasks.
    void removeDone();
    /// Deletes every task with the id.
    void deleteItem(const QUuid &id);
    /// Puts tasks that were deleted back as they were. Each comes to its position, with the others back, or
    /// to the end where there are fewer tasks now. `items` is in ascending order of the positions.
    void restore(const QList<PlacedItem> &items);
    /// Gives the first task with the id a title that it had: as it is, neither trimmed nor refused.
    void restoreTitle(const QUuid &id, const QString &title);

Q_SIGNALS:
    /// load() replaced the tasks.
    void loaded();
    /// A task was appended.
    void itemAdded(int position);
    /// The title or the status of the task at the position changed.
    void itemChanged(int position);
    /// The tasks that were at these positions, in ascending order, are gone.
    void itemsRemoved(const QList<int> &positions);
    /// Tasks are back, at these positions in ascending order.
    void itemsRestored(const QList<int> &positions);

private:
    /// Takes up stored tasks that come to light late, and keeps those that were added meanwhile.
    void join(const PreferenceValue &stored);
    void replaceAll(const QList<TodoItem> &items);
    [[nodiscard]] int positionOf(const QUuid &id) const;
    [[nodiscard]] qint64 nextOrder() const;
    [[nodiscard]] bool keepUndecodable();
    void setTitle(const QUuid &id, const QString &title);
    void replace(int position, const TodoItem &item);
    template <typename Predicate>
    void removeIf(Predicate isRemoved);

    Preferences &m_preferences;
    Clock m_clock;
    QList<TodoItem> m_items;
    // The JSON of each task: with many of them, encoding all anew would take most of a save.
    QList<QByteArray> m_encoded;
    // What is stored in the tasks' place, and where it is to be kept.
    std::optional<PreferenceValue> m_undecodable;
    QString m_undecodableKey;
    bool m_hasUnsaved = false;
};

} // namespace randblatt
