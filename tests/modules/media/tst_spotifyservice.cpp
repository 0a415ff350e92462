#include "modules/media/ScriptedSession.h"
#include "modules/media/SpotifyAuth.h"
#include "modules/media/SpotifyService.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "support/Fakes.h"
#include "support/SpotifyServer.h"
#include "support/TestEnvironment.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

const QString poll = u"GET /v1/me/player/currently-playing"_s;
const QString listPlaylists = u"GET /v1/me/playlists"_s;
const QString play = u"PUT /v1/me/player/play"_s;
const QString noDevice =
    u"Kein Gerät gefunden. Öffne die Spotify-App oder warte, bis „Randblatt“ bereit ist."_s;

/// The service for a user who is signed in.
struct Fixture
{
    SpotifyServer server;
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    ScriptedSession session;
    QNetworkAccessManager network;
    std::unique_ptr<SpotifyAuth> auth;
    std::unique_ptr<SpotifyService> service;
    std::unique_ptr<QAbstractItemModelTester> playlistsTester;
    std::unique_ptr<QAbstractItemModelTester> tracksTester;

    Fixture()
    {
        preferences.setValue(u"sp_access"_s, u"access-0"_s);
        preferences.setValue(u"sp_refresh"_s, server.refreshToken);
        preferences.setValue(u"sp_expiry"_s, 1e12);
        server.accessTokens = {u"access-0"_s};
        auth = std::make_unique<SpotifyAuth>(preferences, settings, session, network, server.hosts());
        service = std::make_unique<SpotifyService>(*auth, network, server.hosts().api);
        playlistsTester = std::make_unique<QAbstractItemModelTester>(service->playlists());
        tracksTester = std::make_unique<QAbstractItemModelTester>(service->tracks());
    }
    ~Fixture() { QCOMPARE(server.violations, QStringList()); }

    void playlists(const QList<QJsonObject> &list)
    {
        server.playlists = {};
        for (const QJsonObject &playlist : list)
            server.playlists.append(playlist);
    }
    void loadPlaylists()
    {
        service->loadPlaylists();
        QVERIFY(service->loadingPlaylists());
        QTRY_VERIFY(!service->loadingPlaylists());
    }
    void loadTracks(const SpotifyPlaylist &playlist)
    {
        service->loadTracks(playlist);
        QVERIFY(service->loadingTracks());
        QTRY_VERIFY(!service->loadingTracks());
    }
    [[nodiscard]] QStringList playlistNames() const
    {
        QStringList names;
        for (const SpotifyPlaylist &playlist : service->playlists()->playlists())
            names.append(playlist.name);
        return names;
    }
    [[nodiscard]] QJsonObject lastBody(const QString &line) const
    {
        const auto requests = server.requestsOf(line);
        return requests.isEmpty() ? QJsonObject() : QJsonDocument::fromJson(requests.last().body).object();
    }
};

SpotifyPlaylist shown(const QString &id, const QString &owner = u"me"_s)
{
    SpotifyPlaylist playlist;
    playlist.id = id;
    playlist.uri = u"spotify:playlist:"_s + id;
    playlist.ownerID = owner;
    return playlist;
}

QJsonObject playing()
{
    return {
        {u"is_playing"_s, true},
        {u"item"_s,
         QJsonObject{{u"name"_s, u"Nacht\u202Ezug \"live\""_s},
                     {u"artists"_s, SpotifyServer::track(0)["track"_L1]["artists"_L1]},
                     {u"album"_s,
                      QJsonObject{{u"images"_s, QJsonArray{QJsonObject{{u"url"_s, u"https://i/1"_s}}}}}}}}};
}

} // namespace

class TestSpotifyService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatIsPlaying()
    {
        Fixture f;
        f.service->refreshNowPlaying();
        QTRY_COMPARE(f.service->statusMessage(), u"Verbinde Gerät…"_s);
        f.service->setDeviceReady(true);
        f.service->refreshNowPlaying();
        QTRY_COMPARE(f.service->statusMessage(), u"Bereit – wähle eine Playlist"_s);

        f.server.nowPlaying = playing();
        f.service->refreshNowPlaying();
        QTRY_VERIFY(f.service->isPlaying());
        QCOMPARE(f.service->trackName(), u"Nacht\u202Ezug \"live\""_s);
        QCOMPARE(f.service->artistName(), u"Nora Feld, Die Brandung"_s);
        QCOMPARE(f.service->albumArtURL(), QUrl(u"https://i/1"_s));
        QCOMPARE(f.service->statusMessage(), QString());

        // Nothing plays any more: the track stays.
        f.server.nowPlaying = QJsonValue::Null;
        f.service->refreshNowPlaying();
        QTRY_VERIFY(!f.service->isPlaying());
        QVERIFY(!f.service->trackName().isEmpty());
        QCOMPARE(f.service->statusMessage(), QString());
    }

    void keepsWhatIsShownOnBadReplies_data()
    {
        QTest::addColumn<HttpResponse>("response");
        QTest::newRow("page") << HttpResponse{.body = "<html>", .contentType = "text/html"};
        QTest::newRow("array") << HttpResponse{.body = "[]"};
        QTest::newRow("server error") << HttpResponse{.status = 503, .body = "{}"};
        QTest::newRow("not found") << HttpResponse{.status = 404, .body = "{}"};
        QTest::newRow("cut off") << HttpResponse{.body = QByteArray(2000, ' ') + "{}", .cutOff = true};
    }
    void keepsWhatIsShownOnBadReplies()
    {
        QFETCH(HttpResponse, response);
        Fixture f;
        f.server.nowPlaying = playing();
        f.service->refreshNowPlaying();
        QTRY_VERIFY(f.service->isPlaying());
        f.server.fault(poll, response);
        QSignalSpy changes(f.service.get(), &SpotifyService::nowPlayingChanged);
        f.service->refreshNowPlaying();
        f.service->loadUserID();
        QTRY_COMPARE(f.server.count(u"GET /v1/me"_s), 1);
        QTest::qWait(30);
        QCOMPARE(changes.size(), 0);
    }

    void readsJsonOfEveryShape_data()
    {
        QTest::addColumn<QByteArray>("json");
        // With single quotes for the double ones.
        const auto row = [](const char *name, QByteArray json) {
            QTest::newRow(name) << json.replace('\'', '"');
        };
        row("no item", "{'is_playing':true}");
        row("null", "{'is_playing':null,'item':null}");
        row("other types", "{'is_playing':'yes','item':{'name':1,'artists':null,'album':{'images':[{}]}}}");
        row("item is a list", "{'item':[{'name':'x'}]}");
        row("local file", "{'item':{'name':'','artists':[null,{'name':3}],"
                          "'album':{'images':[{'url':'file:///etc'}]}}}");
    }
    void readsJsonOfEveryShape()
    {
        QFETCH(QByteArray, json);
        const auto nowPlaying = parseNowPlaying(json);
        QVERIFY(nowPlaying);
        QCOMPARE(nowPlaying->trackName, QString());
        QCOMPARE(nowPlaying->artistName, QString());
        QVERIFY(nowPlaying->albumArtURL.isEmpty());
        QVERIFY(parseTracks(json)->records.isEmpty());
        QVERIFY(parsePlaylists(json)->records.isEmpty());
        QCOMPARE(parseDevice(json), QString());
        QVERIFY(!parseUserID(json));
        QVERIFY(!parseTracks("[" + json + "]"));
    }

    void pollsOnlyWhileAsked()
    {
        Fixture f;
        f.service->startPolling();
        f.service->startPolling();
        f.service->stopPolling();
        QTest::qWait(4500);
        QCOMPARE(f.server.count(poll), 2);
        f.service->startPolling();
        QTRY_COMPARE_WITH_TIMEOUT(f.server.count(poll), 4, 5000);
    }

    void sendsCommandsToTheRightDevice()
    {
        Fixture f;
        f.service->next();
        QTRY_COMPARE(f.service->statusMessage(), noDevice);
        QCOMPARE(f.server.lines(), QStringList(u"GET /v1/me/player/devices"_s));

        f.server.devices = {QJsonObject{{u"id"_s, u"tv"_s}}, QJsonObject{{u"id"_s, QJsonValue::Null}},
                            QJsonObject{{u"id"_s, u"phone"_s}, {u"is_active"_s, true}}};
        f.service->previous();
        QTRY_COMPARE(f.server.count(u"POST /v1/me/player/previous"_s), 1);
        QCOMPARE(f.server.requests.last().query.toString(), u"device_id=phone"_s);

        f.service->setDeviceID(u"own"_s);
        QTRY_COMPARE(f.server.count(u"PUT /v1/me/player"_s), 1);
        QCOMPARE(f.lastBody(u"PUT /v1/me/player"_s),
                 QJsonObject({{u"device_ids"_s, QJsonArray{u"own"_s}}, {u"play"_s, false}}));
        f.service->togglePlayPause();
        QTRY_COMPARE(f.server.count(play), 1);
        QCOMPARE(f.server.requestsOf(play).first().body, "{}");
        QTRY_COMPARE(f.server.count(poll), 1);
        f.server.nowPlaying = playing();
        f.service->refreshNowPlaying();
        QTRY_VERIFY(f.service->isPlaying());
        f.service->togglePlayPause();
        QTRY_COMPARE(f.server.count(u"PUT /v1/me/player/pause"_s), 1);
        QTRY_VERIFY(!f.service->isPlaying());
        QCOMPARE(f.server.requestsOf(u"PUT /v1/me/player/pause"_s).first().query.toString(),
                 u"device_id=own"_s);
    }

    void aPollFromBeforeAPauseDoesNotUndoIt()
    {
        Fixture f;
        f.service->setDeviceID(u"own"_s);
        f.server.nowPlaying = playing();
        f.service->refreshNowPlaying();
        QTRY_VERIFY(f.service->isPlaying());
        const QByteArray late = QJsonDocument(playing()).toJson();
        f.server.fault(poll, {.body = late, .delayMilliseconds = 200});
        f.service->refreshNowPlaying();
        QTRY_COMPARE(f.server.count(poll), 2);
        f.service->togglePlayPause();
        QTRY_VERIFY(!f.service->isPlaying());
        QTest::qWait(300);
        QVERIFY(!f.service->isPlaying());
    }

    void explainsRefusedCommands_data()
    {
        QTest::addColumn<bool>("isPlay");
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("isReady");
        QTest::addColumn<QString>("message");
        QTest::newRow("premium") << false << 403 << false << u"Benötigt Spotify Premium."_s;
        QTest::newRow("play: premium") << true << 403 << false << u"Benötigt Spotify Premium."_s;
        QTest::newRow("nothing chosen") << false << 404 << true << u"Wähle eine Playlist zum Starten."_s;
        QTest::newRow("no active device")
            << false << 404 << false << u"Kein aktives Gerät. Kurz warten, bis das Gerät bereit ist."_s;
        QTest::newRow("play: no device") << true << 404 << true << noDevice;
    }
    void explainsRefusedCommands()
    {
        QFETCH(bool, isPlay);
        QFETCH(int, status);
        QFETCH(bool, isReady);
        QFETCH(QString, message);
        Fixture f;
        f.service->setDeviceID(u"own"_s);
        f.service->setDeviceReady(isReady);
        f.server.fault(isPlay ? play : u"POST /v1/me/player/next"_s, {.status = status, .body = "no JSON"});
        if (isPlay)
            f.service->play(u"spotify:playlist:a"_s, {});
        else
            f.service->next();
        QTRY_COMPARE(f.service->statusMessage(), message);
        // Long enough to be read: the poll that follows does not replace it at once.
        f.service->refreshNowPlaying();
        QTRY_COMPARE(f.server.count(poll), isPlay && status != 404 ? 2 : 1);
        QTest::qWait(30);
        QCOMPARE(f.service->statusMessage(), message);
    }

    void playsWhatIsChosen()
    {
        Fixture f;
        f.service->setDeviceID(u"own"_s);
        f.server.savedTracks = SpotifyServer::tracks(3);
        f.loadTracks(f.service->likedPlaylist());
        f.service->playPlaylist(f.service->likedPlaylist());
        QTRY_COMPARE(f.server.count(play), 1);
        QCOMPARE(f.lastBody(play)["uris"_L1].toArray().size(), 3);
        f.service->playTrack(f.service->tracks()->tracks().at(1), f.service->likedPlaylist());
        QTRY_COMPARE(f.server.count(play), 2);
        QCOMPARE(f.lastBody(play),
                 QJsonObject({{u"uris"_s, QJsonArray{u"spotify:track:t1"_s, u"spotify:track:t2"_s}}}));
        f.service->playPlaylist(shown(u"a"_s));
        QTRY_COMPARE(f.server.count(play), 3);
        QCOMPARE(f.lastBody(play), QJsonObject({{u"context_uri"_s, u"spotify:playlist:a"_s}}));
        f.service->playTrack({{}, {}, {}, u"spotify:track:t9"_s, 0}, shown(u"a"_s));
        QTRY_COMPARE(f.server.count(play), 4);
        QCOMPARE(f.lastBody(play)["offset"_L1], QJsonObject({{u"uri"_s, u"spotify:track:t9"_s}}));
    }

    void listsThePlaylistsPageByPage()
    {
        Fixture f;
        QList<QJsonObject> all;
        for (int number = 0; number < 120; ++number)
            all.append(SpotifyServer::playlist(u"p%1"_s.arg(number), u"Liste %1"_s.arg(number), number,
                                               number == 0 ? u"me"_s : u"other"_s));
        f.playlists(all);
        f.loadPlaylists();
        QCOMPARE(f.server.count(listPlaylists), 3);
        QCOMPARE(f.service->playlists()->count(), 120);
        QVERIFY(!f.service->playlists()->playlists().first().editable);
        f.service->loadUserID();
        QTRY_VERIFY(f.service->playlists()->playlists().first().editable);
        QVERIFY(!f.service->playlists()->playlists().at(1).editable);

        // A reload keeps the rows that are still there.
        QSignalSpy resets(f.service->playlists(), &QAbstractItemModel::modelReset);
        QSignalSpy removals(f.service->playlists(), &QAbstractItemModel::rowsRemoved);
        f.playlists({all.at(3), SpotifyServer::playlist(u"new"_s, u"Neu"_s, 0), all.at(1)});
        f.loadPlaylists();
        QCOMPARE(f.playlistNames(), (QStringList{u"Liste 3"_s, u"Neu"_s, u"Liste 1"_s}));
        QCOMPARE(resets.size(), 0);
        QCOMPARE(removals.size(), 1);
    }

    void asksForANewSignInWhereThePlaylistsAreRefused()
    {
        Fixture f;
        f.playlists({SpotifyServer::playlist(u"a"_s, u"A"_s, 1)});
        f.loadPlaylists();
        f.server.fault(listPlaylists, {.status = 403, .body = "{}"});
        f.loadPlaylists();
        QVERIFY(f.service->needsReauth());
        QCOMPARE(f.playlistNames(), QStringList(u"A"_s));
        f.loadPlaylists();
        QVERIFY(!f.service->needsReauth());
    }

    void refreshesARejectedTokenOnceForAll()
    {
        Fixture f;
        f.server.accessTokens.clear();
        f.playlists({SpotifyServer::playlist(u"a"_s, u"A"_s, 1)});
        f.service->loadUserID();
        f.loadPlaylists();
        QCOMPARE(f.playlistNames(), QStringList(u"A"_s));
        QCOMPARE(f.server.count(u"POST /api/token"_s), 1);
        // A token that is rejected again and again is not refreshed for ever.
        f.server.fault(listPlaylists, {.status = 401, .body = "{}"}, 9);
        f.loadPlaylists();
        QVERIFY(f.service->needsReauth());
        QCOMPARE(f.server.count(u"POST /api/token"_s), 2);
    }

    void asksForANewSignInWhenTheRefreshTokenHasEnded()
    {
        Fixture f;
        f.preferences.setValue(u"sp_expiry"_s, 0.0);
        f.server.refreshToken = u"another"_s;
        f.loadPlaylists();
        QVERIFY(f.service->needsReauth());
        QCOMPARE(f.server.count(listPlaylists), 0);
    }

    void sendsNothingDuringABackOff()
    {
        Fixture f;
        f.playlists({SpotifyServer::playlist(u"a"_s, u"A"_s, 1)});
        f.server.fault(poll, {.status = 429, .headers = {{"Retry-After", "1"}}});
        f.service->refreshNowPlaying();
        QTRY_COMPARE(f.server.requests.size(), 1);
        QTest::qWait(50);
        QElapsedTimer sinceAnswer;
        sinceAnswer.start();
        f.service->refreshNowPlaying();
        f.service->next();
        f.service->loadPlaylists();
        QTest::qWait(500);
        QCOMPARE(f.server.requests.size(), 1);
        QTRY_COMPARE(f.server.requests.size(), 2);
        QVERIFY(sinceAnswer.elapsed() > 900);
        QTRY_COMPARE(f.playlistNames(), QStringList(u"A"_s));
        // Hours are not waited for.
        f.server.fault(listPlaylists, {.status = 429, .headers = {{"Retry-After", "7200"}}});
        f.loadPlaylists();
        f.service->loadTracks(shown(u"a"_s));
        QVERIFY(!f.service->loadingTracks());
        QTest::qWait(30);
        QCOMPARE(f.server.requests.size(), 3);
    }

    void listsTheTracksOfAPlaylist()
    {
        Fixture f;
        f.service->loadUserID();
        QJsonArray entries = SpotifyServer::tracks(250);
        entries.replace(5, QJsonObject{{u"track"_s, QJsonValue::Null}});
        f.server.playlistTracks.insert(u"a"_s, entries);
        f.loadTracks(shown(u"a"_s));
        QCOMPARE(f.service->tracks()->count(), 249);
        QCOMPARE(f.service->tracks()->tracks().last(),
                 (SpotifyTrack{u"t249"_s, u"Titel 249"_s, u"Nora Feld, Die Brandung"_s,
                               u"spotify:track:t249"_s, 248}));
        QVERIFY(f.service->tracks()->isEditable());
        f.server.savedTracks = SpotifyServer::tracks(51);
        f.loadTracks(f.service->likedPlaylist());
        QCOMPARE(f.service->tracks()->count(), 51);
        QVERIFY(!f.service->tracks()->isEditable());
    }

    void dropsTheTracksOfAPlaylistThatIsNoLongerShown()
    {
        Fixture f;
        f.server.playlistTracks.insert(u"slow"_s, SpotifyServer::tracks(100));
        f.server.playlistTracks.insert(u"fast"_s, SpotifyServer::tracks(2));
        const QByteArray late = QJsonDocument(QJsonObject{{u"items"_s, SpotifyServer::tracks(100)}}).toJson();
        f.server.fault(u"GET /v1/playlists/slow/tracks"_s, {.body = late, .delayMilliseconds = 200});
        f.service->loadTracks(shown(u"slow"_s));
        f.loadTracks(shown(u"fast"_s));
        QTest::qWait(300);
        QCOMPARE(f.service->tracks()->count(), 2);
        QCOMPARE(f.server.count(u"GET /v1/playlists/slow/tracks"_s), 1);
    }

    void movesToTheSuccessorsOfThePlaylistPaths()
    {
        Fixture f;
        f.server.oldPathsClosed = true;
        f.server.playlistTracks.insert(u"a"_s, SpotifyServer::tracks(101));
        f.loadTracks(shown(u"a"_s));
        QCOMPARE(f.service->tracks()->count(), 101);
        QCOMPARE(f.server.count(u"GET /v1/playlists/a/tracks"_s), 1);
        f.service->removeTrack(f.service->tracks()->tracks().first(), shown(u"a"_s));
        QTRY_COMPARE(f.service->tracks()->count(), 100);
        QCOMPARE(f.server.requests.last().line(), u"DELETE /v1/playlists/a/items"_s);
        QCOMPARE(f.service->tracks()->tracks().first().index, 0);
        // A playlist that is really gone has neither.
        f.loadTracks(shown(u"gone"_s));
        QCOMPARE(f.service->tracks()->count(), 0);
    }

    void createsPlaylists()
    {
        for (const bool closed : {false, true}) {
            Fixture f;
            f.server.oldPathsClosed = closed;
            f.service->createPlaylist(u"  \n"_s);
            f.service->createPlaylist(u" Für \"Dich\" "_s);
            QTRY_COMPARE(f.playlistNames(), QStringList(u"Für \"Dich\""_s));
            QCOMPARE(f.server.count(u"POST /v1/users/me/playlists"_s), 1);
            QCOMPARE(f.server.count(u"POST /v1/me/playlists"_s), closed ? 1 : 0);
        }
    }

    void removesOnlyWhatTheServiceHasRemoved()
    {
        Fixture f;
        f.server.playlistTracks.insert(u"a"_s, SpotifyServer::tracks(3));
        f.loadTracks(shown(u"a"_s));
        const SpotifyTrack track = f.service->tracks()->tracks().at(1);
        f.server.fault(u"DELETE /v1/playlists/a/tracks"_s, {.status = 202, .body = "{}"});
        f.service->removeTrack(track, shown(u"a"_s));
        QTRY_COMPARE(f.service->statusMessage(), u"Konnte Titel nicht entfernen."_s);
        QCOMPARE(f.service->tracks()->count(), 3);
        f.service->removeTrack(track, shown(u"a"_s));
        QTRY_COMPARE(f.service->tracks()->count(), 2);
        QCOMPARE(f.service->tracks()->tracks().at(1).id, u"t2"_s);
        QCOMPARE(f.service->tracks()->tracks().at(1).index, 1);
    }

    void survivesTheLossOfTheNetwork()
    {
        Fixture f;
        f.server.playlistTracks.insert(u"a"_s, SpotifyServer::tracks(100));
        f.playlists({SpotifyServer::playlist(u"a"_s, u"A"_s, 1)});
        f.loadPlaylists();
        f.server.loseNetwork();
        f.service->refreshNowPlaying();
        f.service->next();
        f.service->playPlaylist(shown(u"a"_s));
        f.service->removeTrack({{}, {}, {}, u"x"_s, 0}, shown(u"a"_s));
        f.loadPlaylists();
        f.loadTracks(shown(u"a"_s));
        QCOMPARE(f.playlistNames(), QStringList(u"A"_s));
        QCOMPARE(f.service->statusMessage(), u"Konnte Titel nicht entfernen."_s);
    }

    void forgetsTheAccountWhenItIsReset()
    {
        Fixture f;
        f.server.nowPlaying = playing();
        f.playlists({SpotifyServer::playlist(u"a"_s, u"A"_s, 1)});
        f.loadPlaylists();
        f.service->refreshNowPlaying();
        f.service->loadUserID();
        f.service->loadPlaylists();
        f.service->reset();
        QTRY_COMPARE(f.server.count(listPlaylists), 2);
        QTest::qWait(50);
        QVERIFY(f.service->trackName().isEmpty());
        QCOMPARE(f.service->playlists()->count(), 0);
        QVERIFY(!f.service->loadingPlaylists());

        f.service->next();
        QTRY_COMPARE(f.service->statusMessage(), noDevice);
        f.service->reset();
        f.server.nowPlaying = QJsonValue::Null;
        f.service->refreshNowPlaying();
        // At once, and not only when the failure's message would have had its time.
        QTRY_COMPARE_WITH_TIMEOUT(f.service->statusMessage(), u"Verbinde Gerät…"_s, 2000);
    }
};

Q_DECLARE_METATYPE(randblatt::HttpResponse)

RANDBLATT_TEST_MAIN(TestSpotifyService, QCoreApplication)
#include "tst_spotifyservice.moc"
