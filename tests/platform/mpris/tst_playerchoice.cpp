#include "platform/mpris/PlayerChoice.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

Q_DECLARE_METATYPE(randblatt::PlayerState)

class TestPlayerChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesThePlayer_data()
    {
        QTest::addColumn<QList<PlayerState>>("players");
        QTest::addColumn<QString>("current");
        QTest::addColumn<int>("chosen");
        const QList<PlayerState> bothPlay{{u"a"_s, true, 1}, {u"b"_s, true, 2}};
        QTest::newRow("keeps the current one while it plays") << bothPlay << u"b"_s << 1;
        QTest::newRow("else the first that plays") << bothPlay << u"c"_s << 0;
        QTest::newRow("leaves the current one when it pauses and another plays")
            << QList<PlayerState>{{u"a"_s, false, 5}, {u"b"_s, true, 2}} << u"a"_s << 1;
        QTest::newRow("else the one that played last")
            << QList<PlayerState>{{u"a"_s, false, 0}, {u"b"_s, false, 3}, {u"c"_s, false, 7}} << u"b"_s << 2;
        QTest::newRow("else the first")
            << QList<PlayerState>{{u"a"_s, false, 0}, {u"b"_s, false, 0}} << u"b"_s << 0;
        QTest::newRow("rather one that answers than one that hangs")
            << QList<PlayerState>{{u"a"_s, false, 0}, {u"b"_s, false, 7, true}} << u"b"_s << 0;
        QTest::newRow("one that hangs where there is no other")
            << QList<PlayerState>{{u"a"_s, false, 7, true}} << u"b"_s << 0;
        QTest::newRow("none without players") << QList<PlayerState>() << u"b"_s << -1;
    }
    void choosesThePlayer()
    {
        QFETCH(QList<PlayerState>, players);
        QFETCH(QString, current);
        QTEST(static_cast<int>(choosePlayer(players, current).value_or(-1)), "chosen");
    }
};

RANDBLATT_TEST_MAIN(TestPlayerChoice, QCoreApplication)
#include "tst_playerchoice.moc"
