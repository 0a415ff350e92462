#include "sidebar/SidebarModel.h"

#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"

#include <algorithm>

namespace randblatt {

namespace {

// A card keeps the user's height; these bounds only keep a damaged value from making the sidebar unusable.
constexpr double smallestHeight = 60.0;
constexpr double largestHeight = 4000.0;

double limitedHeight(double height)
{
    return height >= smallestHeight ? std::min(height, largestHeight) : smallestHeight;
}

} // namespace

SidebarModel::SidebarModel(const AppSettings &settings, const ModuleRegistry &registry, QObject *parent)
    : QAbstractListModel(parent)
    , m_settings(settings)
    , m_registry(registry)
    , m_modules(registry.enabledModules())
{
    connect(&settings, &AppSettings::moduleOrderChanged, this, &SidebarModel::followModules);
    connect(&settings, &AppSettings::enabledModuleIDsChanged, this, &SidebarModel::followModules);
    connect(&settings, &AppSettings::moduleHeightsChanged, this, [this] { announce(Role::cardHeight); });
    for (const auto signal : {&AppSettings::globalThemeChanged, &AppSettings::moduleThemesChanged,
                              &AppSettings::perModuleThemeChanged})
        connect(&settings, signal, this, [this] { announce(Role::config); });
}

int SidebarModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_modules.size());
}

QVariant SidebarModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    SidebarModule *module = m_modules.at(index.row());
    switch (static_cast<Role>(role)) {
    case Role::module:
        return QVariant::fromValue(module);
    case Role::config:
        return QVariant::fromValue(m_settings.theme(module->id()));
    case Role::cardHeight:
        return limitedHeight(m_settings.height(module->id()));
    case Role::tint:
        return moduleAccentColor(module->id());
    }
    return {};
}

QHash<int, QByteArray> SidebarModel::roleNames() const
{
    return {
        {static_cast<int>(Role::module), "module"},
        {static_cast<int>(Role::config), "config"},
        {static_cast<int>(Role::cardHeight), "cardHeight"},
        {static_cast<int>(Role::tint), "tint"},
    };
}

void SidebarModel::followModules()
{
    const QList<SidebarModule *> target = m_registry.enabledModules();
    for (int row = count() - 1; row >= 0; --row) {
        if (target.contains(m_modules.at(row)))
            continue;
        beginRemoveRows({}, row, row);
        m_modules.removeAt(row);
        endRemoveRows();
    }
    for (int row = 0; row < target.size(); ++row) {
        const auto present = static_cast<int>(m_modules.indexOf(target.at(row)));
        if (present == row)
            continue;
        if (present < 0) {
            beginInsertRows({}, row, row);
            m_modules.insert(row, target.at(row));
            endInsertRows();
        } else {
            beginMoveRows({}, present, present, {}, row);
            m_modules.move(present, row);
            endMoveRows();
        }
    }
    Q_EMIT countChanged();
}

void SidebarModel::announce(Role role)
{
    if (count() > 0)
        Q_EMIT dataChanged(index(0), index(count() - 1), {static_cast<int>(role)});
}

} // namespace randblatt
