#include "modules/notes/NoteListModel.h"

namespace randblatt {

QVariant NoteListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const NoteSummary &note = rows().at(index.row());
    switch (role) {
    case static_cast<int>(Role::note):
        return QVariant::fromValue(note);
    case static_cast<int>(Role::name):
    case Qt::DisplayRole:
        return note.name;
    default:
        return {};
    }
}

QHash<int, QByteArray> NoteListModel::roleNames() const
{
    return {{static_cast<int>(Role::note), "note"}, {static_cast<int>(Role::name), "name"}};
}

} // namespace randblatt
