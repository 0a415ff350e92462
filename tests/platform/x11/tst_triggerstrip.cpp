#include "platform/x11/TriggerStrip.h"
#include "support/TestEnvironment.h"

#include <QTest>

using namespace randblatt;

namespace {

const QRect monitor(1440, 0, 1920, 1080);

} // namespace

class TriggerStripTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void liesAtTheBorderOfTheMonitor_data()
    {
        QTest::addColumn<QRect>("area");
        QTest::addColumn<QList<QRect>>("strips");
        QTest::newRow("the left edge")
            << QRect(1440, 0, 3, 1080)
            << QList{QRect(1440, 0, 1, 1080), QRect(1440, 0, 3, 1), QRect(1440, 1079, 3, 1)};
        QTest::newRow("the lower right corner")
            << QRect(3270, 990, 90, 90) << QList{QRect(3359, 990, 1, 90), QRect(3270, 1079, 90, 1)};
        QTest::newRow("beyond the border")
            << QRect(1430, -10, 100, 100) << QList{QRect(1440, 0, 1, 90), QRect(1440, 0, 90, 1)};
        QTest::newRow("in the middle") << QRect(1500, 100, 100, 100) << QList<QRect>();
        QTest::newRow("another monitor's edge") << QRect(0, 0, 3, 900) << QList<QRect>();
    }

    void liesAtTheBorderOfTheMonitor()
    {
        QFETCH(QRect, area);
        QFETCH(QList<QRect>, strips);
        QCOMPARE(triggerStrips(area, monitor), strips);
    }
};

RANDBLATT_TEST_MAIN(TriggerStripTest, QCoreApplication)
#include "tst_triggerstrip.moc"
