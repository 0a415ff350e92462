#include "modules/todo/TodoTaskModel.h"

#include "modules/todo/TodoStore.h"

#include <algorithm>
#include <utility>

namespace randblatt {

TodoTaskModel::TodoTaskModel(const TodoStore &store, Groups groups, QObject *parent)
    : QAbstractListModel(parent)
    , m_store(store)
    , m_groups(std::move(groups))
{
    load();
    connect(&store, &TodoStore::loaded, this, &TodoTaskModel::load);
    connect(&store, &TodoStore::itemAdded, this, &TodoTaskModel::insert);
    connect(&store, &TodoStore::itemChanged, this, &TodoTaskModel::update);
    connect(&store, &TodoStore::itemsRemoved, this, &TodoTaskModel::remove);
    connect(&store, &TodoStore::itemsRestored, this, &TodoTaskModel::restore);
}

int TodoTaskModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant TodoTaskModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows.at(index.row());
    switch (static_cast<Role>(role)) {
    case Role::taskId:
        return row.item.id;
    case Role::title:
        return row.item.title;
    case Role::done:
        return row.item.status == TodoStatus::done;
    case Role::status:
        return rawString(row.item.status);
    case Role::group:
        return row.group;
    }
    return {};
}

QHash<int, QByteArray> TodoTaskModel::roleNames() const
{
    return {
        {static_cast<int>(Role::taskId), "taskId"}, {static_cast<int>(Role::title), "title"},
        {static_cast<int>(Role::done), "done"},     {static_cast<int>(Role::status), "status"},
        {static_cast<int>(Role::group), "group"},
    };
}

int TodoTaskModel::rowOfTask(const QUuid &id) const
{
    const auto it =
        std::find_if(m_rows.cbegin(), m_rows.cend(), [&](const Row &row) { return row.item.id == id; });
    return it == m_rows.cend() ? -1 : static_cast<int>(it - m_rows.cbegin());
}

TodoTaskModel::Row TodoTaskModel::rowFor(int position) const
{
    const TodoItem &item = m_store.items().at(position);
    const auto it = std::find_if(m_groups.cbegin(), m_groups.cend(), [&](const QList<TodoStatus> &statuses) {
        return statuses.contains(item.status);
    });
    const int group = it == m_groups.cend() ? -1 : static_cast<int>(it - m_groups.cbegin());
    return {item, group, position};
}

int TodoTaskModel::rowOf(int position) const
{
    const auto it = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                 [&](const Row &row) { return row.position == position; });
    return it == m_rows.cend() ? -1 : static_cast<int>(it - m_rows.cbegin());
}

void TodoTaskModel::load()
{
    beginResetModel();
    m_rows.clear();
    for (int position = 0; position < m_store.items().size(); ++position) {
        const Row row = rowFor(position);
        if (row.group >= 0)
            m_rows.append(row);
    }
    std::sort(m_rows.begin(), m_rows.end());
    endResetModel();
    Q_EMIT countChanged();
}

void TodoTaskModel::insert(int position)
{
    const Row row = rowFor(position);
    if (row.group < 0)
        return;
    const auto place = std::lower_bound(m_rows.cbegin(), m_rows.cend(), row) - m_rows.cbegin();
    beginInsertRows({}, static_cast<int>(place), static_cast<int>(place));
    m_rows.insert(place, row);
    endInsertRows();
    Q_EMIT countChanged();
}

void TodoTaskModel::update(int position)
{
    const int from = rowOf(position);
    if (from < 0) {
        insert(position);
        return;
    }
    const Row row = rowFor(position);
    if (row.group < 0) {
        removeRowsBetween(from, from);
        Q_EMIT countChanged();
        return;
    }
    const auto isBefore = [&](const Row &other) { return other.position != position && other < row; };
    const auto to = static_cast<int>(std::count_if(m_rows.cbegin(), m_rows.cend(), isBefore));
    if (to != from) {
        beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
        m_rows.move(from, to);
        // Before the move is announced: who groups the rows reads the group while it moves them.
        m_rows[to] = row;
        endMoveRows();
    }
    m_rows[to] = row;
    Q_EMIT dataChanged(index(to), index(to));
}

void TodoTaskModel::remove(const QList<int> &positions)
{
    const int before = count();
    const auto isRemoved = [&](int row) {
        return std::binary_search(positions.cbegin(), positions.cend(), m_rows.at(row).position);
    };
    // From the end, so that the rows still to be looked at stay where they are.
    for (int last = count() - 1; last >= 0; --last) {
        if (!isRemoved(last))
            continue;
        int first = last;
        while (first > 0 && isRemoved(first - 1))
            --first;
        removeRowsBetween(first, last);
        last = first;
    }
    for (Row &row : m_rows) {
        const auto next = std::lower_bound(positions.cbegin(), positions.cend(), row.position);
        row.position -= static_cast<int>(next - positions.cbegin());
    }
    if (count() != before)
        Q_EMIT countChanged();
}

void TodoTaskModel::restore(const QList<int> &positions)
{
    // By so many places a task has moved on: as many as are back before it.
    QList<int> places;
    for (const int position : positions)
        places.append(position - static_cast<int>(places.size()));
    for (Row &row : m_rows)
        row.position += static_cast<int>(std::upper_bound(places.cbegin(), places.cend(), row.position) -
                                         places.cbegin());
    QList<Row> restored;
    for (const int position : positions) {
        const Row row = rowFor(position);
        if (row.group >= 0)
            restored.append(row);
    }
    std::sort(restored.begin(), restored.end());
    // Those that come to lie side by side, at once.
    for (auto first = restored.cbegin(); first != restored.cend();) {
        const auto place = std::lower_bound(m_rows.cbegin(), m_rows.cend(), *first) - m_rows.cbegin();
        const auto last = place == m_rows.size() ? restored.cend()
                                                 : std::lower_bound(first, restored.cend(), m_rows.at(place));
        beginInsertRows({}, static_cast<int>(place), static_cast<int>(place + (last - first)) - 1);
        m_rows.insert(place, last - first, Row());
        std::copy(first, last, m_rows.begin() + place);
        endInsertRows();
        first = last;
    }
    if (!restored.isEmpty())
        Q_EMIT countChanged();
}

void TodoTaskModel::removeRowsBetween(int first, int last)
{
    beginRemoveRows({}, first, last);
    m_rows.remove(first, last - first + 1);
    endRemoveRows();
}

} // namespace randblatt
