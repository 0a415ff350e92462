#include "support/SpotifyServer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>

#include <cstdio>

// The stand-in for the music service as a program. Its first line on standard output is its address; then
// comes one JSON object for each request: line, query and body, the answer's status, and what was wrong with
// it. It plays: what is playing follows the commands.
//
//   --cover FILE         has this picture for everything
//   --tracks NUMBER      has so many tracks in the first playlist
//   --silent             knows no device
//   --without-playlists  refuses the playlists, as for a token without the permissions
//   --new                treats its client as a new one, for which paths have moved
//   --fault LINE=WHAT    fails the next request of that line, as "GET /v1/me=500"; WHAT is a status, 429 with
//                        the seconds to wait as in 429/7200, or "drop" for a connection that ends

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

const QStringList titles{u"Nachtzug nach Wien"_s,
                         u"Regen auf dem Dach"_s,
                         u"Ein Lied, dessen Titel so lang ist, dass keine Zeile ihn fasst (live)"_s,
                         u"Küchenradio"_s,
                         u"Hinter den Deichen"_s,
                         u"Süden"_s,
                         u"Das dritte Fenster"_s};

QJsonObject titled(int number)
{
    QJsonObject entry = SpotifyServer::track(number);
    QJsonObject track = entry["track"_L1].toObject();
    track.insert(u"name"_s, titles.at(number % titles.size()));
    entry.insert(u"track"_s, track);
    return entry;
}

QJsonArray titled(int from, int to)
{
    QJsonArray all;
    for (int number = from; number < to; ++number)
        all.append(titled(number));
    return all;
}

QJsonArray imagesAt(const QUrl &url)
{
    return {QJsonObject{{u"url"_s, url.toString()}}};
}

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
        QJsonObject item = titled(m_track)["track"_L1].toObject();
        item.insert(u"album"_s, QJsonObject{{u"images"_s, imagesAt(m_server.url(u"/image/now"_s))}});
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
    const QCommandLineOption cover(u"cover"_s, QString(), u"file"_s);
    const QCommandLineOption tracks(u"tracks"_s, QString(), u"number"_s, u"3"_s);
    const QCommandLineOption silent(u"silent"_s);
    const QCommandLineOption withoutPlaylists(u"without-playlists"_s);
    QCommandLineParser arguments;
    const QCommandLineOption newClient(u"new"_s);
    const QCommandLineOption fault(u"fault"_s, QString(), u"line=what"_s);
    arguments.addOptions({cover, tracks, silent, withoutPlaylists, newClient, fault});
    arguments.process(application);

    SpotifyServer server;
    if (arguments.isSet(cover)) {
        QFile file(arguments.value(cover));
        if (!file.open(QFile::ReadOnly))
            qFatal("Nicht zu lesen: %ls", qUtf16Printable(file.fileName()));
        server.image = file.readAll();
    }
    const int count = arguments.value(tracks).toInt();
    QJsonObject mine = SpotifyServer::playlist(u"mine"_s, u"Morgenkaffee"_s, count);
    mine.insert(u"images"_s, imagesAt(server.url(u"/image/mine"_s)));
    server.playlists = {
        mine,
        SpotifyServer::playlist(u"other"_s, u"Regentage – leise Lieder für lange Abende"_s, 12, u"other"_s),
        SpotifyServer::playlist(u"third"_s, u"Unterwegs"_s, 1)};
    server.playlistTracks = {
        {u"mine"_s, titled(0, count)}, {u"other"_s, titled(3, 15)}, {u"third"_s, titled(0, 1)}};
    if (!arguments.isSet(silent)) {
        server.sdkScript = sdk;
        server.devices = {QJsonObject{{u"id"_s, u"speaker"_s}, {u"is_active"_s, true}}};
    }
    if (arguments.isSet(withoutPlaylists))
        server.fault(u"GET /v1/me/playlists"_s, {.status = 403, .body = "{}"}, 1000);

    server.oldPathsClosed = arguments.isSet(newClient);
    const QStringList faults = arguments.values(fault);
    for (const QString &text : faults) {
        const QString what = text.section(u'=', 1);
        HttpResponse response{.status = what.section(u'/', 0, 0).toInt(), .body = "{}"};
        response.isDropped = what == "drop"_L1;
        if (what.contains(u'/'))
            response.headers.append({"Retry-After", what.section(u'/', 1).toLatin1()});
        server.fault(text.section(u'=', 0, 0), response);
    }

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
