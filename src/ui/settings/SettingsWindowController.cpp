#include "ui/settings/SettingsWindowController.h"

#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "settings/ShortcutSetting.h"
#include "settings/StoreBackups.h"
#include "settings/StoreHealth.h"
#include "ui/forms/FormWindow.h"
#include "ui/settings/ModuleListModel.h"
#include "ui/settings/ThemeEditor.h"

namespace randblatt {

using namespace Qt::StringLiterals;

SettingsWindowController::SettingsWindowController(QQmlEngine &engine, AppSettings &settings,
                                                   ModuleRegistry &registry, QObject *media,
                                                   StoreHealth *health, StoreBackups *backups,
                                                   ShortcutSetting *shortcut)
    : m_engine(engine)
    , m_settings(settings)
    , m_registry(registry)
    , m_media(media)
    , m_health(health)
    , m_backups(backups)
    , m_shortcut(shortcut)
{
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show()
{
    if (!m_window) {
        m_modules = std::make_unique<ModuleListModel>(m_settings, m_registry);
        m_editor = std::make_unique<ThemeEditor>(m_settings, m_registry);
        m_window = std::make_unique<FormWindow>(
            m_engine, FormWindow::Description{
                          QUrl(u"qrc:/qt/qml/Randblatt/SettingsUI/SettingsView.qml"_s),
                          {
                              {u"settings"_s, QVariant::fromValue(&m_settings)},
                              {u"modules"_s, QVariant::fromValue(m_modules.get())},
                              {u"editor"_s, QVariant::fromValue(m_editor.get())},
                              {u"media"_s, QVariant::fromValue(m_media)},
                              {u"health"_s, QVariant::fromValue(m_health)},
                              {u"backups"_s, QVariant::fromValue(m_backups)},
                              {u"shortcut"_s, QVariant::fromValue(m_shortcut)},
                          },
                          u"Einstellungen – Quillbar"_s,
                          QSize(720, 780),
                          QSize(560, 420),
                      });
    }
    m_window->bringToFront();
}

QQuickView *SettingsWindowController::window() const
{
    return m_window.get();
}

} // namespace randblatt
