#pragma once

#include "modules/notes/NoteBrowsing.h"
#include "modules/notes/NotesService.h"
#include "modules/notes/ScratchPad.h"
#include "settings/SidebarModule.h"

#include <memory>

namespace randblatt {

class AppSettings;
class Preferences;

/// The notes: a scratch pad of the settings, or the notes of the notes application. What is open and typed
/// there lives here, not in the views.
class NotesModule : public SidebarModule
{
    Q_OBJECT

public:
    /// `settings` and `preferences`, which hold the drafts, are borrowed and must outlive the module.
    /// `runner` reaches the notes application.
    NotesModule(AppSettings &settings, Preferences &preferences, std::shared_ptr<ScriptRunner> runner,
                QObject *parent = nullptr);

    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString systemImage() const override;
    [[nodiscard]] ViewDescription makeView() const override;
    [[nodiscard]] ViewDescription makeQuickMenu() const override;
    [[nodiscard]] QString dropOffer(bool hasText, const QList<QUrl> &urls) const override;
    bool takeDrop(const QString &text, const QList<QUrl> &urls) override;

private:
    AppSettings &m_settings;
    NotesService *m_service;
    NoteBrowsing *m_browsing;
    ScratchPad *m_pad;
};

} // namespace randblatt
