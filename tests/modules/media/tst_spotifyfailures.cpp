#include "modules/media/ServiceFixture.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

const QString poll = u"GET /v1/me/player/currently-playing"_s;
const QString listPlaylists = u"GET /v1/me/playlists"_s;
const QString askToken = u"POST /api/token"_s;
const QString reauth = u"(neu anmelden)"_s;
const QString noDevice =
    u"Kein Gerät gefunden. Öffne die Spotify-App oder warte, bis „Randblatt“ bereit ist."_s;

/// What the service does in place of answering rightly. Each lasts for the whole test, unless it says so.
enum class Fault {
    none,
    empty,
    rejected,
    forbidden,
    missing,
    shortPause,
    longPause,
    broken,
    page,
    cutOff,
    dropped,
    slow,
    otherTypes
};

struct FaultRow
{
    Fault fault;
    QByteArray name;
    HttpResponse response;
    /// What the card says that it was, where it was a failure.
    QString reason;
};

QList<FaultRow> faults()
{
    const QByteArray until = "7200";
    return {
        {Fault::none, "200", {}, {}},
        {Fault::empty, "204", {.status = 204}, u"Die Antwort von Spotify war nicht zu lesen."_s},
        {Fault::rejected, "401", {.status = 401, .body = "{}"}, u"Spotify verlangt eine neue Anmeldung."_s},
        {Fault::forbidden, "403", {.status = 403, .body = "{}"}, u"Spotify erlaubt das hier nicht."_s},
        {Fault::missing, "404", {.status = 404, .body = "{}"}, u"Spotify findet das nicht mehr."_s},
        {Fault::shortPause,
         "429, a second",
         {.status = 429, .headers = {{"Retry-After", "1"}}},
         u"Spotify bittet um eine kurze Pause."_s},
        {Fault::longPause,
         "429, hours",
         {.status = 429, .headers = {{"Retry-After", until}}},
         u"Spotify bittet um eine Pause bis %1."_s},
        {Fault::broken, "500", {.status = 500, .body = "{}"}, u"Spotify hat gerade eine Störung."_s},
        {Fault::page,
         "HTML",
         {.body = "<html>", .contentType = "text/html"},
         u"Die Antwort von Spotify war nicht zu lesen."_s},
        {Fault::cutOff,
         "cut off",
         {.body = QByteArray(2000, ' ') + "{}", .cutOff = true},
         u"Keine Antwort von Spotify."_s},
        {Fault::dropped, "dropped", {.isDropped = true}, u"Keine Antwort von Spotify."_s},
        {Fault::slow, "slow", {}, {}},
        {Fault::otherTypes,
         "other types",
         {.body = R"({"items":{},"devices":"","id":1,"is_playing":[],"item":[1]})"},
         u"Die Antwort von Spotify war nicht zu lesen."_s},
    };
}

/// Something that the card does, on a playlist A with three tracks, the first of which is playing.
struct Operation
{
    QByteArray name;
    /// What is asked of a client of the old kind, and of the new.
    QString line;
    QString newLine;
    std::function<void(ServiceFixture &)> run;
    /// What it says when it has failed for the reason `%1`; the reason alone where it says nothing else.
    QString message;
    /// Whether what it shows when it succeeds stands there.
    std::function<bool(ServiceFixture &)> hasSucceeded;
    /// What it says in place of that about single faults.
    QHash<int, QString> exceptions = {};
};

QHash<int, QString> command(const QString &unknownDevice)
{
    // Any 2xx is a success, whatever comes with it.
    const QString ok;
    return {{int(Fault::empty), ok},
            {int(Fault::page), ok},
            {int(Fault::otherTypes), ok},
            {int(Fault::forbidden), u"Benötigt Spotify Premium."_s},
            {int(Fault::missing), unknownDevice}};
}

QList<Operation> operations()
{
    const SpotifyTrack first{u"t0"_s, u"Titel 0"_s, u""_s, u"spotify:track:t0"_s, 0, 0};
    const auto silent = [](ServiceFixture &f) { return f.service->statusMessage().isEmpty(); };
    const QString choose = u"Wähle eine Playlist zum Starten."_s;
    const QString notRemoved = u"Konnte Titel nicht entfernen."_s;
    QHash<int, QString> removal;
    for (const Fault fault : {Fault::empty, Fault::forbidden, Fault::missing, Fault::broken})
        removal.insert(int(fault), notRemoved);
    // Only the status counts there.
    removal.insert(int(Fault::page), QString());
    removal.insert(int(Fault::otherTypes), QString());
    const QString unknown = u" Was gerade spielt, ist nicht bekannt."_s;
    QHash<int, QString> polls{{int(Fault::empty), QString()}};
    QHash<int, QString> devices;
    for (const FaultRow &row : faults()) {
        if (row.fault == Fault::forbidden || row.fault == Fault::missing || row.fault == Fault::page ||
            row.fault == Fault::otherTypes)
            polls.insert(int(row.fault), row.reason + unknown);
        if (row.fault == Fault::empty || polls.value(int(row.fault)) != QString())
            devices.insert(int(row.fault), row.reason + unknown);
    }
    return {
        {"poll", poll, poll, [](auto &f) { f.service->refreshNowPlaying(); }, u"%1"_s, silent, polls},
        {"devices", u"GET /v1/me/player/devices"_s, u"GET /v1/me/player/devices"_s,
         [](auto &f) {
             f.service->setDeviceID({});
             f.service->next();
         },
         u"%1"_s, [](auto &f) { return f.server.count(u"POST /v1/me/player/next"_s) == 1; }, devices},
        {"transfer", u"PUT /v1/me/player"_s, u"PUT /v1/me/player"_s,
         [](auto &f) { f.service->setDeviceID(u"own"_s); }, u"%1"_s, silent, command(choose)},
        {"play", u"PUT /v1/me/player/play"_s, u"PUT /v1/me/player/play"_s,
         [](auto &f) { f.service->playPlaylist(shown(u"a"_s)); }, u"%1"_s,
         [](auto &f) { return f.server.count(poll) > 0; }, command(noDevice)},
        {"pause", u"PUT /v1/me/player/pause"_s, u"PUT /v1/me/player/pause"_s,
         [](auto &f) { f.service->togglePlayPause(); }, u"%1"_s,
         [](auto &f) { return !f.service->isPlaying(); }, command(choose)},
        {"next", u"POST /v1/me/player/next"_s, u"POST /v1/me/player/next"_s,
         [](auto &f) { f.service->next(); }, u"%1"_s, silent, command(choose)},
        {"previous", u"POST /v1/me/player/previous"_s, u"POST /v1/me/player/previous"_s,
         [](auto &f) { f.service->previous(); }, u"%1"_s, silent, command(choose)},
        {"playlists",
         listPlaylists,
         listPlaylists,
         [](auto &f) { f.service->loadPlaylists(); },
         u"%1 Die Playlists sind vielleicht nicht die neuesten."_s,
         [](auto &f) { return f.service->playlistsProblem().isEmpty() && !f.service->loadingPlaylists(); },
         {{int(Fault::forbidden), reauth}}},
        {"tracks", u"GET /v1/playlists/a/tracks"_s, u"GET /v1/playlists/a/items"_s,
         [](auto &f) { f.service->loadTracks(shown(u"a"_s)); }, u"%1 Die Titel sind nicht geladen."_s,
         [](auto &f) { return f.service->tracks()->count() == 3; }},
        {"saved tracks", u"GET /v1/me/tracks"_s, u"GET /v1/me/tracks"_s,
         [](auto &f) { f.service->loadTracks(f.service->likedPlaylist()); },
         u"%1 Die Titel sind nicht geladen."_s, [](auto &f) { return f.service->tracks()->count() == 2; }},
        {"create",
         u"POST /v1/users/me/playlists"_s,
         u"POST /v1/me/playlists"_s,
         [](auto &f) {
             f.service->createPlaylist(u"Neu"_s,
                                       [&f](const QString &failure) { f.service->showFailure(failure); });
         },
         u"%1 Die Playlist ist nicht erstellt."_s,
         [](auto &f) { return f.playlistNames().contains(u"Neu"_s); },
         // These say that it is done.
         {{int(Fault::page), QString()}, {int(Fault::otherTypes), QString()}}},
        {"user, for a new playlist", u"GET /v1/me"_s, u"GET /v1/me"_s,
         [](auto &f) {
             f.service->loadUserID();
             f.service->createPlaylist(u"Neu"_s,
                                       [&f](const QString &failure) { f.service->showFailure(failure); });
         },
         u"%1 Die Playlist ist nicht erstellt."_s,
         [](auto &f) { return f.playlistNames().contains(u"Neu"_s); }},
        {"remove", u"DELETE /v1/playlists/a/tracks"_s, u"DELETE /v1/playlists/a/items"_s,
         [first](auto &f) { f.service->removeTrack(first, shown(u"a"_s)); }, u"%1 "_s + notRemoved,
         [](auto &f) { return f.service->tracks()->count() == 2; }, removal},
        {"put back",
         u"POST /v1/playlists/a/tracks"_s,
         u"POST /v1/playlists/a/items"_s,
         [first](auto &f) { f.service->restoreTracks({.playlist = shown(u"a"_s), .tracks = {first}}); },
         u"%1 Konnte Titel nicht zurückholen."_s,
         [](auto &f) { return f.service->tracks()->count() == 4; },
         {{int(Fault::empty), QString()},
          {int(Fault::page), QString()},
          {int(Fault::otherTypes), QString()}}},
    };
}

/// Everything that the card says of failures now.
QStringList said(const ServiceFixture &f)
{
    QStringList all{f.service->statusMessage(), f.service->playlistsProblem(), f.service->tracksProblem()};
    if (f.service->needsReauth())
        all.append(reauth);
    all.removeAll(QString());
    return all;
}

QString withTime(const QString &text)
{
    // Two hours from now, give or take the minute in which this test runs.
    const QDateTime until = QDateTime::currentDateTime().addSecs(7200);
    const bool isToday = until.date() == QDate::currentDate();
    return text.contains("%1"_L1)
               ? text.arg(
                     QLocale(QLocale::German).toString(until, isToday ? u"HH:mm"_s : u"d. MMMM, HH:mm"_s))
               : text;
}

} // namespace

class TestSpotifyFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noCellEndsInSilence_data()
    {
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("isNew");
        const auto all = operations();
        for (int operation = 0; operation < all.size(); ++operation) {
            for (int row = 0; row < faults().size(); ++row) {
                for (const bool isNew : {false, true}) {
                    // Where both are asked alike there is nothing to tell them apart.
                    if (isNew && all.at(operation).newLine == all.at(operation).line)
                        continue;
                    QTest::addRow("%s: %s%s", all.at(operation).name.constData(),
                                  faults().at(row).name.constData(), isNew ? ", new client" : "")
                        << operation << row << isNew;
                }
            }
        }
    }
    void noCellEndsInSilence()
    {
        QFETCH(int, operation);
        QFETCH(int, row);
        QFETCH(bool, isNew);
        const Operation op = operations().at(operation);
        const FaultRow fault = faults().at(row);
        const QString line = isNew ? op.newLine : op.line;
        ServiceFixture f;
        f.server.oldPathsClosed = isNew;
        f.server.nowPlaying = playing();
        f.server.savedTracks = SpotifyServer::tracks(2);
        f.server.playlistTracks.insert(u"a"_s, SpotifyServer::tracks(3));
        f.server.devices = {QJsonObject{{u"id"_s, u"phone"_s}}};
        f.playlists({SpotifyServer::playlist(u"a"_s, u"A"_s, 3)});
        f.service->loadUserID();
        f.loadPlaylists();
        f.loadTracks(shown(u"a"_s));
        f.service->setDeviceReady(true);
        f.service->setDeviceID(u"own"_s);
        f.service->refreshNowPlaying();
        QTRY_VERIFY(f.service->isPlaying());
        QTRY_VERIFY(f.service->playlists()->playlists().first().editable);
        QTRY_COMPARE(f.server.count(u"PUT /v1/me/player"_s), 1);
        QSignalSpy removals(f.service.get(), &SpotifyService::tracksRemoved);
        f.server.requests.clear();

        const bool isPause = fault.fault == Fault::shortPause || fault.fault == Fault::longPause;
        if (fault.fault == Fault::slow)
            f.server.delay = 200;
        else if (fault.fault != Fault::none)
            f.server.fault(line, fault.response, isPause ? 1 : 100);
        // Where the old path is denied the new one is tried; that it is denied as well is what fails here.
        if (!isNew && op.newLine != line &&
            (fault.fault == Fault::forbidden || fault.fault == Fault::missing))
            f.server.fault(op.newLine, fault.response, 100);
        op.run(f);

        // What waits for a short pause succeeds after it.
        const bool isPatient =
            op.line.startsWith("GET "_L1) && op.line != poll && op.line != u"GET /v1/me/player/devices"_s;
        const bool outlasts = fault.fault == Fault::shortPause && isPatient;
        const QString exception = op.exceptions.value(int(fault.fault), u"–"_s);
        const bool succeeds = fault.reason.isEmpty() || outlasts || exception.isEmpty();
        if (succeeds) {
            if (exception != QString())
                QTRY_VERIFY(op.hasSucceeded(f));
            QTRY_VERIFY(!f.server.requestsOf(line).isEmpty());
            QTRY_COMPARE(said(f), QStringList());
            QCOMPARE(f.server.count(line), outlasts ? 2 : 1);
            return;
        }
        // Said, and in the place where the operation says things: reason first.
        const QString expected = exception != u"–"_s ? exception : op.message.arg(fault.reason);
        QTRY_VERIFY2(said(f).contains(withTime(expected)), qPrintable(said(f).join(u" | "_s)));
        // A token that is rejected needs a new sign-in; nothing else does.
        QCOMPARE(f.service->needsReauth(), fault.fault == Fault::rejected || expected == reauth);
        QCOMPARE(f.service->canSend(), !isPause);
        // Asked again: after a new token, and by the toolkit what may be asked twice.
        const int count = f.server.count(line);
        if (fault.fault == Fault::rejected) {
            QCOMPARE(count, 2);
            QCOMPARE(f.server.count(askToken), 1);
        } else if (fault.fault == Fault::dropped && !line.startsWith("POST "_L1)) {
            QVERIFY(count >= 1);
        } else {
            QCOMPARE(count, 1);
        }
        // What was known before is kept.
        QCOMPARE(f.playlistNames(), QStringList(u"A"_s));
        QCOMPARE(f.service->trackName(), playing()["item"_L1]["name"_L1].toString());
        QVERIFY(f.service->isPlaying());
        const bool wasCleared = op.name == "tracks" || op.name == "saved tracks";
        QTRY_COMPARE(f.service->tracks()->count(), wasCleared ? 0 : 3);
        // And the way back stays, where it came to nothing.
        QCOMPARE(removals.size(), op.name == "put back" ? 1 : 0);
    }

    void loadsAgainWhatFailedWhenTheServiceAnswers()
    {
        ServiceFixture f;
        f.playlists({SpotifyServer::playlist(u"a"_s, u"A"_s, 3)});
        f.server.playlistTracks.insert(u"a"_s, SpotifyServer::tracks(3));
        f.server.nowPlaying = playing();
        for (const QString &line : {poll, listPlaylists, u"GET /v1/me"_s, u"GET /v1/playlists/a/tracks"_s})
            f.server.fault(line, {.status = 503, .body = "{}"});
        f.service->refreshNowPlaying();
        f.service->loadPlaylists();
        f.service->loadUserID();
        f.service->loadTracks(shown(u"a"_s));
        QTRY_VERIFY(!f.service->loadingPlaylists() && !f.service->loadingTracks());
        QTRY_COMPARE(f.service->statusMessage(), u"Spotify hat gerade eine Störung."_s);
        QCOMPARE(f.service->playlistsProblem(),
                 u"Spotify hat gerade eine Störung. Die Playlists sind nicht geladen."_s);
        // The first request that succeeds brings everything, with the bins.
        f.service->refreshNowPlaying();
        QTRY_COMPARE(f.playlistNames(), QStringList(u"A"_s));
        QTRY_COMPARE(f.service->tracks()->count(), 3);
        QTRY_VERIFY(f.service->tracks()->isEditable());
        QTRY_COMPARE(said(f), QStringList());
    }

    void doesNotLoadAgainAndAgainWhatStaysBroken()
    {
        ServiceFixture f;
        f.server.fault(listPlaylists, {.status = 500, .body = "{}"}, 100);
        f.loadPlaylists();
        for (int answer = 1; answer <= 4; ++answer) {
            f.service->refreshNowPlaying();
            QTRY_COMPARE(f.server.count(poll), answer);
            QTRY_VERIFY(!f.service->loadingPlaylists());
        }
        // At once, and then after pauses.
        QTRY_COMPARE(f.server.count(listPlaylists), 2);
    }

    void goesOnWithALongListWhereItBroke()
    {
        for (const bool isNew : {false, true}) {
            ServiceFixture f;
            f.server.oldPathsClosed = isNew;
            f.server.playlistTracks.insert(u"a"_s, SpotifyServer::tracks(230));
            const QString line = isNew ? u"GET /v1/playlists/a/items"_s : u"GET /v1/playlists/a/tracks"_s;
            int page = 0;
            f.server.observer = [&](const HttpRequest &request, int) {
                if (request.line() == line && ++page == 2)
                    f.server.fault(line, {.status = 503, .body = "{}"});
            };
            f.service->loadTracks(shown(u"a"_s));
            const int known = isNew ? 100 : 200;
            QTRY_COMPARE(f.service->tracksProblem(), u"Spotify hat gerade eine Störung. Es fehlen Titel."_s);
            QCOMPARE(f.service->tracks()->count(), known);
            f.service->loadMissingTracks();
            QTRY_COMPARE(f.service->tracks()->count(), 230);
            QCOMPARE(f.service->tracks()->tracks().last().place, 229);
            QTRY_COMPARE(f.service->tracksProblem(), QString());
        }
    }

    void looksWhetherAPlaylistWasCreated_data()
    {
        QTest::addColumn<bool>("isCreated");
        QTest::addColumn<bool>("canLook");
        QTest::addColumn<QString>("outcome");
        const QString why = u"Keine Antwort von Spotify."_s;
        QTest::newRow("created") << true << true << QString();
        QTest::newRow("not created") << false << true << why + u" Die Playlist ist nicht erstellt."_s;
        QTest::newRow("nobody knows")
            << true << false << why + u" Vielleicht ist die Playlist schon erstellt."_s;
    }
    void looksWhetherAPlaylistWasCreated()
    {
        QFETCH(bool, isCreated);
        QFETCH(bool, canLook);
        QFETCH(QString, outcome);
        ServiceFixture f;
        // One of this name is there before.
        f.playlists({SpotifyServer::playlist(u"a"_s, u"Neu"_s, 3)});
        f.loadPlaylists();
        f.server.fault(u"POST /v1/users/me/playlists"_s, {.isDropped = true}, 9, isCreated);
        if (!canLook)
            f.server.fault(listPlaylists, {.status = 500, .body = "{}"}, 9);
        QStringList outcomes;
        f.service->createPlaylist(u"Neu"_s, [&](const QString &failure) { outcomes.append(failure); });
        QTRY_COMPARE(outcomes, QStringList(outcome));
        QCOMPARE(f.server.count(u"POST /v1/users/me/playlists"_s), 1);
    }

    void asksNothingMoreWhenTheRefreshTokenIsRefused()
    {
        ServiceFixture f;
        f.preferences.setValue(u"sp_expiry"_s, 0.0);
        f.server.refreshToken = u"another"_s;
        f.service->startPolling();
        QTRY_VERIFY(f.service->needsReauth());
        QVERIFY(!f.service->canSend());
        QCOMPARE(f.service->statusMessage(), u"Spotify verlangt eine neue Anmeldung."_s);
        f.service->refreshNowPlaying();
        f.service->loadPlaylists();
        f.service->next();
        QVERIFY(!f.service->loadingPlaylists());
        QCOMPARE(f.server.lines(), QStringList(askToken));
        // Signed in again: everything goes on.
        f.preferences.setValue(u"sp_expiry"_s, 1e12);
        f.auth->signIn();
        f.server.fault(askToken, {.body = R"({"access_token":"access-0"})"});
        f.session.redirect(u"randblatt://callback?code=c"_s);
        QTRY_VERIFY(f.service->canSend());
        f.loadPlaylists();
        QVERIFY(!f.service->needsReauth());
    }

    void restsWhereEveryTokenIsRejected()
    {
        ServiceFixture f;
        f.server.fault(poll, {.status = 401, .body = "{}"}, 2);
        f.service->startPolling();
        QTRY_VERIFY(f.service->needsReauth());
        QTRY_COMPARE(f.server.count(poll), 2);
        // A command that goes through wakes it.
        f.service->setDeviceID(u"own"_s);
        QTRY_COMPARE(f.server.count(u"PUT /v1/me/player"_s), 1);
        QCOMPARE(f.server.count(poll), 2);
        f.service->next();
        QTRY_COMPARE(f.server.count(poll), 3);
        QTRY_VERIFY(!f.service->needsReauth());
    }

    void followsNoRedirectWithAToken_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("status");
        for (const int status : {301, 302, 303, 307, 308}) {
            QTest::addRow("poll, %d", status) << poll << status;
            QTest::addRow("command, %d", status) << u"POST /v1/me/player/next"_s << status;
            QTest::addRow("tokens, %d", status) << askToken << status;
        }
    }
    void followsNoRedirectWithAToken()
    {
        QFETCH(QString, line);
        QFETCH(int, status);
        QStringList strayed;
        HttpServer elsewhere([&](const HttpRequest &request) {
            strayed.append(request.line());
            return HttpResponse{.body = "{}"};
        });
        ServiceFixture f;
        f.service->setDeviceID(u"own"_s);
        if (line == askToken)
            f.preferences.setValue(u"sp_expiry"_s, 0.0);
        f.server.fault(line, {.status = status, .headers = {{"Location", elsewhere.url(u"/"_s).toEncoded()}}},
                       9);
        f.service->refreshNowPlaying();
        f.service->next();
        QTRY_VERIFY(f.server.count(line) >= 1);
        QTRY_VERIFY(!f.service->statusMessage().isEmpty());
        QCOMPARE(strayed, QStringList());
        QVERIFY(!f.server.accessTokens.isEmpty());
    }
};

Q_DECLARE_METATYPE(randblatt::HttpResponse)

RANDBLATT_TEST_MAIN(TestSpotifyFailures, QCoreApplication)
#include "tst_spotifyfailures.moc"
