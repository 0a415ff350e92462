#pragma once

#include "modules/notes/NoteSummary.h"
#include "modules/notes/ReplaceableListModel.h"

#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// The notes of the folder that is shown.
class NoteListModel : public ReplaceableListModel<NoteSummary>
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The notes service has it.")

public:
    /// In QML `note`, a noteSummary, and `name`.
    enum class Role { note = Qt::UserRole, name };

    using ReplaceableListModel::ReplaceableListModel;

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

protected:
    [[nodiscard]] QString key(const NoteSummary &note) const override { return note.id; }
};

} // namespace randblatt
