#include "settings/ModuleRegistry.h"

#include "settings/AppSettings.h"

#include <algorithm>
#include <iterator>

namespace randblatt {

ModuleRegistry::ModuleRegistry(AppSettings &settings, std::vector<std::unique_ptr<SidebarModule>> modules,
                               QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_modules(std::move(modules))
{
    connect(&settings, &AppSettings::changed, this, &ModuleRegistry::changed);
}

QList<SidebarModule *> ModuleRegistry::allModules() const
{
    QList<SidebarModule *> all;
    for (const auto &module : m_modules)
        all.append(module.get());
    return all;
}

QList<SidebarModule *> ModuleRegistry::orderedModules() const
{
    QList<SidebarModule *> ordered;
    const auto append = [&ordered](SidebarModule *module) {
        if (module != nullptr && !ordered.contains(module))
            ordered.append(module);
    };
    const QStringList order = m_settings.moduleOrder();
    for (const QString &id : order)
        append(module(id));
    for (const auto &module : m_modules)
        append(module.get());
    return ordered;
}

QList<SidebarModule *> ModuleRegistry::enabledModules() const
{
    QList<SidebarModule *> enabled = orderedModules();
    enabled.removeIf([this](const SidebarModule *module) { return !m_settings.isEnabled(module->id()); });
    return enabled;
}

SidebarModule *ModuleRegistry::module(const QString &id) const
{
    const auto it = std::find_if(m_modules.begin(), m_modules.end(),
                                 [&](const auto &module) { return module->id() == id; });
    return it == m_modules.end() ? nullptr : it->get();
}

} // namespace randblatt
