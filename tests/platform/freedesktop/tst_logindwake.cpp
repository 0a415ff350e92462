#include "platform/freedesktop/LogindWake.h"
#include "support/PrivateBus.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class LogindWakeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsOfWakingAndNotOfFallingAsleep()
    {
        const PrivateBus bus;
        auto manager = QDBusConnection::connectToBus(bus.address(), u"manager"_s);
        QVERIFY(manager.registerService(u"org.freedesktop.login1"_s));
        LogindWake wake(QDBusConnection::connectToBus(bus.address(), u"listener"_s));
        QSignalSpy woke(&wake, &SystemWake::woke);
        const auto prepare = [&](bool sleeps) {
            auto message = QDBusMessage::createSignal(
                u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s);
            message.setArguments({sleeps});
            QVERIFY(manager.send(message));
        };
        prepare(true);
        prepare(false);
        QTRY_COMPARE(woke.count(), 1);
        QTest::qWait(20);
        QCOMPARE(woke.count(), 1);
    }
};

RANDBLATT_TEST_MAIN(LogindWakeTest, QCoreApplication)
#include "tst_logindwake.moc"
