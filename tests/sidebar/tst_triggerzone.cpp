#include "sidebar/PanelGeometry.h"
#include "sidebar/TriggerZone.h"
#include "support/Fakes.h"
#include "support/TestEnvironment.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace randblatt;

Q_DECLARE_METATYPE(randblatt::TriggerZone)

namespace {

constexpr auto corners = TriggerMode::corners;
constexpr auto edge = TriggerMode::leftEdge;
constexpr auto both = TriggerMode::both;
constexpr auto left = SidebarSide::left;
constexpr auto right = SidebarSide::right;
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

class TriggerZoneTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void coversCornersAndEdge_data()
    {
        QTest::addColumn<TriggerZone>("zone");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<bool>("inside");
        const auto row = [](const char *name, const TriggerZone &zone, const QPointF &point, bool inside) {
            QTest::newRow(name) << zone << point << inside;
        };
        row("top corner", {corners, left, 90, 3}, {0, 899}, true);
        row("border of the bottom corner", {corners, left, 90, 3}, {90, 0}, true);
        row("beside the bottom corner", {corners, left, 90, 3}, {91, 0}, false);
        row("edge between the corners", {corners, left, 90, 3}, {0, 450}, false);
        row("corner on the other side", {corners, left, 90, 3}, {1439, 899}, false);
        row("last height of the bottom corner", {corners, left, 90, 3}, {0, 90}, true);
        row("above the bottom corner", {corners, left, 90, 3}, {0, 90.5}, false);
        row("lower border of the top corner", {corners, right, 90, 3}, {1350, 810}, true);
        row("left corner for the right side", {corners, right, 90, 3}, {0, 899}, false);
        row("edge band", {edge, left, 90, 3}, {3, 450}, true);
        row("beside the edge band", {edge, left, 90, 3}, {3.1, 450}, false);
        row("corner square alone", {edge, left, 90, 3}, {50, 899}, false);
        row("thin edge is one point", {edge, right, 90, 0.5}, {1439, 450}, true);
        row("beside the thin edge", {edge, right, 90, 0.5}, {1438.9, 450}, false);
        row("edge that is no number", {edge, left, 90, notANumber}, {1, 450}, true);
        row("beyond the screen", {edge, left, 90, 3}, {-50, 2000}, true);
        row("both: edge", {both, left, 90, 3}, {2, 450}, true);
        row("both: corner", {both, left, 90, 3}, {60, 880}, true);
        row("both: neither", {both, left, 90, 3}, {60, 450}, false);
    }

    void coversCornersAndEdge()
    {
        QFETCH(TriggerZone, zone);
        QFETCH(QPointF, point);
        QFETCH(bool, inside);
        QCOMPARE(zone.contains(QRectF(0, 0, 1440, 900), point), inside);
    }

    void followsTheScreensPlace()
    {
        const QRectF frame = FakeDesktop::rightScreen().frame;
        const TriggerZone zone{both, left, 90, 3};
        QVERIFY(zone.contains(frame, {1443, 500}));
        QVERIFY(zone.contains(frame, {1500, 1079}));
        QVERIFY(!zone.contains(frame, {1500, 500}));
    }

    void keepsThePanelUpInItsBand_data()
    {
        QTest::addColumn<bool>("onTheLeft");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<bool>("inside");
        QTest::newRow("14 beyond the panel") << true << QPointF(434, 450) << true;
        QTest::newRow("farther") << true << QPointF(434.5, 450) << false;
        QTest::newRow("4 beyond the screen") << true << QPointF(-4, 450) << true;
        QTest::newRow("farther out") << true << QPointF(-4.5, 450) << false;
        QTest::newRow("4 above the work area") << true << QPointF(10, 879) << true;
        QTest::newRow("in the upper panel") << true << QPointF(10, 880) << false;
        QTest::newRow("4 below the work area") << true << QPointF(10, 21) << true;
        QTest::newRow("in the lower panel") << true << QPointF(10, 20) << false;
        QTest::newRow("right side") << false << QPointF(1006, 450) << true;
        QTest::newRow("beside the right side") << false << QPointF(1005.5, 450) << false;
        QTest::newRow("4 beyond the right edge") << false << QPointF(1444, 450) << true;
    }

    void keepsThePanelUpAcrossADock_data()
    {
        QTest::addColumn<QRectF>("visible");
        QTest::addColumn<bool>("onTheLeft");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<bool>("inside");
        const auto row = [](const char *name, const QRectF &visible, bool onTheLeft, const QPointF &point,
                            bool inside) { QTest::newRow(name) << visible << onTheLeft << point << inside; };
        const QRectF dockLeft(56, 0, 1384, 900);
        row("on the dock at the left", dockLeft, true, {30, 450}, true);
        row("between dock and panel", dockLeft, true, {51, 450}, true);
        row("4 beyond the screen's edge", dockLeft, true, {-4, 450}, true);
        row("farther out", dockLeft, true, {-4.5, 450}, false);
        row("14 beyond the panel", dockLeft, true, {490, 450}, true);
        row("farther in", dockLeft, true, {490.5, 450}, false);
        row("the dock on the other side", dockLeft, false, {30, 450}, false);
        const QRectF dockRight(0, 0, 1384, 900);
        row("on the dock at the right", dockRight, false, {1420, 450}, true);
        row("14 beyond the panel at the right", dockRight, false, {950, 450}, true);
        row("farther in at the right", dockRight, false, {949.5, 450}, false);
        const QRectF barBelow(56, 40, 1384, 860);
        row("on the dock, in the bar below it", barBelow, true, {30, 35}, false);
        row("4 into the bar", barBelow, true, {30, 36}, true);
    }

    void keepsThePanelUpAcrossADock()
    {
        QFETCH(QRectF, visible);
        QFETCH(bool, onTheLeft);
        QFETCH(QPointF, point);
        QFETCH(bool, inside);
        const Screen screen{u"screen"_s, QRectF(0, 0, 1440, 900), visible};
        QCOMPARE(isInPanelArea(screen, onTheLeft ? left : right, 420, point), inside);
    }

    void keepsThePanelUpInItsBand()
    {
        QFETCH(bool, onTheLeft);
        QFETCH(QPointF, point);
        QFETCH(bool, inside);
        QCOMPARE(isInPanelArea(FakeDesktop::primaryScreen(), onTheLeft ? left : right, 420, point), inside);
    }

    void findsTheScreenUnderThePointer_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<QString>("screen");
        QTest::newRow("left screen") << QPointF(1439.9, 0) << u"primary"_s;
        QTest::newRow("lower border is inside") << QPointF(1440, 0) << u"right"_s;
        QTest::newRow("upper border is outside") << QPointF(100, 900) << QString();
        QTest::newRow("beyond both") << QPointF(3360, 0) << QString();
    }

    void findsTheScreenUnderThePointer()
    {
        QFETCH(QPointF, point);
        QFETCH(QString, screen);
        const auto found = screenAt({FakeDesktop::primaryScreen(), FakeDesktop::rightScreen()}, point);
        QCOMPARE(found ? found->id : QString(), screen);
    }

    void placesThePanel_data()
    {
        QTest::addColumn<bool>("onTheLeft");
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("fraction");
        QTest::addColumn<QRectF>("shown");
        QTest::addColumn<double>("hiddenX");
        QTest::newRow("left") << true << 420.0 << 1.0 << QRectF(0, 39, 420, 836) << -444.0;
        QTest::newRow("right") << false << 420.0 << 1.0 << QRectF(1020, 39, 420, 836) << 1464.0;
        QTest::newRow("30 %") << true << 420.0 << 0.3 << QRectF(0, 875 - 836 * 0.3, 420, 836 * 0.3) << -444.0;
        QTest::newRow("10 % is 30 %")
            << true << 420.0 << 0.1 << QRectF(0, 875 - 836 * 0.3, 420, 836 * 0.3) << -444.0;
        QTest::newRow("150 % is 100 %") << true << 420.0 << 1.5 << QRectF(0, 39, 420, 836) << -444.0;
        QTest::newRow("fraction that is no number")
            << true << 420.0 << notANumber << QRectF(0, 39, 420, 836) << -444.0;
        QTest::newRow("width that is no number")
            << true << notANumber << 1.0 << QRectF(0, 39, 420, 836) << -444.0;
        QTest::newRow("negative width") << true << -5.0 << 1.0 << QRectF(0, 39, 420, 836) << -444.0;
        QTest::newRow("wider than the screen") << false << 1e9 << 1.0 << QRectF(0, 39, 1440, 836) << 1464.0;
    }

    void placesThePanel()
    {
        QFETCH(bool, onTheLeft);
        QFETCH(double, width);
        QFETCH(double, fraction);
        QFETCH(QRectF, shown);
        QFETCH(double, hiddenX);
        const auto geometry =
            panelGeometry(QRectF(0, 25, 1440, 850), onTheLeft ? left : right, width, fraction);
        QCOMPARE(geometry.shown, shown);
        QRectF hidden = shown;
        hidden.moveLeft(hiddenX);
        QCOMPARE(geometry.hidden, hidden);
    }

    void placesAPanelOnAScreenWithoutArea()
    {
        const auto geometry = panelGeometry({}, left, 420, 1);
        QVERIFY(geometry.shown.width() >= 1);
        QVERIFY(geometry.shown.height() >= 1);
    }
};

RANDBLATT_TEST_MAIN(TriggerZoneTest, QCoreApplication)
#include "tst_triggerzone.moc"
