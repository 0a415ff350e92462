#pragma once

#include "modules/notes/ReplaceableListModel.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// The folders of the account.
class FolderListModel : public ReplaceableListModel<QString>
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The notes service has it.")

public:
    /// In QML `name`.
    enum class Role { name = Qt::UserRole };

    using ReplaceableListModel::ReplaceableListModel;

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

protected:
    [[nodiscard]] QString key(const QString &name) const override { return name; }
};

} // namespace randblatt
