#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "sidebar/HoverManager.h"
#include "sidebar/SidebarPanelController.h"
#include "sidebar/SidebarUIState.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;
using namespace std::chrono_literals;

namespace {

const QPointF onTheEdge(0, 450);
const QPointF inThePanel(200, 450);
const QPointF farAway(900, 450);

/// The trigger over two screens, with a clock that only the ticks move.
struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    FakeDesktop desktop;
    SidebarUIState uiState;
    std::shared_ptr<PanelRecord> record = std::make_shared<PanelRecord>();
    SidebarPanelController controller{
        settings, desktop, [this](const QSizeF &) { return std::make_unique<RecordingPanel>(record); }};
    HoverManager::TimePoint now;
    HoverManager trigger{settings, desktop, uiState, controller, [this] { return now; }};

    Fixture() { desktop.connected = {FakeDesktop::primaryScreen(), FakeDesktop::rightScreen()}; }

    void tick(const std::optional<QPointF> &pointer, int times = 1)
    {
        desktop.pointer = pointer;
        for (int i = 0; i < times; ++i) {
            now += HoverManager::tickInterval;
            trigger.tick();
        }
    }
    [[nodiscard]] bool isUp() const { return controller.isVisible() && !controller.isAnimatingOut(); }
    [[nodiscard]] QString screen() const { return controller.currentScreen()->id; }
};

} // namespace

class HoverManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void revealsAfterTheDelay()
    {
        Fixture f;
        f.tick(onTheEdge, 2);
        QVERIFY(!f.isUp());
        f.tick(onTheEdge);
        QVERIFY(f.isUp());
        QCOMPARE(f.screen(), u"primary"_s);
    }

    void revealsNothingToAPointerThatBrushesPast()
    {
        Fixture f;
        for (int i = 0; i < 5; ++i) {
            f.tick(onTheEdge, 2);
            f.tick(farAway);
        }
        QVERIFY(!f.isUp());
    }

    void startsAnewOnAnotherScreen()
    {
        Fixture f;
        f.tick(onTheEdge, 2);
        f.tick(QPointF(1441, 450), 2);
        QVERIFY(!f.isUp());
        f.tick(QPointF(1441, 450));
        QVERIFY(f.isUp());
        QCOMPARE(f.screen(), u"right"_s);
    }

    void hidesWhenThePointerLeavesTheBand()
    {
        Fixture f;
        f.tick(onTheEdge, 3);
        f.tick(inThePanel, 5);
        f.tick(QPointF(434, 450));
        QVERIFY(f.isUp());
        f.tick(QPointF(434.5, 450));
        QVERIFY(f.controller.isAnimatingOut());
    }

    void staysWhileThePointerRestsInTheZone()
    {
        Fixture f;
        f.settings.setTriggerMode(TriggerMode::both);
        f.settings.setCornerSize(200);
        f.settings.setPanelWidth(100);
        f.tick(QPointF(150, 890), 4);
        QVERIFY(f.isUp());
        f.tick(QPointF(190, 890), 5);
        QVERIFY(f.isUp());
        f.tick(QPointF(210, 890));
        QVERIFY(!f.isUp());
    }

    void cannotBeTurnedBackOnItsWayOut()
    {
        Fixture f;
        f.tick(onTheEdge, 3);
        f.tick(farAway);
        f.tick(onTheEdge, 5);
        QVERIFY(f.controller.isAnimatingOut());
        QTRY_VERIFY(!f.controller.isVisible());
        f.tick(onTheEdge, 3);
        QVERIFY(f.isUp());
    }

    void keepsClosedWhatWasClosedUnderThePointer()
    {
        Fixture f;
        f.tick(onTheEdge, 3);
        f.controller.tearDown();
        f.tick(onTheEdge, 10);
        QVERIFY(!f.isUp());
        f.tick(farAway);
        f.tick(onTheEdge, 3);
        QVERIFY(f.isUp());
    }

    void isHeldOpenByTheViews()
    {
        Fixture f;
        f.tick(onTheEdge, 3);
        f.uiState.setKeepOpen(true);
        f.tick(farAway, 20);
        QVERIFY(f.isUp());
        f.uiState.setKeepOpen(false);
        f.tick(farAway);
        QVERIFY(!f.isUp());
    }

    void isAlwaysVisibleWhereThePointerIs()
    {
        Fixture f;
        f.settings.setAlwaysVisible(true);
        f.tick(QPointF(2000, 450));
        QVERIFY(f.isUp());
        QCOMPARE(f.screen(), u"right"_s);
        f.tick(QPointF(2900, 450), 20);
        QVERIFY(f.isUp());
        f.settings.setAlwaysVisible(false);
        f.tick(QPointF(2900, 450));
        QVERIFY(!f.isUp());
    }

    void holdsAPanelThatWasShownWithoutThePointer()
    {
        Fixture f;
        f.controller.show(FakeDesktop::primaryScreen());
        f.trigger.hold(2500ms);
        f.tick(farAway, 31);
        QVERIFY(f.isUp());
        f.tick(farAway);
        QVERIFY(!f.isUp());
    }

    void leavesAHeldPanelToThePointerOnceItCame()
    {
        Fixture f;
        f.controller.show(FakeDesktop::primaryScreen());
        f.trigger.hold(2500ms);
        f.tick(inThePanel);
        f.tick(farAway);
        QVERIFY(!f.isUp());
    }

    void bearsWhatADesktopMayLack()
    {
        Fixture f;
        f.tick(std::nullopt, 5);
        QVERIFY(!f.isUp());
        f.desktop.connected.clear();
        f.tick(onTheEdge, 5);
        f.settings.setAlwaysVisible(true);
        f.tick(onTheEdge, 5);
        QVERIFY(!f.isUp());
        f.desktop.connected = {FakeDesktop::primaryScreen()};
        f.tick(std::nullopt);
        QVERIFY(f.isUp());
    }

    void ticksByItself()
    {
        Fixture f;
        f.settings.setRevealDelay(0);
        f.desktop.pointer = onTheEdge;
        f.trigger.start();
        f.trigger.start();
        QTRY_VERIFY(f.isUp());
    }
};

RANDBLATT_TEST_MAIN(HoverManagerTest, QCoreApplication)
#include "tst_hovermanager.moc"
