#include "ui/settings/ModuleListModel.h"

#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"

namespace randblatt {

ModuleListModel::ModuleListModel(AppSettings &settings, const ModuleRegistry &registry, QObject *parent)
    : QAbstractListModel(parent)
    , m_settings(settings)
    , m_registry(registry)
    , m_modules(registry.orderedModules())
{
    connect(&settings, &AppSettings::moduleOrderChanged, this, &ModuleListModel::followOrder);
    connect(&settings, &AppSettings::enabledModuleIDsChanged, this,
            [this] { announce(Role::moduleEnabled); });
    connect(&settings, &AppSettings::moduleHeightsChanged, this, [this] { announce(Role::cardHeight); });
}

void ModuleListModel::move(int from, int to)
{
    const int count = rowCount();
    if (from < 0 || from >= count || to < 0 || to >= count || from == to)
        return;
    moveRow(from, to);
    m_settings.setModuleOrder(storedOrder());
}

int ModuleListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_modules.size());
}

QVariant ModuleListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const SidebarModule *module = m_modules.at(index.row());
    switch (static_cast<Role>(role)) {
    case Role::moduleID:
        return module->id();
    case Role::title:
        return module->title();
    case Role::symbol:
        return module->systemImage();
    case Role::tint:
        return moduleAccentColor(module->id());
    case Role::moduleEnabled:
        return m_settings.isEnabled(module->id());
    case Role::cardHeight:
        return m_settings.height(module->id());
    }
    return {};
}

QHash<int, QByteArray> ModuleListModel::roleNames() const
{
    return {
        {static_cast<int>(Role::moduleID), "moduleID"},
        {static_cast<int>(Role::title), "title"},
        {static_cast<int>(Role::symbol), "symbol"},
        {static_cast<int>(Role::tint), "tint"},
        {static_cast<int>(Role::moduleEnabled), "moduleEnabled"},
        {static_cast<int>(Role::cardHeight), "cardHeight"},
    };
}

void ModuleListModel::followOrder()
{
    const QList<SidebarModule *> target = m_registry.orderedModules();
    for (int row = 0; row < target.size(); ++row) {
        const auto present = static_cast<int>(m_modules.indexOf(target.at(row)));
        if (present != row)
            moveRow(present, row);
    }
}

void ModuleListModel::moveRow(int from, int to)
{
    // The model/view interface names the row before which the moved one comes to stand.
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    m_modules.move(from, to);
    endMoveRows();
}

QStringList ModuleListModel::storedOrder() const
{
    QStringList ids;
    for (const SidebarModule *module : m_modules)
        ids.append(module->id());
    QStringList order = m_settings.moduleOrder();
    order.removeDuplicates();
    for (QString &id : order) {
        if (m_registry.module(id) != nullptr)
            id = ids.takeFirst();
    }
    return order + ids;
}

void ModuleListModel::announce(Role role)
{
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {static_cast<int>(role)});
}

} // namespace randblatt
