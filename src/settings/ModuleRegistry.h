#pragma once

#include "settings/SidebarModule.h"

#include <QList>

#include <memory>
#include <vector>

namespace randblatt {

class AppSettings;

/// The modules of the sidebar, and which of them are shown in which order.
class ModuleRegistry : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one registry.")

public:
    /// Takes the modules in their standard order. `settings` is borrowed and must outlive the registry.
    ModuleRegistry(AppSettings &settings, std::vector<std::unique_ptr<SidebarModule>> modules,
                   QObject *parent = nullptr);

    /// In the standard order.
    [[nodiscard]] QList<SidebarModule *> allModules() const;
    /// In the user's order; modules that it does not name follow in the standard order, and ids in it that
    /// name no module are skipped.
    [[nodiscard]] QList<SidebarModule *> orderedModules() const;
    /// The ordered modules that the user has enabled: what the sidebar shows.
    [[nodiscard]] QList<SidebarModule *> enabledModules() const;
    /// The module with the given id, or null.
    [[nodiscard]] Q_INVOKABLE randblatt::SidebarModule *module(const QString &id) const;

Q_SIGNALS:
    /// Any setting changed.
    void changed();

private:
    AppSettings &m_settings;
    std::vector<std::unique_ptr<SidebarModule>> m_modules;
};

} // namespace randblatt
