#include "platform/freedesktop/TrayHost.h"
#include "support/PrivateBus.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>
#include <QTest>

using namespace randblatt;
using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.kde.StatusNotifierWatcher"_s;

} // namespace

/// What a desktop's panel offers on the bus.
class FakeWatcher : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER isHostRegistered)

public:
    bool isHostRegistered = false;

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();
};

class TrayHostTest : public QObject
{
    Q_OBJECT

private:
    PrivateBus m_bus;

private Q_SLOTS:
    void followsThePanelOfTheDesktop()
    {
        QDBusConnection desktop = QDBusConnection::connectToBus(m_bus.address(), u"desktop"_s);
        FakeWatcher watcher;
        QVERIFY(desktop.registerObject(u"/StatusNotifierWatcher"_s, &watcher,
                                       QDBusConnection::ExportAllContents));

        TrayHost tray(QDBusConnection::connectToBus(m_bus.address(), u"application"_s));
        QSignalSpy changed(&tray, &TrayHost::availableChanged);
        QVERIFY(!tray.isAvailable());

        // A watcher without a host shows no icons.
        QVERIFY(desktop.registerService(service));
        QVERIFY(!changed.wait(50));

        watcher.isHostRegistered = true;
        Q_EMIT watcher.StatusNotifierHostRegistered();
        QVERIFY(changed.wait());
        QVERIFY(tray.isAvailable());

        watcher.isHostRegistered = false;
        Q_EMIT watcher.StatusNotifierHostUnregistered();
        QVERIFY(changed.wait());
        QVERIFY(!tray.isAvailable());

        // The panel crashes and comes again, its host already there.
        watcher.isHostRegistered = true;
        QVERIFY(desktop.unregisterService(service));
        QVERIFY(desktop.registerService(service));
        QVERIFY(changed.wait());
        QVERIFY(tray.isAvailable());
        QVERIFY(desktop.unregisterService(service));
        QVERIFY(changed.wait());
        QVERIFY(!tray.isAvailable());
    }

    void findsATrayThatWasThereBefore()
    {
        QDBusConnection desktop = QDBusConnection::connectToBus(m_bus.address(), u"desktop"_s);
        FakeWatcher watcher;
        watcher.isHostRegistered = true;
        QVERIFY(desktop.registerObject(u"/StatusNotifierWatcher"_s, &watcher,
                                       QDBusConnection::ExportAllContents));
        QVERIFY(desktop.registerService(service));
        const TrayHost tray(QDBusConnection::connectToBus(m_bus.address(), u"application"_s));
        QTRY_VERIFY(tray.isAvailable());
    }

    void aTrayOfTheOlderKindDoesAsWell()
    {
        TrayHost tray(QDBusConnection(u"never connected"_s));
        QSignalSpy changed(&tray, &TrayHost::availableChanged);
        tray.setClassicTray(true);
        QVERIFY(tray.isAvailable());
        tray.setClassicTray(false);
        QVERIFY(!tray.isAvailable());
        QCOMPARE(changed.count(), 2);
    }

    void cleanup()
    {
        QDBusConnection::disconnectFromBus(u"desktop"_s);
        QDBusConnection::disconnectFromBus(u"application"_s);
    }
};

RANDBLATT_TEST_MAIN(TrayHostTest, QCoreApplication)
#include "tst_trayhost.moc"
