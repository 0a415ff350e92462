#include "platform/freedesktop/TerminationSignals.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>
#include <QTest>

using namespace randblatt;

class TerminationSignalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksTheApplicationToEnd_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

    void asksTheApplicationToEnd()
    {
        QFETCH(int, number);
        TerminationSignals termination;
        QSignalSpy requested(&termination, &TerminationSignals::terminationRequested);
        QCOMPARE(std::raise(number), 0);
        QCOMPARE(requested.count(), 0); // not from within the handler
        QVERIFY(requested.wait());
        QCOMPARE(requested.count(), 1);
    }

    void theFormerHandlerReturns()
    {
        static volatile std::sig_atomic_t count = 0;
        const auto former = std::signal(SIGHUP, [](int) { count = count + 1; });
        {
            const TerminationSignals termination;
        }
        QCOMPARE(std::raise(SIGHUP), 0);
        QCOMPARE(int(count), 1);
        std::signal(SIGHUP, former);
    }
};

RANDBLATT_TEST_MAIN(TerminationSignalsTest, QCoreApplication)
#include "tst_terminationsignals.moc"
