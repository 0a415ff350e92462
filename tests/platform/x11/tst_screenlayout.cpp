#include "platform/x11/ScreenLayout.h"
#include "support/TestEnvironment.h"

#include <QTest>

using namespace randblatt;

namespace {

const Monitor plain{.native = QRect(0, 0, 1440, 900)};
const Monitor taller{.native = QRect(1440, 0, 1920, 1080)};
const Monitor oneAndAHalf{.native = QRect(0, 0, 1920, 1081), .factor = 1.5};
const Monitor twoOnTheRight{.native = QRect(1440, 0, 2880, 1800), .factor = 2};
const Monitor twoOnTheLeft{.native = QRect(0, 0, 2880, 1800), .factor = 2};
const Monitor plainBeyondTwo{.native = QRect(2880, 0, 1920, 1080)};

} // namespace

class ScreenLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void monitorsInCoreCoordinates()
    {
        const ScreenLayout both({plain, taller});
        QCOMPARE(both.inCore(taller.native, taller), QRectF(1440, -180, 1920, 1080));
        QCOMPARE(both.inCore(QRect(0, 25, 1440, 875), plain), QRectF(0, 0, 1440, 875));

        // The origin is the primary monitor's corner, wherever X has placed that monitor.
        const ScreenLayout swapped({taller, plain});
        QCOMPARE(swapped.inCore(taller.native, taller), QRectF(0, 0, 1920, 1080));
        QCOMPARE(swapped.inCore(plain.native, plain), QRectF(-1440, 180, 1440, 900));

        const ScreenLayout mixed({plain, twoOnTheRight});
        QCOMPARE(mixed.inCore(twoOnTheRight.native, twoOnTheRight), QRectF(1440, 0, 1440, 900));
    }

    void cornerPixelsLieInTheirMonitor_data()
    {
        QTest::addColumn<QList<Monitor>>("monitors");
        QTest::newRow("plain") << QList{plain};
        QTest::newRow("two") << QList{plain, taller};
        QTest::newRow("the right one is primary") << QList{taller, plain};
        QTest::newRow("1.5, odd height") << QList{oneAndAHalf};
        QTest::newRow("mixed") << QList{plain, twoOnTheRight};
        QTest::newRow("mixed, scaled on the left") << QList{twoOnTheLeft, plainBeyondTwo};
    }

    void cornerPixelsLieInTheirMonitor()
    {
        QFETCH(QList<Monitor>, monitors);
        const ScreenLayout layout(monitors);
        for (const Monitor &monitor : monitors) {
            const QRectF frame = layout.inCore(monitor.native, monitor);
            const double pixel = 1 / monitor.factor;
            const QRect native = monitor.native;
            QCOMPARE(layout.pixelInCore(native.bottomLeft()), QPointF(frame.left(), frame.top()));
            QCOMPARE(layout.pixelInCore(native.bottomRight()), QPointF(frame.right() - pixel, frame.top()));
            QCOMPARE(layout.pixelInCore(native.topRight()),
                     QPointF(frame.right() - pixel, frame.bottom() - pixel));
        }
    }

    void windows_data()
    {
        QTest::addColumn<QList<Monitor>>("monitors");
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<QRect>("native");

        QTest::newRow("shown") << QList{plain} << QRectF(0, 39, 420, 836) << QRect(0, 25, 420, 836);
        QTest::newRow("beyond the left edge")
            << QList{plain} << QRectF(-444, 39, 420, 836) << QRect(-444, 25, 420, 836);
        QTest::newRow("on the taller monitor")
            << QList{plain, taller} << QRectF(2940, -180, 420, 1066) << QRect(2940, 14, 420, 1066);
        QTest::newRow("1.5: flush with the right edge")
            << QList{oneAndAHalf} << QRectF(860, 0, 420, 400) << QRect(1290, 481, 630, 600);
        QTest::newRow("1.5: half a point is not lost")
            << QList{oneAndAHalf} << QRectF(2.0 / 3, 0, 420, 400) << QRect(1, 481, 630, 600);
        QTest::newRow("mixed: on the scaled monitor")
            << QList{plain, twoOnTheRight} << QRectF(1440, 14, 420, 886) << QRect(1440, 0, 840, 1772);
        QTest::newRow("mixed: beyond its outer edge")
            << QList{plain, twoOnTheRight} << QRectF(2904, 14, 420, 886) << QRect(4368, 0, 840, 1772);
        QTest::newRow("mixed: in the gap, on the other monitor's pixels")
            << QList{twoOnTheLeft, plainBeyondTwo} << QRectF(2436, 0, 420, 800)
            << QRect(2016, 100, 840, 1600);
    }

    void windows()
    {
        QFETCH(QList<Monitor>, monitors);
        QFETCH(QRectF, frame);
        QTEST(ScreenLayout(monitors).inNative(frame), "native");
    }

    void worksWithoutMonitors()
    {
        const ScreenLayout none;
        QCOMPARE(none.pixelInCore({5, 5}), std::nullopt);
        QVERIFY(none.inNative({0, 0, 420, 800}).isEmpty());
    }
};

RANDBLATT_TEST_MAIN(ScreenLayoutTest, QCoreApplication)
#include "tst_screenlayout.moc"
