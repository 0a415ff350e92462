#pragma once

#include "settings/SidebarModule.h"
#include "sidebar/SidebarPanelController.h"
#include "ui/forms/WindowController.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace randblatt {

class AppSettings;
class Desktop;
class HoverManager;
class ModuleRegistry;
class NotificationCenter;
class PointerWatch;
class SidebarUIState;

/// What the running application consists of, made when it is first needed and exactly once, and how it
/// starts. Everything lives until the process ends.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// What the delegate works with. References are borrowed and must outlive it.
    struct Environment
    {
        AppSettings &settings;
        SidebarUIState &uiState;
        NotificationCenter &notifications;
        Desktop &desktop;
        std::function<std::vector<std::unique_ptr<SidebarModule>>()> makeModules;
        /// Makes the maker of panels that show the given registry's modules.
        std::function<SidebarPanelController::PanelFactory(ModuleRegistry &)> panelFactory;
        std::function<std::unique_ptr<WindowController>(ModuleRegistry &)> makeSettingsWindow;
        std::function<std::unique_ptr<WindowController>()> makeOnboarding;
        /// Gives a window of ours the keyboard, above the others.
        std::function<void(QWindow &)> activate = [](QWindow &) {};
    };

    explicit AppDelegate(Environment environment, QObject *parent = nullptr);
    ~AppDelegate() override;

    /// The start-up sequence; to be called once.
    void applicationDidFinishLaunching();

    /// Shows the panel on the main screen, if there is one, and leaves it there for a moment, and while it
    /// has the keyboard, even though the pointer is elsewhere.
    void showSidebar();
    void hideSidebar();
    void toggleSidebar();
    /// Hides the panel or, where it is to be always visible, makes it give the keyboard back.
    void dismissSidebar();
    /// Posts the notification that opens the settings window.
    void openSettings();

    [[nodiscard]] ModuleRegistry &registry();
    [[nodiscard]] SidebarPanelController &panelController();
    [[nodiscard]] HoverManager &hoverManager();
    [[nodiscard]] WindowController &settingsWindow();
    [[nodiscard]] WindowController &onboarding();

private:
    void bringToFront(WindowController &controller) const;
    void showOnMainScreen();
    void subscribeToGeometry();
    void subscribeToVisibility();
    void peek();

    Environment m_environment;
    std::unique_ptr<ModuleRegistry> m_registry;
    std::unique_ptr<SidebarPanelController> m_panelController;
    std::unique_ptr<PointerWatch> m_pointerWatch;
    std::unique_ptr<HoverManager> m_hoverManager;
    std::unique_ptr<WindowController> m_settingsWindow;
    std::unique_ptr<WindowController> m_onboarding;
    QTimer m_geometryQuiet;
};

} // namespace randblatt
