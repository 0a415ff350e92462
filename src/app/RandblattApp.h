#pragma once

#include "app/AppDelegate.h"
#include "app/Backends.h"
#include "app/IdleMemory.h"
#include "app/QuitKey.h"
#include "app/ViewPreloader.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "settings/ShortcutSetting.h"
#include "settings/StoreBackups.h"
#include "sidebar/MenuContent.h"
#include "sidebar/StatusBarController.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QTranslator>

#include <array>

namespace randblatt {

class SingleInstance;
class WarmUp;

/// The application: makes everything that exists once, in the order in which it depends on one another, and
/// declares the tray icon, its only permanent presence.
class RandblattApp : public QObject
{
    Q_OBJECT

public:
    /// Both are borrowed and must outlive the application.
    RandblattApp(SingleInstance &instance, WarmUp &warmUp);
    ~RandblattApp() override;

    /// Runs the start-up sequence; the caller then runs the event loop.
    void start();

private:
    void followStore();
    void followAppearance();
    void preloadModules();
    void connectMenu();
    void followTray();
    void connectInstance(SingleInstance &instance);
    void open(const QList<QUrl> &urls);
    void runAction(const QString &name);
    [[nodiscard]] std::vector<std::unique_ptr<SidebarModule>> makeModules();
    [[nodiscard]] SidebarPanelController::PanelFactory panelFactory(ModuleRegistry &registry);
    [[nodiscard]] std::unique_ptr<WindowController> makeSettingsWindow(ModuleRegistry &registry);
    void installToolkitTranslations();
    void useWindowIcon() const;

    WarmUp &m_warmUp;
    // First of all, since its other thread starts to read at once.
    QQmlEngine m_engine;
    ViewPreloader m_views{m_engine};
    Preferences m_preferences;
    StoreBackups m_backups{m_preferences};
    Backends m_backends;
    AppSettings m_settings;
    ShortcutSetting m_shortcut;
    std::array<QTranslator, 2> m_translators;
    AppDelegate m_delegate;
    MenuContent m_menu;
    QuitKey m_quitKey;
    IdleMemory m_memory;
    StatusBarController m_statusBar;
};

} // namespace randblatt
