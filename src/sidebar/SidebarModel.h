#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class AppSettings;
class ModuleRegistry;
class SidebarModule;

/// The sidebar's cards for the view: one row per enabled module, in the user's order, with the height and the
/// theme in force. It follows every change of the settings with the smallest announcement that says it.
class SidebarModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The panel makes its model.")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum class Role {
        module = Qt::UserRole + 1,
        config,
        cardHeight,
        tint,
    };

    /// Both are borrowed and must outlive the model.
    SidebarModel(const AppSettings &settings, const ModuleRegistry &registry, QObject *parent = nullptr);

    [[nodiscard]] int count() const { return rowCount(); }
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void followModules();
    void announce(Role role);

    const AppSettings &m_settings;
    const ModuleRegistry &m_registry;
    QList<SidebarModule *> m_modules;
};

} // namespace randblatt
