#include "FakePlayer.h"
#include "platform/mpris/MprisMediaKeySink.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class TestMprisMediaKeySink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_daemon = std::make_unique<QProcess>();
        m_daemon->start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        QVERIFY(m_daemon->waitForStarted());
        QTRY_VERIFY(m_daemon->canReadLine());
        m_address = QString::fromUtf8(m_daemon->readLine()).trimmed();
        m_bus = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(m_address, u"sink"_s));
        QVERIFY(m_bus->isConnected());
    }
    void cleanup()
    {
        m_bus.reset();
        QDBusConnection::disconnectFromBus(u"sink"_s);
        m_daemon->kill();
        m_daemon->waitForFinished();
    }

    void turnsEachKeyIntoOneCall()
    {
        FakePlayer player(m_address, u"one"_s, u"Playing"_s);
        MprisMediaKeySink sink(*m_bus);
        for (const auto key : {MediaKey::play, MediaKey::next, MediaKey::previous})
            sink.postMediaKey(key);
        QTRY_COMPARE(player.calls, QStringList({u"PlayPause"_s, u"Next"_s, u"Previous"_s}));
    }

    void followsWhatPlays()
    {
        // The proxy stands for the others and plays when one of them plays.
        FakePlayer proxy(m_address, u"playerctld"_s, u"Playing"_s);
        FakePlayer first(m_address, u"a"_s, u"Paused"_s);
        FakePlayer second(m_address, u"b"_s, u"Playing"_s);
        MprisMediaKeySink sink(*m_bus);
        sink.postMediaKey(MediaKey::play);
        QTRY_COMPARE(second.calls.size(), 1);

        // Both play: the one that was current stays so.
        first.setStatus(u"Playing"_s);
        QTest::qWait(50);
        sink.postMediaKey(MediaKey::next);
        QTRY_COMPARE(second.calls.size(), 2);

        second.setStatus(u"Paused"_s);
        first.setStatus(u"Paused"_s);
        QTest::qWait(50);
        sink.postMediaKey(MediaKey::previous);
        QTRY_COMPARE(first.calls, QStringList(u"Previous"_s));
        QCOMPARE(second.calls.size(), 2);
        QVERIFY(proxy.calls.isEmpty());
    }

    void knowsAPlayerByAllItsNames()
    {
        FakePlayer twoNames(m_address, u"a"_s, u"Playing"_s);
        twoNames.addName(u"a.instance1"_s);
        FakePlayer other(m_address, u"b"_s, u"Paused"_s);
        MprisMediaKeySink sink(*m_bus);
        sink.postMediaKey(MediaKey::play);
        QTRY_COMPARE(twoNames.calls.size(), 1);
        twoNames.setStatus(u"Paused"_s);
        other.setStatus(u"Playing"_s);
        QTest::qWait(50);
        sink.postMediaKey(MediaKey::next);
        QTRY_COMPARE(other.calls, QStringList(u"Next"_s));
    }

    void doesNotWaitForAPlayerThatNeverAnswers()
    {
        FakePlayer mute(m_address, u"a"_s, u"Playing"_s);
        mute.isMute = true;
        FakePlayer lively(m_address, u"b"_s, u"Paused"_s);
        MprisMediaKeySink sink(*m_bus);
        QElapsedTimer posting;
        posting.start();
        sink.postMediaKey(MediaKey::play);
        QVERIFY(posting.elapsed() < 100);
        // While nobody is known to play, the key waits for what the mute player does not say.
        lively.setStatus(u"Playing"_s);
        QTRY_COMPARE(lively.calls, QStringList(u"PlayPause"_s));
    }

    void leavesAPlayerThatHangsAlone()
    {
        FakePlayer hung(m_address, u"a"_s, u"Playing"_s);
        FakePlayer other(m_address, u"b"_s, u"Paused"_s);
        MprisMediaKeySink sink(*m_bus);
        sink.postMediaKey(MediaKey::play);
        QTRY_COMPARE(hung.calls, QStringList(u"PlayPause"_s));
        hung.isMute = true;
        other.setStatus(u"Playing"_s);
        // In order, and nothing for the other one to do when it wakes.
        QElapsedTimer waiting;
        waiting.start();
        sink.postMediaKey(MediaKey::next);
        sink.postMediaKey(MediaKey::previous);
        QTRY_COMPARE(other.calls, QStringList({u"Next"_s, u"Previous"_s}));
        QVERIFY(waiting.elapsed() < 1000);
        // From now on nobody waits for it.
        waiting.start();
        sink.postMediaKey(MediaKey::play);
        QTRY_COMPARE(other.calls.size(), 3);
        QVERIFY(waiting.elapsed() < 250);
        QCOMPARE(hung.calls.size(), 1);
        // It is awake, and plays alone.
        hung.isMute = false;
        other.setStatus(u"Paused"_s);
        hung.setStatus(u"Playing"_s);
        QTRY_VERIFY((sink.postMediaKey(MediaKey::next), hung.calls.contains(u"Next"_s)));
    }

    void keepsKeysFromPlayersThatAllHang()
    {
        FakePlayer hung(m_address, u"a"_s, u"Playing"_s);
        MprisMediaKeySink sink(*m_bus);
        sink.postMediaKey(MediaKey::play);
        QTRY_COMPARE(hung.calls.size(), 1);
        hung.isMute = true;
        sink.postMediaKey(MediaKey::next);
        FakePlayer late(m_address, u"b"_s, u"Stopped"_s);
        QTRY_VERIFY((sink.postMediaKey(MediaKey::previous), late.calls.contains(u"Previous"_s)));
        QCOMPARE(hung.calls.size(), 1);
    }

    void leavesPlayersOfItsOwnAlone()
    {
        // As the helper of the web player, which the desktop's media widgets are to find.
        QProcess own;
        own.start(QStringLiteral(PLAYER_PROCESS), {m_address});
        QTRY_VERIFY(own.canReadLine());
        const FakePlayer other(m_address, u"b"_s, u"Stopped"_s);
        MprisMediaKeySink sink(*m_bus);
        // The key waits until both are known.
        sink.postMediaKey(MediaKey::next);
        QTRY_COMPARE(other.calls, QStringList(u"Next"_s));
        own.kill();
        own.waitForFinished();
    }

    void forgetsAPlayerThatVanishes()
    {
        auto gone = std::make_unique<FakePlayer>(m_address, u"a"_s, u"Playing"_s);
        FakePlayer stays(m_address, u"b"_s, u"Paused"_s);
        MprisMediaKeySink sink(*m_bus);
        sink.postMediaKey(MediaKey::play);
        QTRY_COMPARE(gone->calls.size(), 1);
        gone.reset();
        sink.postMediaKey(MediaKey::play);
        QTest::qWait(50);
        sink.postMediaKey(MediaKey::next);
        QTRY_VERIFY(stays.calls.contains(u"Next"_s));
    }

    void findsAPlayerThatComesLater()
    {
        MprisMediaKeySink sink(*m_bus);
        sink.postMediaKey(MediaKey::play);
        const FakePlayer late(m_address, u"late"_s, u"Stopped"_s);
        // What was pressed before it came is not for it.
        QTRY_VERIFY((sink.postMediaKey(MediaKey::next), late.calls.contains(u"Next"_s)));
        QVERIFY(!late.calls.contains(u"PlayPause"_s));
    }

    void dropsKeysWithoutABus()
    {
        MprisMediaKeySink sink(QDBusConnection(u"no such connection"_s));
        sink.postMediaKey(MediaKey::play);
    }

private:
    std::unique_ptr<QProcess> m_daemon;
    std::unique_ptr<QDBusConnection> m_bus;
    QString m_address;
};

RANDBLATT_TEST_MAIN(TestMprisMediaKeySink, QCoreApplication)
#include "tst_mprismediakeysink.moc"
