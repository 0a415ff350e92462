#include "platform/x11/WorkArea.h"
#include "support/TestEnvironment.h"

#include <QTest>

using namespace randblatt;

namespace {

using Numbers = QList<quint32>;

// Two monitors side by side, the right one lower and larger, as one root window.
constexpr QRect left(0, 0, 1440, 900);
constexpr QRect right(1440, 0, 1920, 1080);
constexpr QSize root(3360, 1080);

} // namespace

class WorkAreaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void struts_data()
    {
        QTest::addColumn<QList<Numbers>>("properties");
        QTest::addColumn<QRect>("leftArea");
        QTest::addColumn<QRect>("rightArea");

        QTest::newRow("none") << QList<Numbers>{} << left << right;
        QTest::newRow("top panel on the left monitor")
            << QList<Numbers>{{0, 0, 25, 0, 0, 0, 0, 0, 0, 1439, 0, 0}} << QRect(0, 25, 1440, 875) << right;
        QTest::newRow("bottom panels count from the root's lower edge")
            << QList<Numbers>{{0, 0, 0, 180 + 40, 0, 0, 0, 0, 0, 0, 0, 1439},
                              {0, 0, 0, 30, 0, 0, 0, 0, 0, 0, 1440, 3359}}
            << QRect(0, 0, 1440, 860) << QRect(1440, 0, 1920, 1050);
        QTest::newRow("dock on the inner edge of the right monitor")
            << QList<Numbers>{{1440 + 60, 0, 0, 0, 0, 1079, 0, 0, 0, 0, 0, 0}} << left
            << QRect(1500, 0, 1860, 1080);
        QTest::newRow("dock on the inner edge of the left monitor")
            << QList<Numbers>{{0, 1920 + 60, 0, 0, 0, 0, 0, 899, 0, 0, 0, 0}} << QRect(0, 0, 1380, 900)
            << right;
        QTest::newRow("a range that ends one pixel before the other monitor")
            << QList<Numbers>{{0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 1440}} << left << QRect(1440, 0, 1920, 1040);
        QTest::newRow("two on one edge: the deeper counts")
            << QList<Numbers>{{0, 0, 25, 0, 0, 0, 0, 0, 1440, 3359, 0, 0},
                              {0, 0, 60, 0, 0, 0, 0, 0, 1440, 2000, 0, 0}}
            << left << QRect(1440, 60, 1920, 1020);
        QTest::newRow("old property: whole edges")
            << QList<Numbers>{{0, 70, 20, 0}} << QRect(0, 20, 1440, 880) << QRect(1440, 20, 1850, 1060);
        QTest::newRow("deeper than the root window")
            << QList<Numbers>{{0, 0, 0xffffffff, 0, 0, 0, 0, 0, 0, 3359, 0, 0}} << left << right;
        QTest::newRow("from both sides nothing is left")
            << QList<Numbers>{{800, 0, 0, 0, 0, 899, 0, 0, 0, 0, 0, 0},
                              {0, 1920 + 700, 0, 0, 0, 0, 0, 899, 0, 0, 0, 0}}
            << left << right;
        QTest::newRow("malformed") << QList<Numbers>{{1, 2, 3}, {}} << left << right;
    }

    void struts()
    {
        QFETCH(QList<Numbers>, properties);
        QList<Strut> struts;
        for (const Numbers &numbers : properties) {
            if (const auto strut = strutFromProperty(numbers, root))
                struts.append(*strut);
        }
        QTEST(workArea(left, root, struts), "leftArea");
        QTEST(workArea(right, root, struts), "rightArea");
    }

    void findsTheListedAreaOfAMonitor()
    {
        // The window manager's order is not Qt's.
        const Numbers numbers{1440, 30, 1920, 1050, 0, 25, 1440, 875};
        QCOMPARE(listedWorkArea(left, numbers), QRect(0, 25, 1440, 875));
        QCOMPARE(listedWorkArea(right, numbers), QRect(1440, 30, 1920, 1050));
        QCOMPARE(listedWorkArea(QRect(3360, 0, 800, 600), numbers), std::nullopt);
        QCOMPARE(listedWorkArea(left, {0, 0, 1440}), std::nullopt);
    }
};

RANDBLATT_TEST_MAIN(WorkAreaTest, QCoreApplication)
#include "tst_workarea.moc"
