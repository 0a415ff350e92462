#include "platform/Coordinates.h"
#include "support/TestEnvironment.h"

#include <QTest>

using namespace randblatt;

class CoordinatesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flipsRectangles_data()
    {
        QTest::addColumn<QRectF>("qt");
        QTest::addColumn<QRectF>("core");
        QTest::newRow("primary") << QRectF(0, 0, 1440, 900) << QRectF(0, 0, 1440, 900);
        QTest::newRow("below a top panel") << QRectF(0, 25, 1440, 850) << QRectF(0, 25, 1440, 850);
        QTest::newRow("hanging from the top") << QRectF(0, 25, 420, 836) << QRectF(0, 39, 420, 836);
        QTest::newRow("taller screen to the right")
            << QRectF(1440, 0, 1920, 1080) << QRectF(1440, -180, 1920, 1080);
        QTest::newRow("screen above") << QRectF(0, -768, 1024, 768) << QRectF(0, 900, 1024, 768);
    }

    void flipsRectangles()
    {
        QFETCH(QRectF, qt);
        QFETCH(QRectF, core);
        QCOMPARE(flipped(qt, 900), core);
        QCOMPARE(flipped(core, 900), qt);
    }

    void keepsThePixelRowsOfAScreenInside()
    {
        QCOMPARE(flippedPixel({0, 0}, 900), QPointF(0, 899));
        QCOMPARE(flippedPixel({1439, 899}, 900), QPointF(1439, 0));
        QCOMPARE(flippedPixel({10, 899.5}, 900, 0.5), QPointF(10, 0));
    }
};

RANDBLATT_TEST_MAIN(CoordinatesTest, QCoreApplication)
#include "tst_coordinates.moc"
