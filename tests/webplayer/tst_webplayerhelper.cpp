#include "modules/media/MediaFixture.h"
#include "platform/mpris/MprisPlayers.h"
#include "support/PrivateBus.h"
#include "support/TestEnvironment.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

// An SDK that asks for a token like the service's own, and becomes ready when it gets one: its device's id
// tells what it was made with.
constexpr auto sdk = R"(
    window.Spotify = {
        Player: class {
            constructor(options) { this.options = options; this.listeners = {}; }
            addListener(type, listener) { this.listeners[type] = listener; }
            connect() {
                this.options.getOAuthToken(token => {
                    this.listeners.initialization_error('harmless');
                    const id = [this.options.name, this.options.volume, token, location.origin].join();
                    this.listeners.ready({ device_id: id });
                    setTimeout(() => this.again(), 300);
                });
            }
            again() { this.options.getOAuthToken(token => this.listeners.not_ready({ device_id: token })); }
        }
    };
    addEventListener('load', () => window.onSpotifyWebPlaybackSDKReady());
)";

} // namespace

class TestWebPlayerHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The engine refuses its sandbox to root.
        if (geteuid() == 0)
            qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }

    void runsTheSdkInItsPage()
    {
        SpotifyServer server;
        server.sdkScript = sdk;
        SpotifyWebPlayer player(QStringLiteral(QUILLBAR_WEBPLAYER), server.hosts().sdk,
                                [](QObject *, const SpotifyWebPlayer::TokenCompletion &completion) {
                                    completion(u"it's \\ a token"_s);
                                });
        player.start();
        QTRY_VERIFY_WITH_TIMEOUT(player.isReady(), 30'000);
        QCOMPARE(player.deviceID(), u"Quillbar,0.8,it's \\ a token,https://quillbar.invalid"_s);
        QTRY_VERIFY(!player.isReady());
        // This machine's engine may have the module; that it was looked for shows in either case.
        QCOMPARE(server.lines(), QStringList(u"GET /spotify-player.js"_s));
    }

    void staysOnItsOwnPage()
    {
        SpotifyServer server;
        // Tries to leave in every way that a script has, and then asks for a token.
        const QByteArray elsewhere = server.url(u"/image/elsewhere"_s).toEncoded();
        server.sdkScript = QByteArray(R"(
            window.Spotify = {
                Player: class {
                    constructor(options) { this.options = options; this.listeners = {}; }
                    addListener(type, listener) { this.listeners[type] = listener; }
                    connect() {
                        const form = document.createElement('form');
                        form.method = 'POST';
                        form.action = 'ELSEWHERE/form';
                        document.body.append(form);
                        form.submit();
                        window.open('ELSEWHERE/window');
                        const frame = document.createElement('iframe');
                        frame.src = 'ELSEWHERE/frame';
                        frame.onload = () => {
                            location.href = 'ELSEWHERE/page';
                            setTimeout(() => this.options.getOAuthToken(token =>
                                this.listeners.ready({ device_id: token + ' at ' + location.origin })), 500);
                        };
                        document.body.append(frame);
                    }
                }
            };
            addEventListener('load', () => window.onSpotifyWebPlaybackSDKReady());
        )")
                               .replace("ELSEWHERE", elsewhere);
        SpotifyWebPlayer player(
            QStringLiteral(QUILLBAR_WEBPLAYER), server.hosts().sdk,
            [](QObject *, const SpotifyWebPlayer::TokenCompletion &completion) { completion(u"secret"_s); });
        player.start();
        QTRY_VERIFY_WITH_TIMEOUT(player.isReady(), 30'000);
        QCOMPARE(player.deviceID(), u"secret at https://quillbar.invalid"_s);
        QCOMPARE(server.lines(), (QStringList{u"GET /spotify-player.js"_s, u"GET /image/elsewhere/frame"_s}));
        // And it answers when it is asked, so that nobody starts it anew.
        player.setWatched(true);
        QSignalSpy ends(&player, &SpotifyWebPlayer::isReadyChanged);
        QVERIFY(!ends.wait(12'000));
    }

    void isQuillbarOnceToTheDesktopAndNobodyToUs()
    {
        const PrivateBus privateBus;
        qputenv("DBUS_SESSION_BUS_ADDRESS", privateBus.address().toLatin1());
        const QDBusConnection bus = QDBusConnection::connectToBus(privateBus.address(), u"desktop"_s);
        SpotifyServer server;
        // Plays ten seconds of a quiet tone, which is long enough to count as music.
        server.sdkScript = R"(
            const rate = 8000, count = 10 * rate, wav = new DataView(new ArrayBuffer(44 + count));
            const text = (at, value) => [...value].forEach((c, i) => wav.setUint8(at + i, c.charCodeAt(0)));
            text(0, 'RIFF'); wav.setUint32(4, 36 + count, true); text(8, 'WAVEfmt ');
            wav.setUint32(16, 16, true); wav.setUint16(20, 1, true); wav.setUint16(22, 1, true);
            wav.setUint32(24, rate, true); wav.setUint32(28, rate, true);
            wav.setUint16(32, 1, true); wav.setUint16(34, 8, true);
            text(36, 'data'); wav.setUint32(40, count, true);
            for (let i = 0; i < count; ++i) wav.setUint8(44 + i, 128 + 20 * Math.sin(i / 3));
            const audio = new Audio(URL.createObjectURL(new Blob([wav.buffer], { type: 'audio/wav' })));
            audio.loop = true;
            audio.play();
            window.Spotify = {};
        )";
        MprisPlayers players(bus);
        QSignalSpy followed(&players, &MprisPlayers::currentChanged);
        SpotifyWebPlayer player(QStringLiteral(QUILLBAR_WEBPLAYER), server.hosts().sdk, {});
        player.start();
        const auto found = [&] {
            QStringList names = bus.interface()->registeredServiceNames().value();
            return names.filter(u"org.mpris.MediaPlayer2."_s);
        };
        QTRY_COMPARE_WITH_TIMEOUT(found().size(), 1, 30'000);
        QDBusMessage get = QDBusMessage::createMethodCall(found().first(), u"/org/mpris/MediaPlayer2"_s,
                                                          u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        get << u"org.mpris.MediaPlayer2"_s << u"Identity"_s;
        const QDBusReply<QVariant> identity = bus.call(get);
        QCOMPARE(identity.value().toString(), u"Quillbar"_s);
        get.setArguments({u"org.mpris.MediaPlayer2.Player"_s, u"PlaybackStatus"_s});
        QTRY_COMPARE(QDBusReply<QVariant>(bus.call(get)).value().toString(), u"Playing"_s);
        QCOMPARE(found().size(), 1);
        QCOMPARE(followed.size(), 0);
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void playsFromSignInToTheLastCommand()
    {
        MediaFixture f(false, QStringLiteral(QUILLBAR_WEBPLAYER));
        f.server.sdkScript = QByteArray(sdk).replace("setTimeout(() => this.again(), 300);", "");
        f.server.playlists = {SpotifyServer::playlist(u"mine"_s, u"Meine"_s, 2)};
        f.server.playlistTracks = {{u"mine"_s, SpotifyServer::tracks(2)}};
        CardView view(*f.module, QSize(392, 300));
        view.click(view.find(u"signInButton"_s));
        f.agreeToSignIn();
        SpotifyService *service = f.module->service();
        QTRY_VERIFY_WITH_TIMEOUT(service->deviceReady(), 30'000);
        QTRY_COMPARE(f.server.count(u"PUT /v1/me/player"_s), 1);
        const QJsonObject transfer =
            QJsonDocument::fromJson(f.server.requestsOf(u"PUT /v1/me/player"_s).first().body).object();
        const QString device = u"Quillbar,0.8,access-1,https://quillbar.invalid"_s;
        QCOMPARE(transfer["device_ids"_L1].toArray(), QJsonArray{device});

        QTRY_COMPARE(view.findAll(u"playlistRow"_s).size(), 1);
        view.click(view.findAll(u"playlistRow"_s).first());
        QTRY_COMPARE(view.findAll(u"removeButton"_s).size(), 2);
        f.server.requests.clear();
        f.server.nowPlaying = MediaFixture::playing(u"Titel 0"_s, {});
        view.click(view.find(u"playAllButton"_s));
        QTRY_VERIFY(service->isPlaying());
        view.click(view.find(u"playPauseButton"_s));
        QTRY_VERIFY(!service->isPlaying());
        view.click(view.find(u"nextButton"_s));
        QTRY_COMPARE(f.server.count(u"POST /v1/me/player/next"_s), 1);
        view.click(view.findAll(u"removeButton"_s).first());
        QTRY_COMPARE(service->tracks()->count(), 1);
        view.click(view.find(u"backButton"_s));
        view.click(view.find(u"newPlaylistButton"_s));
        QTRY_VERIFY(view.find(u"nameField"_s) != nullptr);
        view.type(u"Neu"_s);
        view.press(Qt::Key_Return);
        QTRY_COMPARE(service->playlists()->count(), 2);

        QStringList writes = f.server.lines();
        writes.removeIf([](const QString &line) { return line.startsWith("GET "_L1); });
        QCOMPARE(writes, (QStringList{u"PUT /v1/me/player/play"_s, u"PUT /v1/me/player/pause"_s,
                                      u"POST /v1/me/player/next"_s, u"DELETE /v1/playlists/mine/tracks"_s,
                                      u"POST /v1/users/me/playlists"_s}));
        const auto next = f.server.requestsOf(u"POST /v1/me/player/next"_s).first();
        QCOMPARE(next.query.queryItemValue(u"device_id"_s, QUrl::FullyDecoded), device);
        QCOMPARE(f.server.violations, QStringList());
    }
};

RANDBLATT_TEST_MAIN(TestWebPlayerHelper, QGuiApplication)
#include "tst_webplayerhelper.moc"
