#include "modules/media/ServiceFixture.h"
#include "support/TestEnvironment.h"

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

} // namespace

class TestSpotifyService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatIsPlaying()
    {
        ServiceFixture f;
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
        ServiceFixture f;
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
        row("other types", "{'is_playing':false,'item':{'name':1,'artists':null,'album':{'images':[{}]}}}");
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
        // A list that is not there is not an empty one.
        QVERIFY(!parseTracks(json));
        QVERIFY(!parsePlaylists(json));
        QVERIFY(!parseDevice(json));
        QVERIFY(!parseUserID(json));
        QVERIFY(!parseNowPlaying("[" + json + "]"));
        QVERIFY(!parseNowPlaying(QByteArray("{'item':[]}").replace('\'', '"')));
    }

    void readsWhatIsNoTrack_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("by");
        QTest::addColumn<QString>("image");
        // With single quotes for the double ones.
        const auto row = [](const char *name, QByteArray json, const QString &title, const QString &by = {},
                            const QString &image = {}) {
            QTest::newRow(name) << json.replace('\'', '"') << title << by << image;
        };
        row("episode",
            "{'currently_playing_type':'episode','item':{'name':'Folge 3','show':{'name':'Funk',"
            "'images':[{'url':'https://i/show'}]},'images':[{'url':'https://i/3'}]}}",
            u"Folge 3"_s, u"Funk"_s, u"https://i/3"_s);
        row("episode without a picture",
            "{'item':{'name':'Folge 3','show':{'name':'Funk','images':[{'url':'https://i/show'}]}}}",
            u"Folge 3"_s, u"Funk"_s, u"https://i/show"_s);
        row("advertisement", "{'currently_playing_type':'ad','item':null}", u"Werbung"_s);
        row("episode that is not told", "{'currently_playing_type':'episode','item':null}", u"Podcast"_s);
    }
    void readsWhatIsNoTrack()
    {
        QFETCH(QByteArray, json);
        const auto playing = parseNowPlaying(json);
        QVERIFY(playing);
        QTEST(playing->trackName, "name");
        QTEST(playing->artistName, "by");
        QTEST(playing->albumArtURL.toString(), "image");
    }

    void pollsOnlyWhileAsked()
    {
        ServiceFixture f;
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
        ServiceFixture f;
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
        ServiceFixture f;
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
        ServiceFixture f;
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
        ServiceFixture f;
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
        f.service->playTrack({{}, {}, {}, u"spotify:track:t9"_s, 0, 0}, shown(u"a"_s));
        QTRY_COMPARE(f.server.count(play), 4);
        QCOMPARE(f.lastBody(play)["offset"_L1], QJsonObject({{u"uri"_s, u"spotify:track:t9"_s}}));
    }

    void listsThePlaylistsPageByPage()
    {
        ServiceFixture f;
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
        ServiceFixture f;
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
        ServiceFixture f;
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
        ServiceFixture f;
        f.preferences.setValue(u"sp_expiry"_s, 0.0);
        f.server.refreshToken = u"another"_s;
        f.loadPlaylists();
        QVERIFY(f.service->needsReauth());
        QCOMPARE(f.server.count(listPlaylists), 0);
    }

    void sendsNothingDuringABackOff()
    {
        ServiceFixture f;
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
        ServiceFixture f;
        f.service->loadUserID();
        QJsonArray entries = SpotifyServer::tracks(250);
        entries.replace(5, QJsonObject{{u"track"_s, QJsonValue::Null}});
        f.server.playlistTracks.insert(u"a"_s, entries);
        f.loadTracks(shown(u"a"_s));
        QCOMPARE(f.service->tracks()->count(), 249);
        QCOMPARE(f.service->tracks()->tracks().last(),
                 (SpotifyTrack{u"t249"_s, u"Titel 249"_s, u"Nora Feld, Die Brandung"_s,
                               u"spotify:track:t249"_s, 248, 249}));
        QVERIFY(f.service->tracks()->isEditable());
        f.server.savedTracks = SpotifyServer::tracks(51);
        f.loadTracks(f.service->likedPlaylist());
        QCOMPARE(f.service->tracks()->count(), 51);
        QVERIFY(!f.service->tracks()->isEditable());
    }

    void dropsTheTracksOfAPlaylistThatIsNoLongerShown()
    {
        ServiceFixture f;
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
        ServiceFixture f;
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

    void sendsNothingTwiceThatIsNotIdempotent()
    {
        ServiceFixture f;
        f.service->setDeviceID(u"own"_s);
        f.service->loadUserID();
        QTRY_COMPARE(f.server.count(u"GET /v1/me"_s), 1);
        const QString next = u"POST /v1/me/player/next"_s;
        const QString create = u"POST /v1/users/me/playlists"_s;
        f.server.fault(next, {.isDropped = true});
        f.server.fault(create, {.isDropped = true});
        f.service->next();
        f.service->createPlaylist(u"Neu"_s);
        QTRY_COMPARE(f.server.count(next), 1);
        QTRY_COMPARE(f.server.count(create), 1);
        // The next one comes after whatever the toolkit would send again.
        f.service->next();
        QTRY_VERIFY(f.server.count(next) >= 2);
        QTRY_COMPARE(f.service->statusMessage(), u"Keine Antwort von Spotify."_s);
        QCOMPARE(f.server.count(next), 2);
        QCOMPARE(f.server.count(create), 1);
    }

    void createsPlaylists()
    {
        for (const bool closed : {false, true}) {
            ServiceFixture f;
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
        ServiceFixture f;
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
        ServiceFixture f;
        f.server.playlistTracks.insert(u"a"_s, SpotifyServer::tracks(100));
        f.playlists({SpotifyServer::playlist(u"a"_s, u"A"_s, 1)});
        f.loadPlaylists();
        f.server.loseNetwork();
        f.service->refreshNowPlaying();
        f.service->next();
        f.service->playPlaylist(shown(u"a"_s));
        f.service->removeTrack({{}, {}, {}, u"x"_s, 0, 0}, shown(u"a"_s));
        f.loadPlaylists();
        f.loadTracks(shown(u"a"_s));
        QCOMPARE(f.playlistNames(), QStringList(u"A"_s));
        QCOMPARE(f.service->statusMessage(), u"Keine Verbindung zu Spotify. Konnte Titel nicht entfernen."_s);
    }

    void forgetsTheAccountWhenItIsReset()
    {
        ServiceFixture f;
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
