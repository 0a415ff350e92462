#include "platform/wayland/ScreenPixels.h"
#include "sidebar/PanelGeometry.h"
#include "sidebar/TriggerZone.h"
#include "support/TestEnvironment.h"

#include <QRegion>
#include <QTest>

using namespace randblatt;

Q_DECLARE_METATYPE(randblatt::TriggerZone)

namespace {

QRegion pointsWithinAny(const QList<QRectF> &areas, const QRectF &screenFrame)
{
    QRegion region;
    for (const QRectF &area : areas)
        region += pointsWithin(area, screenFrame);
    return region;
}

/// The points of the screen whose positions satisfy a condition.
template <typename Condition>
QRegion pointsWhere(const QRectF &screenFrame, Condition condition)
{
    QRegion region;
    for (int row = 0; row < screenFrame.height(); ++row) {
        for (int column = 0; column < screenFrame.width(); ++column) {
            // Anywhere in the point is the same place.
            if (condition(positionInCore(QPointF(column + 0.4, row + 0.9), screenFrame)))
                region += QRect(column, row, 1, 1);
        }
    }
    return region;
}

} // namespace

class ScreenPixelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stripsAreExactlyTheZone_data()
    {
        QTest::addColumn<TriggerZone>("zone");
        QTest::addColumn<QRectF>("frame");
        constexpr auto left = SidebarSide::left;
        constexpr auto right = SidebarSide::right;
        const QRectF primary(0, 0, 60, 40);
        const QRectF belowOnTheLeft(-80, -13, 80, 30);
        const auto row = [](const char *name, const TriggerZone &zone, const QRectF &frame) {
            QTest::newRow(name) << zone << frame;
        };
        row("edge", {TriggerMode::leftEdge, left, 10, 3}, primary);
        row("edge on the right", {TriggerMode::leftEdge, right, 10, 3}, belowOnTheLeft);
        row("thin edge", {TriggerMode::leftEdge, right, 10, 0.2}, primary);
        row("edge of a broken number", {TriggerMode::leftEdge, left, 10, 2.5}, belowOnTheLeft);
        row("corners", {TriggerMode::corners, left, 10, 3}, primary);
        row("corners of a broken number", {TriggerMode::corners, right, 7.5, 3}, belowOnTheLeft);
        row("corners larger than the screen", {TriggerMode::corners, left, 90, 3}, primary);
        row("no corners", {TriggerMode::corners, left, -1, 3}, primary);
        row("both", {TriggerMode::both, right, 10, 3}, primary);
    }

    void stripsAreExactlyTheZone()
    {
        QFETCH(TriggerZone, zone);
        QFETCH(QRectF, frame);
        const QRegion expected =
            pointsWhere(frame, [&](const QPointF &point) { return zone.contains(frame, point); });
        QCOMPARE(pointsWithinAny(zone.areas(frame), frame), expected);
    }

    void bandIsWatchedAroundThePanel_data()
    {
        QTest::addColumn<SidebarSide>("side");
        QTest::addColumn<double>("heightFraction");
        QTest::addColumn<QRectF>("visible");
        QTest::newRow("left") << SidebarSide::left << 1.0 << QRectF(-100, 20, 100, 60);
        QTest::newRow("right, half as high") << SidebarSide::right << 0.5 << QRectF(-100, 20, 100, 60);
        QTest::newRow("left, beside a dock") << SidebarSide::left << 1.0 << QRectF(-80, 20, 80, 60);
        QTest::newRow("right, beside a dock") << SidebarSide::right << 0.5 << QRectF(-100, 10, 80, 80);
    }

    void bandIsWatchedAroundThePanel()
    {
        QFETCH(SidebarSide, side);
        QFETCH(double, heightFraction);
        QFETCH(QRectF, visible);
        const QRectF frame(-100, 10, 100, 80);
        const Screen screen{QStringLiteral("screen"), frame, visible};
        const QRectF shown = panelGeometry(visible, side, 40, heightFraction).shown;
        const QRegion expected =
            pointsWhere(frame, [&](const QPointF &point) { return isInPanelArea(screen, side, 40, point); });
        const QRegion panel = pointsOf(shown, frame);
        const QRegion watched = pointsWithinAny(around(shown, panelArea(screen, side, 40)), frame);
        QCOMPARE(watched + panel, expected);
        // Only the column and row that border on the panel may lie under it.
        const QRect inner = panel.boundingRect().adjusted(1, 1, -1, -1);
        QVERIFY(!watched.intersects(inner));
    }

    void panelMayLieBeyondTheScreen()
    {
        const QRectF frame(1440, -180, 1920, 1080);
        QCOMPARE(pointsOf({996, 64, 420, 836}, frame), QRect(-444, 0, 420, 836));
        QCOMPARE(pointsOf({1440.4, 63.6, 420, 836.4}, frame), QRect(0, 0, 420, 836));
    }
};

RANDBLATT_TEST_MAIN(ScreenPixelsTest, QCoreApplication)
#include "tst_screenpixels.moc"
