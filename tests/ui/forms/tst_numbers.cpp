#include "support/TestEnvironment.h"
#include "ui/forms/Numbers.h"

#include <QLocale>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace randblatt;

class NumbersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesThemAlikeInEveryLanguage()
    {
        QLocale::setDefault(QLocale(QLocale::German));
        QCOMPARE(Numbers::twoDecimals(0.12), u"0.12"_s);
        QCOMPARE(Numbers::twoDecimals(0), u"0.00"_s);
        QCOMPARE(Numbers::whole(90), u"90"_s);
        QCOMPARE(Numbers::percent(0.35), u"35"_s);
        // Binary fractions lie a little beside these.
        QCOMPARE(Numbers::percent(0.55), u"55"_s);
        QCOMPARE(Numbers::percent(0.29), u"29"_s);
    }

    void snapsToDecimalsWithinTheRange_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::addColumn<double>("step");
        QTest::addColumn<double>("snapped");
        QTest::newRow("on a step") << 0.12 << 0.0 << 0.8 << 0.02 << 0.12;
        QTest::newRow("with noise") << 7 * 0.02 << 0.0 << 0.8 << 0.02 << 0.14;
        QTest::newRow("with noise from an offset") << 0.3 + 5 * 0.05 << 0.3 << 1.0 << 0.05 << 0.55;
        QTest::newRow("between steps") << 93.0 << 30.0 << 200.0 << 5.0 << 95.0;
        QTest::newRow("above") << 1.7 << 0.7 << 1.6 << 0.01 << 1.6;
        QTest::newRow("below") << -1.0 << 0.7 << 1.6 << 0.01 << 0.7;
        QTest::newRow("the last step would pass the end") << 1.0 << 0.0 << 1.0 << 0.3 << 0.9;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 120.0 << 700.0 << 10.0
                                  << 700.0;
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 120.0 << 700.0 << 10.0
                                   << 120.0;
    }

    void snapsToDecimalsWithinTheRange()
    {
        QFETCH(double, value);
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(double, step);
        QTEST(Numbers::snapped(value, from, to, step), "snapped");
        // QTEST compares loosely; what is stored is to be the decimal number itself.
        QFETCH(double, snapped);
        QVERIFY(Numbers::snapped(value, from, to, step) == snapped);
    }
};

RANDBLATT_TEST_MAIN(NumbersTest, QCoreApplication)
#include "tst_numbers.moc"
