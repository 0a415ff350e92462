#pragma once

#include <QAbstractListModel>
#include <QList>

#include <algorithm>
#include <utility>

namespace randblatt {

/// A list model whose rows are replaced as a whole, and which announces that as the moves, insertions,
/// removals and changes that lead from one list to the other.
///
/// A row is told from others by its key; where several rows have one key, they are taken in their order.
template <typename Row>
class ReplaceableListModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] const QList<Row> &rows() const { return m_rows; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }

    /// Makes the model's rows these; whether that changed anything.
    bool replace(const QList<Row> &rows)
    {
        if (rows == m_rows)
            return false;
        removeAllBut(rows);
        for (qsizetype i = 0; i < rows.size(); ++i)
            place(rows.at(i), i);
        // What is left over are further rows of keys that have become fewer.
        if (m_rows.size() > rows.size())
            removeFrom(rows.size(), m_rows.size());
        return true;
    }

protected:
    [[nodiscard]] virtual QString key(const Row &row) const = 0;

private:
    [[nodiscard]] qsizetype find(const QList<Row> &rows, const QString &wanted, qsizetype from = 0) const
    {
        const auto it = std::find_if(rows.cbegin() + from, rows.cend(),
                                     [&](const Row &row) { return key(row) == wanted; });
        return it != rows.cend() ? it - rows.cbegin() : -1;
    }

    void removeFrom(qsizetype first, qsizetype end)
    {
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end - 1));
        m_rows.remove(first, end - first);
        endRemoveRows();
    }

    void removeAllBut(const QList<Row> &rows)
    {
        for (qsizetype i = m_rows.size() - 1; i >= 0; --i) {
            if (find(rows, key(m_rows.at(i))) < 0)
                removeFrom(i, i + 1);
        }
    }

    void place(const Row &row, qsizetype position)
    {
        const qsizetype present = find(m_rows, key(row), position);
        const auto target = static_cast<int>(position);
        if (present < 0) {
            beginInsertRows({}, target, target);
            m_rows.insert(position, row);
            endInsertRows();
            return;
        }
        if (present > position) {
            beginMoveRows({}, static_cast<int>(present), static_cast<int>(present), {}, target);
            m_rows.move(present, position);
            endMoveRows();
        }
        if (m_rows.at(position) != row) {
            m_rows[position] = row;
            Q_EMIT dataChanged(index(target), index(target));
        }
    }

    QList<Row> m_rows;
};

} // namespace randblatt
