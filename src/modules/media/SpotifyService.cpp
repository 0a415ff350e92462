#include "modules/media/SpotifyService.h"

#include "modules/media/RunAside.h"
#include "modules/media/SpotifyMessages.h"

#include <QJsonArray>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pollInterval = 4s;
// The service needs a moment before it tells what a command has changed.
constexpr auto commandEffect = 500ms;
// The service plays no longer list of tracks without a context; it refuses the request as too large.
constexpr qsizetype longestTrackList = 500;
// What is larger takes longer to parse than a frame may.
constexpr qsizetype smallReply = 65'536;

} // namespace

SpotifyService::SpotifyService(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host,
                               QObject *parent)
    : SpotifyLibrary(auth, network, host, parent)
    , m_editor(*this)
{
    m_timer.setInterval(pollInterval);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        // On a network slower than the polls they would queue up before the commands.
        if (m_pollsUnderWay == 0)
            refreshNowPlaying();
    });
    m_pollSoon.setSingleShot(true);
    m_pollSoon.setInterval(commandEffect);
    connect(&m_pollSoon, &QTimer::timeout, this, &SpotifyService::refreshNowPlaying);
    connect(this, &SpotifyConnection::canSendChanged, this, [this] {
        // A pause is over, or has begun: the status line tells.
        if (m_timer.isActive())
            refreshNowPlaying();
    });
    connect(&m_editor, &PlaylistEditor::removed, this, &SpotifyService::tracksRemoved);
}

void SpotifyService::startPolling()
{
    m_isResting = false;
    m_timer.start();
    refreshNowPlaying();
}

void SpotifyService::stopPolling()
{
    m_isResting = false;
    m_timer.stop();
    m_pollSoon.stop();
}

void SpotifyService::refreshNowPlaying()
{
    ++m_pollsUnderWay;
    send({.path = u"/me/player/currently-playing"_s, .query = {{u"additional_types"_s, u"episode"_s}}},
         [this, turn = ++m_pollTurn](const SpotifyReply &reply) { pollAnswered(reply, turn); });
}

void SpotifyService::pollAnswered(const SpotifyReply &reply, int turn)
{
    --m_pollsUnderWay;
    // A later answer tells more than an earlier question.
    if (turn != m_pollTurn)
        return;
    if (!reply.isSuccess()) {
        showPollFailure(reply);
    } else if (reply.status == 204 || reply.body.isEmpty()) {
        setPlaying(false);
        showIdle();
    } else if (reply.body.size() <= smallReply) {
        showNowPlaying(parseNowPlaying(reply.body));
    } else {
        runAside(
            this, [json = reply.body] { return parseNowPlaying(json); },
            [this, turn](const auto &nowPlaying) {
                if (turn == m_pollTurn)
                    showNowPlaying(nowPlaying);
            });
    }
}

void SpotifyService::showNowPlaying(const std::optional<SpotifyNowPlaying> &nowPlaying)
{
    if (!nowPlaying) {
        showPollFailure({.status = 200});
        return;
    }
    setNowPlaying(*nowPlaying);
    if (!nowPlaying->isPlaying)
        showIdle();
    else if (mayReplaceMessage())
        setStatusMessage(trackName().isEmpty() ? u"Spotify nennt den Titel nicht."_s : QString());
}

void SpotifyService::showIdle()
{
    if (!mayReplaceMessage())
        return;
    if (!trackName().isEmpty())
        setStatusMessage({});
    else
        setStatusMessage(m_deviceReady ? u"Bereit – wähle eine Playlist"_s : u"Verbinde Gerät…"_s);
}

void SpotifyService::showPollFailure(const SpotifyReply &reply)
{
    if (mayReplaceMessage())
        setStatusMessage(pollFailure(reply, pausedUntil()));
    if (reply.status != 401 || !m_timer.isActive())
        return;
    // Each further poll would cost a refresh of the token.
    m_timer.stop();
    m_isResting = true;
}

void SpotifyService::command(const QByteArray &method, const QString &path,
                             const std::optional<QJsonObject> &body, const Answered &answered)
{
    const auto sendTo = [this, method, path, body, answered](const QString &device) {
        send({.method = method, .path = path, .query = {{u"device_id"_s, device}}, .body = body},
             [this, answered](const SpotifyReply &reply) {
                 answered(reply);
                 if (!reply.isSuccess())
                     return;
                 if (m_timer.isActive())
                     m_pollSoon.start();
                 else if (m_isResting)
                     wake();
             });
    };
    if (m_deviceID) {
        sendTo(*m_deviceID);
        return;
    }
    send({.path = u"/me/player/devices"_s}, [this, sendTo](const SpotifyReply &reply) {
        const auto device = reply.isSuccess() ? parseDevice(reply.body) : std::nullopt;
        if (!device)
            showFailure(pollFailure(reply, pausedUntil()));
        else if (device->isEmpty())
            showFailure(noDeviceMessage());
        else
            sendTo(*device);
    });
}

void SpotifyService::wake()
{
    startPolling();
    loadPlaylists();
}

void SpotifyService::explain(const SpotifyReply &reply)
{
    if (const QString failure = commandFailure(reply, pausedUntil(), m_deviceReady); !failure.isEmpty())
        showFailure(failure);
}

void SpotifyService::sendPlay(const std::optional<QJsonObject> &body)
{
    command("PUT", u"/me/player/play"_s, body, [this](const SpotifyReply &reply) {
        if (reply.status == 404) {
            showFailure(noDeviceMessage());
            return;
        }
        explain(reply);
        if (reply.status != 0)
            refreshNowPlaying();
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
    for (const SpotifyTrack &track : tracks()->tracks().mid(first, longestTrackList))
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
    skip(u"/me/player/next"_s);
}

void SpotifyService::previous()
{
    skip(u"/me/player/previous"_s);
}

void SpotifyService::skip(const QString &path)
{
    command("POST", path, std::nullopt, [this](const SpotifyReply &reply) { explain(reply); });
}

void SpotifyService::transferToDevice()
{
    if (!m_deviceID)
        return;
    send({.method = "PUT",
          .path = u"/me/player"_s,
          .body = QJsonObject{{u"device_ids"_s, QJsonArray{*m_deviceID}}, {u"play"_s, false}}},
         [this](const SpotifyReply &reply) { explain(reply); });
}

void SpotifyService::createPlaylist(const QString &name, const PlaylistEditor::Done &done)
{
    if (const QString trimmed = name.trimmed(); !trimmed.isEmpty())
        m_editor.create(
            trimmed, done ? done : [](const QString &) {});
}

void SpotifyService::removeTrack(const SpotifyTrack &track, const SpotifyPlaylist &playlist)
{
    m_editor.remove(track, playlist);
}

void SpotifyService::setDeviceID(const std::optional<QString> &id)
{
    m_deviceID = id;
    transferToDevice();
}

void SpotifyService::setDeviceReady(bool ready)
{
    if (m_deviceReady == ready)
        return;
    m_deviceReady = ready;
    Q_EMIT deviceReadyChanged();
}

void SpotifyService::reset()
{
    SpotifyLibrary::reset();
    m_editor.reset();
    ++m_pollTurn;
    // Their answers are dropped.
    m_pollsUnderWay = 0;
    m_pollSoon.stop();
    setNowPlaying({});
    setDeviceReady(false);
    m_deviceID.reset();
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

} // namespace randblatt
