#include "support/SpotifyServer.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <cstdio>

// The stand-in for the music service as a program. Its first line on standard output is its address; then
// comes one JSON object for each request: line, query and body, the answer's status, and what was wrong with
// it. It plays: what is playing follows the commands.

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

// An SDK that asks for a token like the service's own, and becomes ready when it gets one.
constexpr auto sdk = R"(
    window.Spotify = {
        Player: class {
            constructor(options) { this.options = options; this.listeners = {}; }
            addListener(type, listener) { this.listeners[type] = listener; }
            connect() { this.options.getOAuthToken(token => this.listeners.ready({ device_id: 'device of ' + token })); }
        }
    };
    addEventListener('load', () => window.onSpotifyWebPlaybackSDKReady());
)";

void write(const QByteArray &line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

/// What the account's player does with the commands.
class Player
{
public:
    explicit Player(SpotifyServer &server)
        : m_server(server)
    {
    }

    void follow(const QString &line, const QJsonObject &body)
    {
        if (line == "PUT /v1/me/player/play"_L1) {
            m_isPlaying = true;
            if (!body.isEmpty())
                m_track = 0;
        } else if (line == "PUT /v1/me/player/pause"_L1) {
            m_isPlaying = false;
        } else if (line == "POST /v1/me/player/next"_L1) {
            ++m_track;
        } else {
            return;
        }
        QJsonObject item = SpotifyServer::track(m_track)["track"_L1].toObject();
        m_server.nowPlaying = QJsonObject{{u"is_playing"_s, m_isPlaying}, {u"item"_s, item}};
    }

private:
    SpotifyServer &m_server;
    bool m_isPlaying = false;
    int m_track = 0;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    SpotifyServer server;
    server.sdkScript = sdk;
    server.playlists = {SpotifyServer::playlist(u"mine"_s, u"Morgenkaffee"_s, 3),
                        SpotifyServer::playlist(u"other"_s, u"Regentage"_s, 12, u"other"_s)};
    server.playlistTracks = {{u"mine"_s, SpotifyServer::tracks(3)}, {u"other"_s, SpotifyServer::tracks(12)}};
    server.devices = {QJsonObject{{u"id"_s, u"speaker"_s}, {u"is_active"_s, true}}};

    Player player(server);
    server.observer = [&](const HttpRequest &request, int status) {
        if (status == 204)
            player.follow(request.line(), QJsonDocument::fromJson(request.body).object());
        const QJsonObject seen{
            {u"line"_s, request.line()},
            {u"query"_s, request.query.toString(QUrl::FullyDecoded)},
            {u"body"_s, QString::fromUtf8(request.body)},
            {u"status"_s, status},
            {u"violation"_s, server.violations.isEmpty() ? QString() : server.violations.last()}};
        server.violations.clear();
        write(QJsonDocument(seen).toJson(QJsonDocument::Compact));
    };
    write(server.hosts().api.toEncoded());
    return QCoreApplication::exec();
}
