#include "app/AppDelegate.h"

#include "app/NotificationCenter.h"
#include "platform/Desktop.h"
#include "platform/PanelWindow.h"
#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "sidebar/HoverManager.h"
#include "sidebar/PointerWatch.h"
#include "sidebar/SidebarUIState.h"

#include <chrono>

namespace randblatt {

using namespace std::chrono_literals;

namespace {

// Dragging a slider changes the geometry many times; the panel is rebuilt once.
constexpr auto geometryQuiet = 250ms;

} // namespace

AppDelegate::AppDelegate(Environment environment, QObject *parent)
    : QObject(parent)
    , m_environment(std::move(environment))
{
    m_geometryQuiet.setSingleShot(true);
    m_geometryQuiet.setInterval(geometryQuiet);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    hoverManager().start();
    m_environment.settings.reconcileLoginItem();
    if (!m_environment.settings.hasOnboarded())
        bringToFront(onboarding());
    m_environment.notifications.addObserver(openSettingsNotification, this,
                                            [this] { bringToFront(settingsWindow()); });
    subscribeToGeometry();
    subscribeToVisibility();
    peek();
}

void AppDelegate::showSidebar()
{
    showOnMainScreen();
    // Whoever calls it wants to use it, also where it has been there all the time.
    panelController().takeKeyboard();
    hoverManager().hold(HoverManager::Cause::call);
}

void AppDelegate::hideSidebar()
{
    panelController().hide();
}

void AppDelegate::toggleSidebar()
{
    // Who calls during the peek, or has started the program by calling, wants to see it.
    const bool isUp =
        panelController().isVisible() && !panelController().isAnimatingOut() && !hoverManager().isPeeking();
    const bool isOutOfReach = m_environment.settings.alwaysVisible() && !m_environment.uiState.hasKeyboard();
    if (isUp && !isOutOfReach)
        hideSidebar();
    else
        showSidebar();
}

void AppDelegate::dismissSidebar()
{
    panelController().dismiss();
}

void AppDelegate::openSettings()
{
    m_environment.notifications.post(openSettingsNotification);
}

ModuleRegistry &AppDelegate::registry()
{
    if (!m_registry)
        m_registry = std::make_unique<ModuleRegistry>(m_environment.settings, m_environment.makeModules());
    return *m_registry;
}

SidebarPanelController &AppDelegate::panelController()
{
    if (!m_panelController)
        m_panelController = std::make_unique<SidebarPanelController>(
            m_environment.settings, m_environment.desktop, m_environment.panelFactory(registry()));
    return *m_panelController;
}

HoverManager &AppDelegate::hoverManager()
{
    if (!m_hoverManager) {
        m_pointerWatch = std::make_unique<PointerWatch>(m_environment.settings, m_environment.desktop,
                                                        panelController(), m_environment.uiState);
        m_hoverManager = std::make_unique<HoverManager>(m_environment.settings, m_environment.desktop,
                                                        m_environment.uiState, panelController());
    }
    return *m_hoverManager;
}

WindowController &AppDelegate::settingsWindow()
{
    if (!m_settingsWindow)
        m_settingsWindow = m_environment.makeSettingsWindow(registry());
    return *m_settingsWindow;
}

WindowController &AppDelegate::onboarding()
{
    if (!m_onboarding)
        m_onboarding = m_environment.makeOnboarding();
    return *m_onboarding;
}

void AppDelegate::bringToFront(WindowController &controller) const
{
    controller.show();
    if (QWindow *window = controller.window())
        m_environment.activate(*window);
}

void AppDelegate::showOnMainScreen()
{
    if (const auto screen = m_environment.desktop.mainScreen())
        panelController().show(*screen);
}

void AppDelegate::subscribeToGeometry()
{
    for (const auto signal : {&AppSettings::panelWidthChanged, &AppSettings::panelHeightFractionChanged,
                              &AppSettings::sidebarSideChanged})
        connect(&m_environment.settings, signal, &m_geometryQuiet, qOverload<>(&QTimer::start));
    connect(&m_geometryQuiet, &QTimer::timeout, this, [this] { panelController().tearDown(); });
}

void AppDelegate::subscribeToVisibility()
{
    const auto follow = [this] {
        if (m_environment.settings.alwaysVisible())
            showOnMainScreen();
    };
    connect(&m_environment.settings, &AppSettings::alwaysVisibleChanged, this, follow);
    follow();
}

void AppDelegate::peek()
{
    showOnMainScreen();
    hoverManager().hold(HoverManager::Cause::peek);
}

} // namespace randblatt
