#include "platform/freedesktop/SingleInstance.h"
#include "support/PrivateBus.h"
#include "support/TestEnvironment.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <memory>

using namespace randblatt;
using namespace Qt::StringLiterals;

namespace {

const QString busName = u"com.randblatt.Quillbar"_s;

QDBusMessage callOf(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(busName, u"/com/randblatt/Quillbar"_s,
                                                       u"org.freedesktop.Application"_s, method);
    call.setArguments(arguments);
    return call;
}

} // namespace

class SingleInstanceTest : public QObject
{
    Q_OBJECT

private:
    PrivateBus m_bus;
    int m_connections = 0;

    QDBusConnection connection()
    {
        return QDBusConnection::connectToBus(m_bus.address(), QString::number(++m_connections));
    }

    /// Starts as a second process would, while this thread answers as the first. Returns whether the second
    /// is to run.
    bool startMeanwhile(const QList<QUrl> &urls)
    {
        bool runs = true;
        const QDBusConnection second = connection();
        const std::unique_ptr<QThread> thread(
            QThread::create([&] { runs = SingleInstance(second).acquire(urls); }));
        thread->start();
        while (!thread->wait(QDeadlineTimer(1)))
            QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        return runs;
    }

private Q_SLOTS:
    void theSecondHandsItsRequestToTheFirst()
    {
        SingleInstance first(connection());
        QSignalSpy activated(&first, &SingleInstance::activated);
        QSignalSpy opened(&first, &SingleInstance::opened);
        QVERIFY(first.acquire({QUrl(u"randblatt://own"_s)}));
        QCOMPARE(opened.count(), 0);

        QVERIFY(!startMeanwhile({}));
        QCOMPARE(activated.count(), 1);

        const QUrl callback(u"randblatt://callback?code=a%26b&state=ü"_s);
        QVERIFY(!startMeanwhile({callback}));
        QCOMPARE(opened.count(), 1);
        QCOMPARE(opened.first().first().value<QList<QUrl>>(), QList{callback});
        QCOMPARE(activated.count(), 1);
    }

    void launchersCallItWithTheStandardsSignatures()
    {
        SingleInstance instance(connection());
        QVERIFY(instance.acquire({}));
        QSignalSpy activated(&instance, &SingleInstance::activated);
        QSignalSpy opened(&instance, &SingleInstance::opened);
        QSignalSpy actions(&instance, &SingleInstance::actionActivated);
        const QDBusConnection launcher = connection();
        const QVariantMap data{{u"desktop-startup-id"_s, u"x"_s}};
        for (const QDBusMessage &call :
             {callOf(u"Activate"_s, {data}),
              callOf(u"Open"_s, {QStringList{u"randblatt://callback"_s}, data}),
              callOf(u"ActivateAction"_s, {u"toggle"_s, QVariant::fromValue(QVariantList()), data})}) {
            QDBusPendingReply<> reply = launcher.asyncCall(call);
            QTRY_VERIFY(reply.isFinished());
            QVERIFY2(!reply.isError(), qUtf8Printable(reply.error().message()));
        }
        QCOMPARE(activated.count(), 1);
        QCOMPARE(opened.count(), 1);
        QCOMPARE(actions.count(), 1);
        const QString introspection = [&] {
            QDBusPendingReply<QString> reply = launcher.asyncCall(
                QDBusMessage::createMethodCall(busName, u"/com/randblatt/Quillbar"_s,
                                               u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s));
            return QTest::qWaitFor([&] { return reply.isFinished(); }) ? reply.value() : QString();
        }();
        QVERIFY(introspection.contains(u"org.freedesktop.Application"_s));
    }

    void theNameIsFreeAgainAfterTheFirstHasGone()
    {
        {
            const QDBusConnection bus = connection();
            QVERIFY(SingleInstance(bus).acquire({}));
            QDBusConnection::disconnectFromBus(bus.name());
        }
        SingleInstance second(connection());
        QVERIFY(second.acquire({}));
    }

    void aProcessThatRefusesKeepsTheName()
    {
        // Owns the name, but answers no call: something has to give, and it is not the second window.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Das laufende Quillbar antwortet nicht"_s));
        const QDBusConnection other = connection();
        QVERIFY(other.interface()->registerService(busName).value() ==
                QDBusConnectionInterface::ServiceRegistered);
        QVERIFY(!startMeanwhile({}));
        QDBusConnection::disconnectFromBus(other.name());
    }

    void runsWithoutASessionBus()
    {
        SingleInstance instance(QDBusConnection(u"never connected"_s));
        QVERIFY(instance.acquire({}));
    }

    void cleanup()
    {
        while (m_connections > 0)
            QDBusConnection::disconnectFromBus(QString::number(m_connections--));
    }
};

RANDBLATT_TEST_MAIN(SingleInstanceTest, QCoreApplication)
#include "tst_singleinstance.moc"
