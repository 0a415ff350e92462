#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class AppSettings;
class ModuleRegistry;
class SidebarModule;

/// All modules, enabled or not, in the user's order: what the user enables, sizes and sorts.
class ModuleListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window makes its model.")

public:
    enum class Role {
        moduleID = Qt::UserRole + 1,
        title,
        symbol,
        tint,
        moduleEnabled,
        cardHeight,
    };

    /// Both are borrowed and must outlive the model.
    ModuleListModel(AppSettings &settings, const ModuleRegistry &registry, QObject *parent = nullptr);

    /// Puts the module of row `from` into row `to` and stores the new order. Stored ids that name no module
    /// keep their places. A row that does not exist changes nothing.
    Q_INVOKABLE void move(int from, int to);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    void followOrder();
    void moveRow(int from, int to);
    [[nodiscard]] QStringList storedOrder() const;
    void announce(Role role);

    AppSettings &m_settings;
    const ModuleRegistry &m_registry;
    QList<SidebarModule *> m_modules;
};

} // namespace randblatt
