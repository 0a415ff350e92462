#include "sidebar/CardRegion.h"
#include "support/TestEnvironment.h"

#include <QTest>

#include <cmath>

using namespace randblatt;

namespace {

const QSize window(420, 886);

bool isInRoundedRect(const QRectF &card, const QPointF &point)
{
    if (!card.contains(point))
        return false;
    const double x =
        std::max({card.left() + cardRadius - point.x(), point.x() - card.right() + cardRadius, 0.0});
    const double y =
        std::max({card.top() + cardRadius - point.y(), point.y() - card.bottom() + cardRadius, 0.0});
    return std::hypot(x, y) <= cardRadius;
}

} // namespace

class CardRegionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheRoundCorners()
    {
        const QRectF card(14, 36, 392, 300);
        const QRegion region = cardRegion({card}, window);
        QCOMPARE(region.boundingRect(), card.toRect());
        int differing = 0;
        for (int x = 0; x < window.width(); ++x) {
            for (int y = 0; y < window.height(); ++y)
                differing +=
                    region.contains(QPoint(x, y)) != isInRoundedRect(card, QPointF(x + 0.5, y + 0.5));
        }
        // Where the arc runs flat, a row more or less is a matter of rounding.
        QVERIFY2(differing <= 24, qPrintable(QString::number(differing)));
        // One rectangle for the middle, and no more than one for each row of the corners.
        QVERIFY(region.rectCount() <= 1 + 2 * static_cast<int>(cardRadius));
    }

    void endsWithTheWindow()
    {
        // Scrolled halfway out at the top, and wholly out at the bottom.
        const QRegion region = cardRegion({QRectF(14, -150, 392, 300), QRectF(14, 900, 392, 300)}, window);
        QCOMPARE(region.boundingRect(), QRect(14, 0, 392, 150));
        QVERIFY(region.contains(QPoint(14, 0)));
        QVERIFY(!region.contains(QPoint(14, 149)));
    }

    void keepsSeveralCardsApart()
    {
        const QRegion region = cardRegion({QRectF(14, 36, 392, 300), QRectF(14, 348, 392, 300)}, window);
        QVERIFY(region.contains(QPoint(200, 335)));
        QVERIFY(!region.contains(QPoint(200, 340)));
        QVERIFY(region.contains(QPoint(200, 348)));
    }

    void bearsCardsWithoutASize()
    {
        QVERIFY(cardRegion({}, window).isEmpty());
        QVERIFY(cardRegion({QRectF(14, 36, 392, 0), QRectF(14, 36, 0, 20)}, window).isEmpty());
        QCOMPARE(cardRegion({QRectF(14, 36, 20, 10)}, window).boundingRect(), QRect(14, 36, 20, 10));
    }
};

RANDBLATT_TEST_MAIN(CardRegionTest, QCoreApplication)
#include "tst_cardregion.moc"
