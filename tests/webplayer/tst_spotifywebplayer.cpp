#include "modules/media/SpotifyWebPlayer.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// Helpers that are shell scripts, and the lines that they were told.
struct Fixture
{
    QTemporaryDir folder;
    QStringList tokens{u"first"_s, u"second"_s, u"third"_s, u"fourth"_s};
    std::unique_ptr<SpotifyWebPlayer> player;

    /// A helper that runs `script` once it was told to load, and then keeps what it is told.
    explicit Fixture(const QByteArray &script)
    {
        QFile helper(path());
        helper.open(QFile::WriteOnly);
        helper.write(
            "#!/bin/sh\ncd \"$(dirname \"$0\")\"\necho run >> runs\nread line\necho \"$line\" > told\n" +
            script + "\nexec cat >> told\n");
        helper.close();
        helper.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        player = std::make_unique<SpotifyWebPlayer>(
            path(), QUrl(u"https://sdk.example"_s),
            [this](QObject *, const SpotifyWebPlayer::TokenCompletion &completion) {
                completion(tokens.isEmpty() ? std::nullopt : std::optional(tokens.takeFirst()));
            });
    }

    [[nodiscard]] QString path() const { return folder.filePath(u"helper"_s); }
    [[nodiscard]] QStringList lines(const QString &name) const
    {
        QFile file(folder.filePath(name));
        file.open(QFile::ReadOnly);
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }
};

/// The process whose parent is `parent`; 0 without one.
qint64 childOf(qint64 parent)
{
    const QStringList processes = QDir(u"/proc"_s).entryList(QDir::Dirs);
    for (const QString &process : processes) {
        QFile stat(u"/proc/"_s + process + u"/stat"_s);
        if (!stat.open(QFile::ReadOnly))
            continue;
        const QByteArray text = stat.readAll();
        const QList<QByteArray> fields = text.sliced(text.lastIndexOf(')') + 2).split(' ');
        if (fields.at(1).toLongLong() == parent && fields.at(0) != "Z")
            return process.toLongLong();
    }
    return 0;
}

} // namespace

class TestSpotifyWebPlayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The engine refuses its sandbox to root.
        if (geteuid() == 0)
            qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }

    void handsOverTokens()
    {
        Fixture f(
            R"(echo '{"type":"loaded"}'; echo '{"type":"message","body":{"type":"ready","device_id":"own"}}')");
        QSignalSpy published(f.player.get(), &SpotifyWebPlayer::deviceIDPublished);
        f.player->start();
        QVERIFY(!f.player->isReady());
        QTRY_VERIFY(f.player->isReady());
        QCOMPARE(f.player->deviceID(), u"own"_s);
        QCOMPARE(published.size(), 1);
        f.player->start();
        const QStringList expected{
            uR"({"sdk":"https://sdk.example","type":"load"})"_s, uR"({"token":"first","type":"token"})"_s,
            uR"({"token":"second","type":"token"})"_s, uR"({"token":"third","type":"token"})"_s};
        QTRY_COMPARE(f.lines(u"told"_s), expected);
        QCOMPARE(f.lines(u"runs"_s).size(), 1);
    }

    void understandsOnlyItsMessages()
    {
        Fixture f(R"(
            echo 'no JSON'; echo '[]'; echo '{"type":"message","body":"ready"}'
            echo '{"type":"message","body":{"type":"account_error","device_id":"x"}}'
            echo '{"type":"message","body":{"type":"ready","device_id":"own"}}'
            echo '{"type":"message","body":{"type":"not_ready","device_id":"other"}}'
            echo '{"type":"protectedAudio","available":false}')");
        f.player->start();
        QTRY_VERIFY(f.player->problem().contains("Widevine"_L1));
        QVERIFY(!f.player->isReady());
        QCOMPARE(f.player->deviceID(), u"own"_s);

        Fixture nameless(R"(echo '{"type":"message","body":{"type":"ready","device_id":1}}')");
        nameless.player->start();
        QTRY_VERIFY(nameless.player->isReady());
        QVERIFY(!nameless.player->deviceID());
    }

    void startsAHelperThatDiesAgainWithPauses()
    {
        Fixture f(R"(echo '{"type":"message","body":{"type":"ready","device_id":"own"}}'; exit 1)");
        QSignalSpy published(f.player.get(), &SpotifyWebPlayer::deviceIDPublished);
        f.player->start();
        QTRY_COMPARE(published.size(), 2);
        QVERIFY(!f.player->isReady());
        QVERIFY(!f.player->deviceID());
        f.player->start();
        QTest::qWait(2000);
        QCOMPARE(f.lines(u"runs"_s).size(), 2);
        QTRY_COMPARE(f.lines(u"runs"_s).size(), 3);
    }

    void endsWithTheSignOut()
    {
        Fixture f(R"(echo '{"type":"message","body":{"type":"ready","device_id":"own"}}')");
        f.player->start();
        QTRY_VERIFY(f.player->isReady());
        const qint64 first = childOf(QCoreApplication::applicationPid());
        QVERIFY(first != 0);
        QElapsedTimer stopping;
        stopping.start();
        f.player->stop();
        QVERIFY(stopping.elapsed() < 100);
        QVERIFY(!f.player->isReady());
        QVERIFY(!f.player->deviceID());
        QTRY_VERIFY(!QFile::exists(u"/proc/%1/exe"_s.arg(first)));
        // Nor does it come back by itself, but with the next sign-in.
        QCOMPARE(f.lines(u"runs"_s).size(), 1);
        f.player->start();
        QTRY_VERIFY(f.player->isReady());
        QCOMPARE(f.lines(u"runs"_s).size(), 2);
    }

    void givesUpAHelperThatCannotStart()
    {
        Fixture f("echo noise >&2; echo libfoo.so.6: cannot open shared object file >&2; exit 127");
        f.player->start();
        QTRY_VERIFY_WITH_TIMEOUT(f.player->canRetry(), 40'000);
        QCOMPARE(f.lines(u"runs"_s).size(), 5);
        QVERIFY(f.player->problem().contains(u"„libfoo.so.6: cannot open shared object file“"_s));
        QVERIFY(!f.player->problem().contains(u"noise"_s));
        // Neither by itself nor when the card is shown, until it is another or somebody wants it.
        f.player->start();
        QVERIFY(f.player->canRetry());
        QFile helper(f.path());
        QVERIFY(helper.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(helper.open(QFile::ReadWrite));
        QVERIFY(helper.setFileTime(QDateTime::currentDateTime().addDays(1), QFile::FileModificationTime));
        helper.close();
        f.player->start();
        QVERIFY(!f.player->canRetry());
        QCOMPARE(f.player->problem(), QString());
        QTRY_COMPARE(f.lines(u"runs"_s).size(), 6);
    }

    void saysWhyThereIsNoSandbox_data()
    {
        QTest::addColumn<QByteArray>("isRoot");
        QTest::addColumn<QString>("reason");
        QTest::newRow("root") << QByteArray("true") << u"„root“"_s;
        QTest::newRow("no namespaces") << QByteArray("false") << u"User-Namespaces"_s;
    }
    void saysWhyThereIsNoSandbox()
    {
        QFETCH(QByteArray, isRoot);
        QFETCH(QString, reason);
        Fixture f("echo '{\"type\":\"noSandbox\",\"isRoot\":" + isRoot + "}'; exit 1");
        QSignalSpy problems(f.player.get(), &SpotifyWebPlayer::problemChanged);
        f.player->start();
        QTRY_VERIFY(f.player->problem().contains(reason));
        // There is no use in trying that again.
        QTRY_COMPARE(childOf(QCoreApplication::applicationPid()), 0);
        f.player->start();
        QCOMPARE(f.lines(u"runs"_s).size(), 1);
        f.player->retry();
        QTRY_COMPARE(f.lines(u"runs"_s).size(), 2);
    }

    void noticesAHelperThatHangs()
    {
        Fixture f(
            R"(echo '{"type":"loaded"}'; echo '{"type":"message","body":{"type":"ready","device_id":"own"}}')");
        f.player->start();
        QTRY_VERIFY(f.player->isReady());
        const qint64 child = childOf(QCoreApplication::applicationPid());
        ::kill(static_cast<pid_t>(child), SIGSTOP);
        f.player->setWatched(true);
        QTRY_VERIFY_WITH_TIMEOUT(!f.player->isReady(), 20'000);
        QVERIFY(!QFile::exists(u"/proc/%1/exe"_s.arg(child)));
        QTRY_COMPARE_WITH_TIMEOUT(f.lines(u"runs"_s).size(), 2, 10'000);
    }

    void doesWithoutTheHelper()
    {
        const QTemporaryDir folder;
        const QString helper = folder.filePath(u"helper"_s);
        SpotifyWebPlayer player(helper, QUrl(), {});
        QVERIFY(player.problem().contains("quillbar-webplayer"_L1));
        player.start();
        player.start();
        player.pushToken(u"token"_s);
        QVERIFY(!player.problem().isEmpty());
        QVERIFY(!player.isReady());
        // It is found as soon as it is installed.
        QVERIFY(QFile::link(u"/bin/cat"_s, helper));
        player.start();
        QCOMPARE(player.problem(), QString());
    }

    void endsWithTheApplication_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("asked") << SIGTERM;
        QTest::newRow("killed") << SIGKILL;
    }
    void endsWithTheApplication()
    {
        QFETCH(int, signal);
#ifdef QUILLBAR_WEBPLAYER
        const QString helper = QStringLiteral(QUILLBAR_WEBPLAYER);
#else
        const Fixture f("");
        const QString helper = f.path();
#endif
        QProcess parent;
        parent.start(QStringLiteral(WEBPLAYER_PARENT), {helper});
        qint64 child = 0;
        QTRY_VERIFY((child = childOf(parent.processId())) != 0);
        QTest::qWait(300);
        QVERIFY(QFile::exists(u"/proc/%1"_s.arg(child)));
        ::kill(static_cast<pid_t>(parent.processId()), signal);
        QVERIFY(parent.waitForFinished());
        QTRY_VERIFY(!QFile::exists(u"/proc/%1/exe"_s.arg(child)));
    }
};

RANDBLATT_TEST_MAIN(TestSpotifyWebPlayer, QCoreApplication)
#include "tst_spotifywebplayer.moc"
