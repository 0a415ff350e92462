#pragma once

#include "modules/todo/TodoItem.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <tuple>

namespace randblatt {

class TodoStore;

/// Tasks of a store as rows: group after group, in each the tasks of its statuses as they are shown. Follows
/// the store with precise signals; only the store's loading resets it.
class TodoTaskModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The to-do module makes its models.")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum class Role { taskId = Qt::UserRole, title, done, status, group };
    /// The statuses of each group.
    using Groups = QList<QList<TodoStatus>>;

    /// `store` is borrowed and must outlive the model.
    TodoTaskModel(const TodoStore &store, Groups groups, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The row of the first task with the id; negative where it is in none.
    [[nodiscard]] Q_INVOKABLE int rowOfTask(const QUuid &id) const;

    [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }

Q_SIGNALS:
    void countChanged();

private:
    struct Row
    {
        TodoItem item;
        int group = -1;
        /// In the store's items.
        int position = 0;

        [[nodiscard]] auto key() const { return std::tuple(group, item.order, position); }
        friend bool operator<(const Row &a, const Row &b) { return a.key() < b.key(); }
    };

    /// The row for the store's item at `position`; its group is negative if it belongs to none.
    [[nodiscard]] Row rowFor(int position) const;
    [[nodiscard]] int rowOf(int position) const;
    void load();
    void insert(int position);
    void update(int position);
    void remove(const QList<int> &positions);
    void restore(const QList<int> &positions);
    void removeRowsBetween(int first, int last);

    const TodoStore &m_store;
    Groups m_groups;
    QList<Row> m_rows;
};

} // namespace randblatt
