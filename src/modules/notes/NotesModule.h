#pragma once

#include "modules/notes/NotesService.h"
#include "settings/SidebarModule.h"

#include <memory>

namespace randblatt {

class AppSettings;

/// The notes: a scratch pad of the settings, or the notes of the notes application.
class NotesModule : public SidebarModule
{
    Q_OBJECT

public:
    /// `settings` is borrowed and must outlive the module. `runner` reaches the notes application.
    NotesModule(AppSettings &settings, std::shared_ptr<ScriptRunner> runner, QObject *parent = nullptr);

    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString systemImage() const override;
    [[nodiscard]] ViewDescription makeView() const override;
    [[nodiscard]] ViewDescription makeQuickMenu() const override;

private:
    AppSettings &m_settings;
    NotesService *m_service;
};

} // namespace randblatt
