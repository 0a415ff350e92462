#include "modules/media/SpotifyService.h"

#include "modules/media/RunAside.h"

#include <QJsonArray>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pollInterval = 4s;
constexpr int playlistPage = 50;
constexpr int savedTrackPage = 50;
constexpr int playlistTrackPage = 100;
// The service plays no longer list of tracks without a context; it refuses the request as too large.
constexpr qsizetype longestTrackList = 500;

const QString noDevice =
    u"Kein Gerät gefunden. Öffne die Spotify-App oder warte, bis „Randblatt“ bereit ist."_s;

QList<std::pair<QString, QString>> pageQuery(int limit, int offset, const QString &fields = {})
{
    QList<std::pair<QString, QString>> query{{u"limit"_s, QString::number(limit)}};
    if (!fields.isEmpty())
        query.append({u"fields"_s, fields});
    if (offset > 0)
        query.append({u"offset"_s, QString::number(offset)});
    return query;
}

QString playlistPath(const SpotifyPlaylist &playlist, QLatin1StringView what)
{
    return "/playlists/"_L1 + playlist.id + what;
}

QJsonObject removal(const QString &list, const SpotifyTrack &track)
{
    return {{list, QJsonArray{QJsonObject{{u"uri"_s, track.uri}}}}};
}

} // namespace

SpotifyService::SpotifyService(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host,
                               QObject *parent)
    : QObject(parent)
    , m_api(auth, network, host)
    , m_playlists(new SpotifyPlaylistModel(this))
    , m_tracks(new SpotifyTrackModel(this))
{
    m_timer.setInterval(pollInterval);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        // On a network slower than the polls they would queue up before the commands.
        if (m_pollsUnderWay == 0)
            refreshNowPlaying();
    });
}

void SpotifyService::startPolling()
{
    refreshNowPlaying();
    m_timer.start();
}

void SpotifyService::stopPolling()
{
    m_timer.stop();
}

void SpotifyService::refreshNowPlaying()
{
    ++m_pollsUnderWay;
    m_api.send({.path = u"/me/player/currently-playing"_s}, this,
               [this, turn = ++m_pollTurn](const SpotifyReply &reply) {
                   --m_pollsUnderWay;
                   // A later answer tells more than an earlier question.
                   if (turn == m_pollTurn && reply.isSuccess())
                       applyNowPlaying(reply);
               });
}

void SpotifyService::applyNowPlaying(const SpotifyReply &reply)
{
    const bool mayReplaceMessage = m_messageHold.hasExpired();
    if (reply.status == 204 || reply.body.isEmpty()) {
        if (m_nowPlaying.trackName.isEmpty() && mayReplaceMessage)
            setStatusMessage(m_deviceReady ? u"Bereit – wähle eine Playlist"_s : u"Verbinde Gerät…"_s);
        setPlaying(false);
    } else if (const auto nowPlaying = parseNowPlaying(reply.body)) {
        if (mayReplaceMessage)
            setStatusMessage({});
        setNowPlaying(*nowPlaying);
    }
}

void SpotifyService::loadUserID()
{
    m_userID.clear();
    withUserID([] {});
}

void SpotifyService::withUserID(const std::function<void()> &then)
{
    if (!m_userID.isEmpty()) {
        then();
        return;
    }
    m_api.send({.path = u"/me"_s, .isPatient = true}, this,
               [this, then, account = m_account](const SpotifyReply &reply) {
                   const auto id = reply.isSuccess() ? parseUserID(reply.body) : std::nullopt;
                   if (!id || account != m_account)
                       return;
                   setUserID(*id);
                   then();
               });
}

void SpotifyService::setUserID(const QString &id)
{
    m_userID = id;
    m_playlists->setUserID(id);
    m_tracks->setEditable(!id.isEmpty() && m_shown.ownerID == id);
}

void SpotifyService::loadPlaylists()
{
    setFlag(m_loadingPlaylists, true, &SpotifyService::loadingPlaylistsChanged);
    ++m_playlistsTurn;
    loadPlaylistPage(0, 0);
}

void SpotifyService::loadPlaylistPage(int offset, int row)
{
    const auto loaded = [this, offset, row, turn = m_playlistsTurn](const auto &page) {
        if (turn != m_playlistsTurn)
            return;
        if (page) {
            setFlag(m_needsReauth, false, &SpotifyService::needsReauthChanged);
            const int end = row + static_cast<int>(page->records.size());
            m_playlists->setRows(row, page->records);
            if (page->entries == playlistPage) {
                loadPlaylistPage(offset + page->entries, end);
                return;
            }
            m_playlists->truncate(end);
        }
        setFlag(m_loadingPlaylists, false, &SpotifyService::loadingPlaylistsChanged);
    };
    m_api.send({.path = u"/me/playlists"_s, .query = pageQuery(playlistPage, offset), .isPatient = true},
               this, [this, loaded, turn = m_playlistsTurn](const SpotifyReply &reply) {
                   const bool isRefused = reply.status == 401 || reply.status == 403;
                   if (turn == m_playlistsTurn && isRefused)
                       setFlag(m_needsReauth, true, &SpotifyService::needsReauthChanged);
                   if (reply.status == 200)
                       runAside(
                           this, [json = reply.body] { return parsePlaylists(json); }, loaded);
                   else
                       loaded(std::optional<SpotifyPage<SpotifyPlaylist>>());
               });
}

void SpotifyService::loadTracks(const SpotifyPlaylist &playlist)
{
    setFlag(m_loadingTracks, true, &SpotifyService::loadingTracksChanged);
    m_tracks->clear();
    m_shown = playlist;
    m_tracks->setEditable(!m_userID.isEmpty() && m_shown.ownerID == m_userID);
    ++m_tracksTurn;
    loadTrackPage(0);
}

void SpotifyService::loadTrackPage(int offset)
{
    const int pageSize = m_shown.isLiked() ? savedTrackPage : playlistTrackPage;
    const auto loaded = [this, offset, pageSize, turn = m_tracksTurn](const auto &page) {
        if (turn != m_tracksTurn)
            return;
        if (page)
            m_tracks->append(page->records);
        // What was removed meanwhile has moved the following entries up.
        if (page && page->entries == pageSize)
            loadTrackPage(offset + pageSize - std::exchange(m_removedWhileLoading, 0));
        else
            setFlag(m_loadingTracks, false, &SpotifyService::loadingTracksChanged);
    };
    const auto answered = [this, loaded](const SpotifyReply &reply) {
        if (reply.status == 200)
            runAside(
                this, [json = reply.body] { return parseTracks(json); }, loaded);
        else
            loaded(std::optional<SpotifyPage<SpotifyTrack>>());
    };
    m_removedWhileLoading = 0;
    if (m_shown.isLiked()) {
        m_api.send({.path = u"/me/tracks"_s, .query = pageQuery(pageSize, offset), .isPatient = true}, this,
                   answered);
        return;
    }
    m_api.send(SpotifyApi::Moved::playlistTracks,
               {.path = playlistPath(m_shown, "/tracks"_L1),
                .query = pageQuery(pageSize, offset, u"items(track(id,uri,name,artists(name)))"_s),
                .isPatient = true},
               {.path = playlistPath(m_shown, "/items"_L1),
                .query = pageQuery(pageSize, offset, u"items(item(id,uri,name,artists(name)))"_s),
                .isPatient = true},
               this, answered);
}

void SpotifyService::command(const QByteArray &method, const QString &path,
                             const std::optional<QJsonObject> &body, const Answered &answered)
{
    const auto sendTo = [this, method, path, body, answered](const QString &device) {
        m_api.send({.method = method, .path = path, .query = {{u"device_id"_s, device}}, .body = body}, this,
                   answered);
    };
    if (m_deviceID) {
        sendTo(*m_deviceID);
        return;
    }
    m_api.send({.path = u"/me/player/devices"_s}, this, [this, sendTo](const SpotifyReply &reply) {
        const auto device = reply.isSuccess() ? parseDevice(reply.body) : std::nullopt;
        if (device && device->isEmpty())
            showFailure(noDevice);
        else if (device)
            sendTo(*device);
    });
}

void SpotifyService::explain(const SpotifyReply &reply)
{
    if (reply.status == 403)
        showFailure(u"Benötigt Spotify Premium."_s);
    else if (reply.status == 404)
        showFailure(m_deviceReady ? u"Wähle eine Playlist zum Starten."_s
                                  : u"Kein aktives Gerät. Kurz warten, bis das Gerät bereit ist."_s);
}

void SpotifyService::sendPlay(const std::optional<QJsonObject> &body)
{
    command("PUT", u"/me/player/play"_s, body, [this](const SpotifyReply &reply) {
        if (reply.status == 404) {
            showFailure(noDevice);
        } else if (reply.status != 0) {
            explain(reply);
            refreshNowPlaying();
        }
    });
}

void SpotifyService::play(const QString &contextURI, const QStringList &uris, const QString &startURI)
{
    QJsonObject body;
    if (!contextURI.isEmpty())
        body.insert(u"context_uri"_s, contextURI);
    if (!uris.isEmpty())
        body.insert(u"uris"_s, QJsonArray::fromStringList(uris));
    if (!startURI.isEmpty())
        body.insert(u"offset"_s, QJsonObject{{u"uri"_s, startURI}});
    if (!body.isEmpty())
        sendPlay(body);
}

void SpotifyService::playPlaylist(const SpotifyPlaylist &playlist)
{
    if (playlist.isLiked())
        play({}, loadedURIs(0));
    else
        play(playlist.uri, {});
}

void SpotifyService::playTrack(const SpotifyTrack &track, const SpotifyPlaylist &playlist)
{
    if (playlist.isLiked())
        play({}, loadedURIs(track.index));
    else
        play(playlist.uri, {}, track.uri);
}

QStringList SpotifyService::loadedURIs(int first) const
{
    QStringList uris;
    for (const SpotifyTrack &track : m_tracks->tracks().mid(first, longestTrackList))
        uris.append(track.uri);
    return uris;
}

void SpotifyService::togglePlayPause()
{
    if (!m_nowPlaying.isPlaying) {
        sendPlay(std::nullopt);
        return;
    }
    command("PUT", u"/me/player/pause"_s, std::nullopt, [this](const SpotifyReply &reply) {
        explain(reply);
        // The next poll is up to 4 seconds away, and a second press until then is meant to resume.
        if (!reply.isSuccess())
            return;
        // A poll from before the pause would show the track as playing again.
        ++m_pollTurn;
        setPlaying(false);
    });
}

void SpotifyService::next()
{
    command("POST", u"/me/player/next"_s, std::nullopt,
            [this](const SpotifyReply &reply) { explain(reply); });
}

void SpotifyService::previous()
{
    command("POST", u"/me/player/previous"_s, std::nullopt,
            [this](const SpotifyReply &reply) { explain(reply); });
}

void SpotifyService::transferToDevice()
{
    if (!m_deviceID)
        return;
    m_api.send({.method = "PUT",
                .path = u"/me/player"_s,
                .body = QJsonObject{{u"device_ids"_s, QJsonArray{*m_deviceID}}, {u"play"_s, false}}},
               this, [](const SpotifyReply &) {});
}

void SpotifyService::createPlaylist(const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return;
    withUserID([this, trimmed] {
        const QJsonObject body{{u"name"_s, trimmed}, {u"public"_s, false}};
        m_api.send(SpotifyApi::Moved::createPlaylist,
                   {.method = "POST", .path = "/users/"_L1 + m_userID + "/playlists"_L1, .body = body},
                   {.method = "POST", .path = u"/me/playlists"_s, .body = body}, this,
                   [this, account = m_account](const SpotifyReply &reply) {
                       if (account == m_account && (reply.status == 200 || reply.status == 201))
                           loadPlaylists();
                   });
    });
}

void SpotifyService::removeTrack(const SpotifyTrack &track, const SpotifyPlaylist &playlist)
{
    m_api.send(
        SpotifyApi::Moved::playlistTracks,
        {.method = "DELETE",
         .path = playlistPath(playlist, "/tracks"_L1),
         .body = removal(u"tracks"_s, track)},
        {.method = "DELETE", .path = playlistPath(playlist, "/items"_L1), .body = removal(u"items"_s, track)},
        this, [this, track, playlist, account = m_account](const SpotifyReply &reply) {
            if (account != m_account)
                return;
            if (reply.status != 200)
                showFailure(u"Konnte Titel nicht entfernen."_s);
            else if (m_shown.id == playlist.id)
                m_removedWhileLoading += m_tracks->remove(track.uri);
        });
}

void SpotifyService::setDeviceID(const std::optional<QString> &id)
{
    m_deviceID = id;
    transferToDevice();
}

void SpotifyService::setDeviceReady(bool ready)
{
    setFlag(m_deviceReady, ready, &SpotifyService::deviceReadyChanged);
}

void SpotifyService::reset()
{
    ++m_account;
    ++m_pollTurn;
    ++m_playlistsTurn;
    ++m_tracksTurn;
    m_shown = {};
    setNowPlaying({});
    m_messageHold.setRemainingTime(0);
    setStatusMessage({});
    setUserID({});
    m_tracks->clear();
    m_playlists->truncate(0);
    setFlag(m_loadingPlaylists, false, &SpotifyService::loadingPlaylistsChanged);
    setFlag(m_loadingTracks, false, &SpotifyService::loadingTracksChanged);
    setFlag(m_needsReauth, false, &SpotifyService::needsReauthChanged);
}

void SpotifyService::setPlaying(bool isPlaying)
{
    SpotifyNowPlaying changed = m_nowPlaying;
    changed.isPlaying = isPlaying;
    setNowPlaying(changed);
}

void SpotifyService::setNowPlaying(const SpotifyNowPlaying &nowPlaying)
{
    if (m_nowPlaying == nowPlaying)
        return;
    m_nowPlaying = nowPlaying;
    Q_EMIT nowPlayingChanged();
}

void SpotifyService::setStatusMessage(const QString &message)
{
    if (m_statusMessage == message)
        return;
    m_statusMessage = message;
    Q_EMIT statusMessageChanged();
}

void SpotifyService::showFailure(const QString &message)
{
    m_messageHold.setRemainingTime(pollInterval);
    setStatusMessage(message);
}

void SpotifyService::setFlag(bool &flag, bool value, void (SpotifyService::*changed)())
{
    if (flag == value)
        return;
    flag = value;
    Q_EMIT(this->*changed)();
}

} // namespace randblatt
