#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "sidebar/HoverManager.h"
#include "sidebar/SidebarPanelController.h"
#include "sidebar/SidebarUIState.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QAnimationDriver>
#include <QRandomGenerator>
#include <QTest>

#include <functional>

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
    void pass(std::chrono::milliseconds time)
    {
        tick(desktop.pointer, static_cast<int>(time / HoverManager::tickInterval));
    }
    /// A panel on the screen that the pointer did not reveal, with the keyboard.
    void show(HoverManager::Cause cause)
    {
        controller.show(FakeDesktop::primaryScreen());
        trigger.hold(cause);
        uiState.setHasKeyboard(true);
        QVERIFY(QTest::qWaitFor([this] { return !controller.isAnimatingIn(); }));
    }
    [[nodiscard]] bool isUp() const { return controller.isVisible() && !controller.isAnimatingOut(); }
    [[nodiscard]] QString screen() const { return controller.currentScreen()->id; }
};

/// Lets animations pass by the test's clock.
class TestAnimationDriver : public QAnimationDriver
{
public:
    TestAnimationDriver() { install(); }
    ~TestAnimationDriver() override { uninstall(); }

    void advanceTo(HoverManager::TimePoint now)
    {
        m_elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
        // Animations start by a posted call.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        advanceAnimation();
    }
    [[nodiscard]] qint64 elapsed() const override { return m_elapsed; }

private:
    qint64 m_elapsed = 0;
};

/// What may happen to the trigger between two ticks.
struct Happening
{
    int kind = 0;
    QPointF pointer;
    double number = 0;

    static Happening random(QRandomGenerator &generator)
    {
        // Most of the time nothing happens, and what happens most is a pointer that moves.
        static const std::array places{onTheEdge, QPointF(1, 880), inThePanel,         farAway,
                                       farAway,   farAway,         QPointF(1441, 450), QPointF(1800, 450)};
        const int kind = static_cast<int>(generator.bounded(60));
        return {kind, places.at(generator.bounded(static_cast<int>(places.size()))),
                generator.generateDouble()};
    }

    void happenTo(Fixture &f) const
    {
        const QList<Screen> both{FakeDesktop::primaryScreen(), FakeDesktop::rightScreen()};
        if (kind < 12) {
            f.desktop.pointer = pointer;
            Q_EMIT f.desktop.pointerMoved();
        } else if (kind == 12) {
            f.desktop.pointer.reset();
            Q_EMIT f.desktop.pointerMoved();
        } else if (kind == 13) {
            f.desktop.connected = f.desktop.connected.size() == 2 ? both.first(1) : both;
            Q_EMIT f.desktop.screensChanged();
        } else if (kind == 14) {
            f.uiState.setKeepOpen(!f.uiState.keepOpen());
        } else if (kind == 15) {
            f.controller.show(both.at(number < 0.5 ? 0 : f.desktop.connected.size() - 1));
        } else if (kind == 16) {
            f.controller.show(both.first());
            f.trigger.hold(number < 0.5 ? HoverManager::Cause::peek : HoverManager::Cause::call);
        } else if (kind == 17) {
            f.controller.hide();
        } else if (kind == 18) {
            f.controller.tearDown();
        } else if (kind == 19) {
            changeASetting(f.settings);
        } else if (kind == 20) {
            f.uiState.noteTyping();
        } else if (kind == 21) {
            f.uiState.setHasKeyboard(!f.uiState.hasKeyboard());
        } else if (kind == 22) {
            f.uiState.setComposing(!f.uiState.isComposing());
        } else if (kind == 23 || kind == 24) {
            f.desktop.buttonHeld = kind == 23;
            f.desktop.dragging = kind == 23 && number < 0.3;
            f.uiState.setPressed(kind == 23 && f.isUp());
            Q_EMIT f.desktop.pointerMoved();
        }
    }

private:
    void changeASetting(AppSettings &settings) const
    {
        switch (static_cast<int>(number * 10)) {
        case 0:
            return settings.setAlwaysVisible(true);
        case 1:
            return settings.setTriggerMode(pointer.x() < 500 ? TriggerMode::both : TriggerMode::corners);
        case 2:
            return settings.setSidebarSide(pointer.x() < 500 ? SidebarSide::right : SidebarSide::left);
        case 3:
            return settings.setCornerSize(number * 1000);
        case 4:
            return settings.setPanelWidth(pointer.x() < 500 ? 300 : 720);
        case 5:
            return settings.setEdgeThickness(pointer.x() < 500 ? 1 : 20);
        case 6:
            return settings.setRevealDelay(pointer.x() < 500 ? 0 : 0.5);
        default:
            return settings.setAlwaysVisible(false);
        }
    }
};

} // namespace

Q_DECLARE_METATYPE(std::function<void(Fixture &)>)

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

    void revealsNothingToWhatIsMovedToTheEdge()
    {
        Fixture f;
        f.desktop.buttonHeld = true;
        f.tick(onTheEdge, 20);
        QVERIFY(!f.isUp());
        // The delay begins with the release.
        f.desktop.buttonHeld = false;
        f.tick(onTheEdge, 2);
        QVERIFY(!f.isUp());
        f.tick(onTheEdge);
        QVERIFY(f.isUp());
        QCOMPARE(f.record->timesKey, 1);
    }

    void opensForWhatCanBeDroppedAndLeavesItTheKeyboard()
    {
        Fixture f;
        f.desktop.buttonHeld = f.desktop.dragging = true;
        f.tick(onTheEdge, 3);
        QVERIFY(f.isUp());
        QCOMPARE(f.record->timesKey, 0);
        f.tick(farAway);
        QVERIFY(!f.isUp());
    }

    void staysWhileAButtonThatWasPressedInItIsHeld()
    {
        Fixture f;
        f.tick(onTheEdge, 3);
        f.tick(inThePanel);
        f.desktop.buttonHeld = true;
        f.uiState.setPressed(true);
        f.tick(farAway, 40);
        QVERIFY(f.isUp());
        // Also where the panel does not hear of the release.
        f.desktop.buttonHeld = false;
        f.tick(farAway);
        QVERIFY(!f.isUp());
    }

    void keepsClosedWhatWasClosedUnderAPressedPointer()
    {
        Fixture f;
        f.tick(onTheEdge, 3);
        f.controller.tearDown();
        f.tick(onTheEdge);
        f.desktop.buttonHeld = true;
        f.tick(onTheEdge, 3);
        f.desktop.buttonHeld = false;
        f.tick(onTheEdge, 10);
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

    void letsThePanelArriveBelowAPointerThatIsUnknown()
    {
        Fixture f;
        f.tick(onTheEdge, 3);
        f.tick(std::nullopt, 5);
        QVERIFY(f.isUp());
        QTRY_VERIFY(!f.controller.isAnimatingIn());
        f.tick(std::nullopt);
        QVERIFY(!f.isUp());
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

    void holdsAPanelThatWasShownWithoutThePointer_data()
    {
        using Cause = HoverManager::Cause;
        QTest::addColumn<Cause>("cause");
        QTest::addColumn<bool>("hasKeyboard");
        QTest::addColumn<bool>("isComposing");
        QTest::addColumn<bool>("staysForGood");
        QTest::newRow("peek") << Cause::peek << true << false << false;
        QTest::newRow("peek, with a word in the making") << Cause::peek << true << true << true;
        QTest::newRow("called") << Cause::call << true << false << true;
        QTest::newRow("called, but not heard") << Cause::call << false << false << false;
    }

    void holdsAPanelThatWasShownWithoutThePointer()
    {
        QFETCH(HoverManager::Cause, cause);
        QFETCH(bool, hasKeyboard);
        QFETCH(bool, isComposing);
        QFETCH(bool, staysForGood);
        for (const auto &pointer : {std::optional(farAway), std::optional<QPointF>()}) {
            Fixture f;
            f.desktop.pointer = pointer;
            f.show(cause);
            f.uiState.setHasKeyboard(hasKeyboard);
            f.uiState.setComposing(isComposing);
            f.tick(pointer, 31);
            QVERIFY(f.isUp());
            f.tick(pointer);
            QCOMPARE(f.isUp(), staysForGood);
            f.pass(60s);
            QCOMPARE(f.isUp(), staysForGood);
        }
    }

    void holdsFromTheArrivalOn()
    {
        Fixture f;
        f.controller.show(FakeDesktop::primaryScreen());
        f.trigger.hold(HoverManager::Cause::peek);
        // As where the graphics take their time.
        f.tick(farAway, 100);
        QVERIFY(f.isUp());
        QTRY_VERIFY(!f.controller.isAnimatingIn());
        f.tick(farAway, 31);
        QVERIFY(f.isUp());
        f.tick(farAway);
        QVERIFY(!f.isUp());
    }

    void letsACalledPanelGo_data()
    {
        QTest::addColumn<std::function<void(Fixture &)>>("happen");
        const auto row = [](const char *name, std::function<void(Fixture &)> happen) {
            QTest::newRow(name) << std::move(happen);
        };
        row("once the keyboard has left", [](Fixture &f) { f.uiState.setHasKeyboard(false); });
        row("once the pointer has come and gone", [](Fixture &f) { f.tick(inThePanel); });
        row("when it is put away", [](Fixture &f) { f.controller.dismiss(); });
        row("when it is put away at once and revealed by the pointer", [](Fixture &f) {
            f.controller.show(FakeDesktop::primaryScreen());
            f.trigger.hold(HoverManager::Cause::call);
            f.controller.hide();
            QTRY_VERIFY(!f.controller.isVisible());
            f.tick(onTheEdge, 3);
            QVERIFY(f.isUp());
            QTRY_VERIFY(!f.controller.isAnimatingIn());
        });
        row("when it is torn down and revealed by the pointer", [](Fixture &f) {
            f.controller.tearDown();
            f.tick(onTheEdge, 3);
            QVERIFY(f.isUp());
        });
    }

    void letsACalledPanelGo()
    {
        QFETCH(std::function<void(Fixture &)>, happen);
        Fixture f;
        f.show(HoverManager::Cause::call);
        f.pass(10s);
        QVERIFY(f.isUp());
        happen(f);
        f.tick(farAway);
        QVERIFY(!f.isUp());
    }

    void keepsACalledPanelThatWasPeekingBefore()
    {
        Fixture f;
        f.show(HoverManager::Cause::peek);
        f.pass(2s);
        f.show(HoverManager::Cause::call);
        f.pass(60s);
        QVERIFY(f.isUp());
    }

    void staysWhileSomebodyTypes()
    {
        Fixture f;
        f.tick(onTheEdge, 3);
        f.tick(inThePanel);
        f.uiState.noteTyping();
        // A hand that pushes the mouse away does not end the sentence.
        f.desktop.pointer = farAway;
        for (int i = 0; i < 5; ++i) {
            f.pass(2s);
            f.uiState.noteTyping();
        }
        f.pass(HoverManager::holdDuration);
        QVERIFY(f.isUp());
        f.tick(farAway);
        QVERIFY(!f.isUp());
    }

    void comesBackForAKeyThatFindsItOnItsWayOut()
    {
        Fixture f;
        f.show(HoverManager::Cause::peek);
        f.pass(3s);
        QVERIFY(f.controller.isAnimatingOut());
        f.uiState.noteTyping();
        QVERIFY(f.isUp());
        f.pass(2s);
        QVERIFY(f.isUp());

        // But not where it was put away.
        f.controller.dismiss();
        f.uiState.noteTyping();
        QVERIFY(!f.isUp());
        QTRY_VERIFY(!f.controller.isVisible());
        f.tick(onTheEdge);
        f.tick(farAway);
        f.tick(onTheEdge, 3);
        f.tick(farAway);
        QVERIFY(!f.isUp());
        f.uiState.noteTyping();
        QVERIFY(!f.isUp());
    }

    void staysClosedOverAPointerThatRestsAtTheEdge()
    {
        Fixture f;
        f.desktop.pointer = onTheEdge;
        f.show(HoverManager::Cause::call);
        f.pass(1s);
        f.controller.dismiss();
        QTRY_VERIFY(!f.controller.isVisible());
        f.tick(onTheEdge, 10);
        QVERIFY(!f.isUp());
        f.tick(farAway);
        f.tick(onTheEdge, 3);
        QVERIFY(f.isUp());
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

    void restsOnlyWhereTheTicksWouldChangeNothing()
    {
        auto generator = QRandomGenerator(7);
        int ticks = 0;
        int reveals = 0;
        constexpr int runs = 40;
        constexpr int intervals = 1000;
        for (int run = 0; run < runs; ++run) {
            TestAnimationDriver driver;
            Fixture ticking;
            Fixture resting;
            resting.desktop.reportsMotion = true;
            resting.trigger.start();
            for (int i = 1; i <= intervals; ++i) {
                const HoverManager::TimePoint tickTime{i * HoverManager::tickInterval};
                ticking.now = resting.now = tickTime - 30ms;
                driver.advanceTo(ticking.now);
                const Happening happening = Happening::random(generator);
                happening.happenTo(ticking);
                happening.happenTo(resting);

                const bool wasUp = ticking.isUp();
                ticking.now = resting.now = tickTime;
                ticking.trigger.tick();
                if (resting.trigger.nextTick()) {
                    QCOMPARE(*resting.trigger.nextTick(), tickTime);
                    resting.trigger.tick();
                    ++ticks;
                }
                reveals += ticking.isUp() && !wasUp ? 1 : 0;
                QCOMPARE(resting.isUp(), ticking.isUp());
                QCOMPARE(resting.controller.isVisible(), ticking.controller.isVisible());
                QCOMPARE(resting.controller.currentScreen(), ticking.controller.currentScreen());
                QCOMPARE(resting.record->frames, ticking.record->frames);
            }
        }
        // The comparison is worth something: there was much to decide, and there were many rests.
        QVERIFY2(reveals > 10 * runs, qPrintable(QString::number(reveals)));
        QVERIFY2(ticks < runs * intervals * 3 / 4, qPrintable(QString::number(ticks)));
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
