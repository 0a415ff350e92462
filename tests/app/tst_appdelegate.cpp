#include "app/AppDelegate.h"
#include "app/NotificationCenter.h"
#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "settings/Preferences.h"
#include "sidebar/HoverManager.h"
#include "sidebar/SidebarUIState.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

const QPointF inThePanel(200, 450);
const QPointF farAway(900, 450);

struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    SidebarUIState uiState;
    NotificationCenter notifications;
    FakeDesktop desktop;
    std::shared_ptr<PanelRecord> record = std::make_shared<PanelRecord>();
    int registriesMade = 0;
    int settingsWindowsMade = 0;
    int settingsShown = 0;
    int onboardingShown = 0;
    AppDelegate delegate{{settings, uiState, notifications, desktop,
                          [this] {
                              ++registriesMade;
                              return FakeModule::all();
                          },
                          [this](ModuleRegistry &) {
                              return
                                  [this](const QSizeF &) { return std::make_unique<RecordingPanel>(record); };
                          },
                          [this](ModuleRegistry &) {
                              ++settingsWindowsMade;
                              return std::make_unique<RecordingWindow>(settingsShown);
                          },
                          [this] { return std::make_unique<RecordingWindow>(onboardingShown); }}};

    Fixture()
    {
        desktop.connected = {FakeDesktop::primaryScreen(), FakeDesktop::rightScreen()};
        desktop.pointer = farAway;
    }
    [[nodiscard]] bool isUp() { return delegate.panelController().isVisible(); }
};

} // namespace

class AppDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void peeksAtLaunch()
    {
        Fixture f;
        f.loginItem.registered = false;
        f.delegate.applicationDidFinishLaunching();
        QVERIFY(f.isUp());
        QCOMPARE(f.loginItem.calls, QStringList{u"register"_s});
        QElapsedTimer up;
        up.start();
        QTRY_VERIFY_WITH_TIMEOUT(!f.isUp(), 5000);
        QVERIFY2(up.elapsed() > 2000, qPrintable(QString::number(up.elapsed())));
        QCOMPARE(f.registriesMade, 1);
        QCOMPARE(f.record->made, 1);
    }

    void keepsWhatTheUserCalledDuringThePeek()
    {
        Fixture f;
        f.delegate.applicationDidFinishLaunching();
        QElapsedTimer peek;
        peek.start();
        f.uiState.setHasKeyboard(true);
        QTRY_VERIFY(!f.delegate.panelController().isAnimatingIn());
        f.delegate.showSidebar();
        QTRY_VERIFY_WITH_TIMEOUT(peek.hasExpired(4000), 5000);
        QVERIFY(f.isUp());
        f.uiState.setHasKeyboard(false);
        QTRY_VERIFY(!f.isUp());
    }

    void staysAfterThePeekWhenItIsToBeAlwaysVisible()
    {
        Fixture f;
        f.delegate.applicationDidFinishLaunching();
        QElapsedTimer peek;
        peek.start();
        f.settings.setAlwaysVisible(true);
        QTRY_VERIFY_WITH_TIMEOUT(peek.hasExpired(3500), 5000);
        QVERIFY(f.isUp());
        f.delegate.dismissSidebar();
        QCOMPARE(f.record->timesResigned, 1);
        QVERIFY(!f.delegate.panelController().isAnimatingOut());
        f.settings.setAlwaysVisible(false);
        QVERIFY(f.isUp());
        QTRY_VERIFY(!f.isUp());
    }

    void showsItselfWhenItBecomesAlwaysVisible()
    {
        Fixture f;
        f.delegate.applicationDidFinishLaunching();
        f.delegate.panelController().tearDown();
        f.desktop.pointer = QPointF(2000, 500);
        f.settings.setAlwaysVisible(true);
        QVERIFY(f.isUp());
        QCOMPARE(f.delegate.panelController().currentScreen(), FakeDesktop::primaryScreen());
    }

    void rebuildsThePanelOnceTheGeometryRests()
    {
        Fixture f;
        f.desktop.pointer = inThePanel;
        f.delegate.applicationDidFinishLaunching();
        for (int i = 0; i < 10; ++i) {
            f.settings.setPanelWidth(430 + 10 * i);
            QTest::qWait(50);
            QVERIFY(f.isUp());
        }
        f.settings.setSidebarSide(SidebarSide::right);
        QTRY_COMPARE(f.record->alive, 0);
        f.delegate.showSidebar();
        QCOMPARE(f.record->made, 2);
    }

    void answersTheNotificationAndTheMenu()
    {
        Fixture f;
        f.delegate.openSettings();
        f.delegate.applicationDidFinishLaunching();
        QCOMPARE(f.settingsWindowsMade, 0);
        f.notifications.post(u"Randblatt.openSettings"_s);
        f.notifications.post(u"Randblatt.somethingElse"_s);
        f.delegate.openSettings();
        QCOMPARE(f.settingsShown, 2);
        QCOMPARE(f.settingsWindowsMade, 1);

        f.delegate.hideSidebar();
        QTRY_VERIFY(!f.isUp());
        f.delegate.toggleSidebar();
        QVERIFY(f.isUp());
        f.delegate.toggleSidebar();
        QVERIFY(f.delegate.panelController().isAnimatingOut());
        f.delegate.toggleSidebar();
        QVERIFY(!f.delegate.panelController().isAnimatingOut());
    }

    void welcomesANewUserOnly()
    {
        for (const bool onboarded : {false, true}) {
            Fixture f;
            f.settings.setHasOnboarded(onboarded);
            f.delegate.applicationDidFinishLaunching();
            QCOMPARE(f.onboardingShown, onboarded ? 0 : 1);
            QVERIFY(f.isUp());
        }
    }

    void startsWithoutAnyScreen()
    {
        Fixture f;
        f.desktop.connected.clear();
        f.delegate.applicationDidFinishLaunching();
        f.delegate.showSidebar();
        QVERIFY(!f.isUp());
    }
};

RANDBLATT_TEST_MAIN(AppDelegateTest, QCoreApplication)
#include "tst_appdelegate.moc"
