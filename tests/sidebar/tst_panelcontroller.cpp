#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "sidebar/SidebarPanelController.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

const QRectF shownFrame(0, 39, 420, 836);
const QRectF hiddenFrame(-444, 39, 420, 836);

/// A controller over a desktop with two screens.
struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    FakeDesktop desktop;
    std::shared_ptr<PanelRecord> record = std::make_shared<PanelRecord>();
    SidebarPanelController controller{
        settings, desktop, [this](const QSizeF &) { return std::make_unique<RecordingPanel>(record); }};

    Fixture() { desktop.connected = {FakeDesktop::primaryScreen(), FakeDesktop::rightScreen()}; }

    [[nodiscard]] bool isShown() const { return record->frames.last() == shownFrame && record->alpha == 1.0; }
    void showWholly()
    {
        controller.show(FakeDesktop::primaryScreen());
        QTRY_VERIFY(isShown());
    }
};

} // namespace

class PanelControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void slidesInFromBeyondTheEdge()
    {
        Fixture f;
        f.controller.show(FakeDesktop::primaryScreen());
        QVERIFY(f.controller.isVisible());
        QVERIFY(f.record->onScreen);
        QCOMPARE(f.record->timesKey, 1);
        QCOMPARE(f.record->frames.first(), hiddenFrame);
        QCOMPARE(f.record->alpha, 0.0);

        QElapsedTimer duration;
        duration.start();
        QTRY_VERIFY(f.isShown());
        QVERIFY(duration.elapsed() >= 200);
        for (qsizetype i = 1; i < f.record->frames.size(); ++i)
            QVERIFY(f.record->frames.at(i).x() >= f.record->frames.at(i - 1).x());
    }

    void slidesOutAndIsKeptForTheNextShow()
    {
        Fixture f;
        f.showWholly();
        f.controller.hide();
        f.controller.hide();
        QVERIFY(f.controller.isVisible());
        QVERIFY(f.controller.isAnimatingOut());
        QTRY_VERIFY(!f.controller.isVisible());
        QVERIFY(!f.record->onScreen);
        QVERIFY(!f.controller.isAnimatingOut());
        QCOMPARE(f.record->frames.last(), hiddenFrame);
        QCOMPARE(f.record->alpha, 0.0);

        const auto framesBefore = f.record->frames.size();
        f.showWholly();
        QCOMPARE(f.record->made, 1);
        for (auto i = framesBefore; i < f.record->frames.size(); ++i)
            QVERIFY(f.record->frames.at(i).x() >= f.record->frames.at(i - 1).x());
    }

    void turnsBackInTheMiddleOfTheWayOut()
    {
        Fixture f;
        f.showWholly();
        f.controller.hide();
        QTRY_VERIFY(f.record->frames.last().x() < -20);
        const double turningPoint = f.record->frames.last().x();
        const auto framesBefore = f.record->frames.size();
        f.controller.show(FakeDesktop::primaryScreen());
        QTRY_VERIFY(f.isShown());
        for (auto i = framesBefore; i < f.record->frames.size(); ++i)
            QVERIFY(f.record->frames.at(i).x() >= turningPoint);
        QTest::qWait(250);
        QVERIFY(f.controller.isVisible());
        QVERIFY(f.record->onScreen);
    }

    void crossesToAnotherScreenWithoutHiding()
    {
        Fixture f;
        f.showWholly();
        f.controller.show(FakeDesktop::rightScreen());
        QCOMPARE(f.controller.currentScreen(), FakeDesktop::rightScreen());
        QTRY_COMPARE(f.record->frames.last(), QRectF(1440, 14, 420, 1066));
        QVERIFY(f.record->onScreen);
        QCOMPARE(f.record->alpha, 1.0);
    }

    void leavesTheKeyboardAloneWhenAlwaysVisible()
    {
        Fixture f;
        f.settings.setAlwaysVisible(true);
        f.showWholly();
        QCOMPARE(f.record->timesKey, 0);
    }

    void usesTheGeometryOfTheMoment()
    {
        Fixture f;
        f.settings.setSidebarSide(SidebarSide::right);
        f.settings.setPanelWidth(500);
        f.settings.setPanelHeightFraction(0.5);
        f.controller.show(FakeDesktop::primaryScreen());
        QCOMPARE(f.record->frames.first(), QRectF(1464, 875 - 418, 500, 418));
        QTRY_COMPARE(f.record->frames.last(), QRectF(940, 875 - 418, 500, 418));
    }

    void tearsDownAtOnce()
    {
        Fixture f;
        f.showWholly();
        f.controller.tearDown();
        QVERIFY(!f.controller.isVisible());
        QVERIFY(!f.record->onScreen);
        QCOMPARE(f.record->alive, 0);
        f.showWholly();
        QCOMPARE(f.record->made, 2);
    }

    void finishesAHideThatATearDownInterrupted()
    {
        Fixture f;
        f.showWholly();
        f.controller.hide();
        f.controller.tearDown();
        QVERIFY(!f.controller.isVisible());
        QVERIFY(f.controller.isAnimatingOut());
        QTRY_VERIFY(!f.controller.isAnimatingOut());
        QCOMPARE(f.record->alive, 0);
    }

    void showsANewPanelThoughTheOldOneStillHides()
    {
        Fixture f;
        f.showWholly();
        f.controller.hide();
        f.controller.tearDown();
        f.controller.show(FakeDesktop::primaryScreen());
        QCOMPARE(f.record->made, 2);
        QTRY_VERIFY(f.isShown());
        QTest::qWait(250);
        QVERIFY(f.controller.isVisible());
        QCOMPARE(f.record->alive, 1);
    }

    void survivesItsScreenBeingUnplugged()
    {
        Fixture f;
        f.controller.show(FakeDesktop::rightScreen());
        f.desktop.connected.removeLast();
        Q_EMIT f.desktop.screensChanged();
        QVERIFY(!f.controller.isVisible());
        QVERIFY(!f.controller.currentScreen());
        f.controller.hide();
        f.showWholly();
    }

    void followsAScreenThatChangesItsWorkArea()
    {
        Fixture f;
        f.showWholly();
        f.desktop.connected.first().visibleFrame = QRectF(60, 0, 1380, 900);
        Q_EMIT f.desktop.screensChanged();
        QCOMPARE(f.record->frames.last(), QRectF(60, 14, 420, 886));
        QCOMPARE(f.record->timesKey, 1);
    }

    void doesNothingWithoutAPanel()
    {
        Fixture f;
        SidebarPanelController controller(f.settings, f.desktop, [](const QSizeF &) { return nullptr; });
        controller.hide();
        controller.tearDown();
        controller.show(FakeDesktop::primaryScreen());
        QVERIFY(!controller.isVisible());
    }
};

RANDBLATT_TEST_MAIN(PanelControllerTest, QCoreApplication)
#include "tst_panelcontroller.moc"
