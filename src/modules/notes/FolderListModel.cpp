#include "modules/notes/FolderListModel.h"

namespace randblatt {

QVariant FolderListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const bool isName = role == static_cast<int>(Role::name) || role == Qt::DisplayRole;
    return isName ? QVariant(rows().at(index.row())) : QVariant();
}

QHash<int, QByteArray> FolderListModel::roleNames() const
{
    return {{static_cast<int>(Role::name), "name"}};
}

} // namespace randblatt
