#include "app/RandblattApp.h"

#include "app/NotificationCenter.h"
#include "app/WarmUp.h"
#include "modules/calendar/CalendarModule.h"
#include "modules/media/SpotifyModule.h"
#include "modules/notes/NotesModule.h"
#include "modules/todo/TodoModule.h"
#include "platform/CalendarStore.h"
#include "platform/Desktop.h"
#include "platform/DesktopAppearance.h"
#include "platform/GlobalShortcut.h"
#include "platform/LoginItem.h"
#include "platform/MediaKeySink.h"
#include "platform/PanelWindow.h"
#include "platform/ScreenReader.h"
#include "platform/ScriptRunner.h"
#include "platform/SystemWake.h"
#include "platform/browser/BrowserAuthenticationSession.h"
#include "platform/freedesktop/SingleInstance.h"
#include "platform/freedesktop/TrayHost.h"
#include "settings/ModuleRegistry.h"
#include "sidebar/SidebarPanel.h"
#include "sidebar/SidebarUIState.h"
#include "ui/controls/Voice.h"
#include "ui/controls/Wishes.h"
#include "ui/onboarding/OnboardingWindowController.h"
#include "ui/settings/SettingsWindowController.h"

#include <QApplication>
#include <QDesktopServices>
#include <QIcon>
#include <QLibraryInfo>
#include <QLoggingCategory>
#include <QPalette>

#include <algorithm>
#include <array>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcApp, "quillbar.app")

} // namespace

RandblattApp::RandblattApp(SingleInstance &instance, WarmUp &warmUp)
    : m_warmUp(warmUp)
    , m_preferences(Preferences::defaultPath())
    , m_backends(makeBackends())
    , m_settings(m_preferences, *m_backends.loginItem)
    , m_shortcut(m_preferences, *m_backends.shortcut)
    , m_delegate({AppSettings::shared(), SidebarUIState::shared(), NotificationCenter::defaultCenter(),
                  *m_backends.desktop, [this] { return makeModules(); },
                  [this](ModuleRegistry &registry) { return panelFactory(registry); },
                  [this](ModuleRegistry &registry) { return makeSettingsWindow(registry); },
                  [this] {
                      useWindowIcon();
                      return std::make_unique<OnboardingWindowController>(m_engine, m_settings);
                  },
                  m_backends.activate})
    , m_statusBar(m_menu)
{
    Wishes::follow(m_backends.appearance.get());
    Voice::use(m_backends.screenReader.get());
    connectMenu();
    connectInstance(instance);
}

RandblattApp::~RandblattApp()
{
    Wishes::follow(nullptr);
    Voice::use(nullptr);
}

void RandblattApp::start()
{
    m_views.finishImports();
    m_warmUp.finishGraphics();
    followStore();
    followAppearance();
    m_delegate.applicationDidFinishLaunching();
    // While the first frame is drawn; the cards' contents come with the second.
    preloadModules();
    connect(m_backends.tray.get(), &TrayHost::availableChanged, this, &RandblattApp::followTray);
    connect(&m_menu, &MenuContent::paletteChanged, this, &RandblattApp::followTray);
    followTray();
    m_memory.returnLater();
}

void RandblattApp::followStore()
{
    const auto all = m_delegate.registry().allModules();
    for (const SidebarModule *module : all)
        module->notice()->follow(m_preferences.health(), module->id());
    // Where there is most room for it.
    const auto shown = m_delegate.registry().enabledModules();
    const auto tallest =
        std::max_element(shown.cbegin(), shown.cend(), [this](const auto *one, const auto *other) {
            return m_settings.height(one->id()) < m_settings.height(other->id());
        });
    if (tallest != shown.cend())
        (*tallest)->notice()->setNamesAside(true);
    connect(&m_preferences.health(), &StoreHealth::folderRequested, this,
            [](const QString &folder) { QDesktopServices::openUrl(QUrl::fromLocalFile(folder)); });
}

void RandblattApp::followAppearance()
{
    const auto follow = [this] {
        m_delegate.panelController().setReducedMotion(m_backends.appearance->wishes().reducedMotion);
    };
    connect(m_backends.appearance.get(), &DesktopAppearance::wishesChanged, this, follow);
    follow();
}

void RandblattApp::preloadModules()
{
    const auto modules = m_delegate.registry().enabledModules();
    for (const SidebarModule *module : modules)
        m_views.preload(module->makeView().source);
}

void RandblattApp::connectMenu()
{
    connect(&m_menu, &MenuContent::showSidebarRequested, &m_delegate, &AppDelegate::showSidebar);
    connect(&m_menu, &MenuContent::openSettingsRequested, &m_delegate, &AppDelegate::openSettings);
    connect(&m_menu, &MenuContent::quitRequested, qApp, &QCoreApplication::quit);
    connect(m_backends.shortcut.get(), &GlobalShortcut::activated, &m_delegate, &AppDelegate::toggleSidebar);
    connect(&m_engine, &QQmlEngine::quit, qApp, &QCoreApplication::quit);
    connect(&m_quitKey, &QuitKey::pressed, qApp, &QCoreApplication::quit);
}

void RandblattApp::followTray()
{
    const QColor text = QGuiApplication::palette().color(QPalette::WindowText);
    m_statusBar.setColor(m_backends.tray->textColor().value_or(text));
    if (m_backends.tray->isAvailable())
        m_statusBar.showStatusItem();
}

void RandblattApp::connectInstance(SingleInstance &instance)
{
    connect(&instance, &SingleInstance::activated, &m_delegate, &AppDelegate::showSidebar);
    connect(&instance, &SingleInstance::actionActivated, this, &RandblattApp::runAction);
    connect(&instance, &SingleInstance::opened, this, &RandblattApp::open);
}

void RandblattApp::open(const QList<QUrl> &urls)
{
    for (const QUrl &url : urls) {
        // The address itself may hold a code that is nobody else's business.
        if (!m_backends.signIn->openCallback(url))
            qCInfo(lcApp, "Unerwartete Adresse mit dem Schema „%ls“", qUtf16Printable(url.scheme()));
    }
}

void RandblattApp::runAction(const QString &name)
{
    struct Action
    {
        QLatin1StringView name;
        void (AppDelegate::*run)();
    };
    static constexpr std::array actions{
        Action{"show"_L1, &AppDelegate::showSidebar},
        Action{"hide"_L1, &AppDelegate::hideSidebar},
        Action{"toggle"_L1, &AppDelegate::toggleSidebar},
        Action{"settings"_L1, &AppDelegate::openSettings},
    };
    const auto action =
        std::find_if(actions.begin(), actions.end(), [&](const Action &known) { return known.name == name; });
    if (name == "quit"_L1)
        QCoreApplication::quit();
    else if (action == actions.end())
        qCWarning(lcApp, "Unbekannte Aktion: %ls", qUtf16Printable(name));
    else
        (m_delegate.*action->run)();
}

std::vector<std::unique_ptr<SidebarModule>> RandblattApp::makeModules()
{
    std::vector<std::unique_ptr<SidebarModule>> modules;
    modules.push_back(std::make_unique<TodoModule>(m_settings, m_preferences));
    modules.push_back(
        std::make_unique<CalendarModule>(*m_backends.calendar, *m_backends.wake, m_preferences));
    modules.push_back(std::make_unique<NotesModule>(m_settings, m_preferences, m_backends.scripts));
    modules.push_back(std::make_unique<SpotifyModule>(
        SpotifyModule::Environment{m_settings, m_preferences, *m_backends.mediaKeys, *m_backends.signIn,
                                   ServiceHosts::fromEnvironment(), SpotifyWebPlayer::defaultHelper()}));
    return modules;
}

SidebarPanelController::PanelFactory RandblattApp::panelFactory(ModuleRegistry &registry)
{
    return [this, &registry](const QSizeF &size) {
        auto panel = std::make_unique<SidebarPanel>(m_engine, m_settings, registry, SidebarUIState::shared(),
                                                    *m_backends.desktop);
        panel->resize(size.toSize());
        connect(panel.get(), &SidebarPanel::openSettingsRequested, &m_delegate, &AppDelegate::openSettings);
        connect(panel.get(), &SidebarPanel::dismissRequested, &m_delegate, &AppDelegate::dismissSidebar);
        SidebarPanel *view = panel.get();
        auto window = m_backends.makePanelWindow(std::move(panel));
        const auto followBlur = [view, target = window.get()] { target->setBlurRegion(view->blurRegion()); };
        connect(view, &SidebarPanel::blurRegionChanged, view, followBlur);
        followBlur();
        const auto followInput = [view, target = window.get()] {
            target->setInputRegion(view->inputRegion());
        };
        connect(view, &SidebarPanel::inputRegionChanged, view, followInput);
        followInput();
        connect(m_backends.desktop.get(), &Desktop::pressed, view,
                [view, target = window.get()](const QPointF &place) {
                    const QRectF frame = target->frame();
                    view->followPress({place.x() - frame.x(), frame.y() + frame.height() - place.y()});
                });
        return window;
    };
}

std::unique_ptr<WindowController> RandblattApp::makeSettingsWindow(ModuleRegistry &registry)
{
    installToolkitTranslations();
    useWindowIcon();
    return std::make_unique<SettingsWindowController>(m_engine, m_settings, registry,
                                                      registry.module(u"spotify"_s), &m_preferences.health(),
                                                      &m_backups, &m_shortcut);
}

// Only ordinary windows show it, and drawing it takes time that the start has not got.
void RandblattApp::useWindowIcon() const
{
    QGuiApplication::setWindowIcon(
        QIcon::fromTheme(u"com.randblatt.Quillbar"_s, QIcon(u":/icons/com.randblatt.Quillbar.svg"_s)));
}

// Nothing but the colour dialog speaks in the toolkit's words: not before there can be one.
void RandblattApp::installToolkitTranslations()
{
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    const std::array catalogues{u"qtbase_de"_s, u"qtdeclarative_de"_s};
    for (std::size_t i = 0; i < catalogues.size(); ++i) {
        if (m_translators.at(i).load(catalogues.at(i), folder))
            QCoreApplication::installTranslator(&m_translators.at(i));
    }
}

} // namespace randblatt
