#pragma once

#include "modules/media/ScriptedSession.h"
#include "modules/media/SpotifyAuth.h"
#include "modules/media/SpotifyService.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "support/Fakes.h"
#include "support/SpotifyServer.h"

#include <QAbstractItemModelTester>
#include <QJsonDocument>
#include <QTest>

namespace randblatt {

/// The service for a user who is signed in.
struct ServiceFixture
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

    ServiceFixture()
    {
        preferences.setValue(QStringLiteral("sp_access"), QStringLiteral("access-0"));
        preferences.setValue(QStringLiteral("sp_refresh"), server.refreshToken);
        preferences.setValue(QStringLiteral("sp_expiry"), 1e12);
        server.accessTokens = {QStringLiteral("access-0")};
        auth = std::make_unique<SpotifyAuth>(preferences, settings, session, network, server.hosts());
        service = std::make_unique<SpotifyService>(*auth, network, server.hosts().api);
        playlistsTester = std::make_unique<QAbstractItemModelTester>(service->playlists());
        tracksTester = std::make_unique<QAbstractItemModelTester>(service->tracks());
    }
    ~ServiceFixture() { QCOMPARE(server.violations, QStringList()); }

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

inline SpotifyPlaylist shown(const QString &id, const QString &owner = QStringLiteral("me"))
{
    SpotifyPlaylist playlist;
    playlist.id = id;
    playlist.uri = QStringLiteral("spotify:playlist:") + id;
    playlist.ownerID = owner;
    return playlist;
}

inline QJsonObject playing()
{
    return {{QStringLiteral("is_playing"), true},
            {QStringLiteral("item"),
             QJsonObject{{QStringLiteral("name"), QStringLiteral("Nacht\u202Ezug \"live\"")},
                         {QStringLiteral("artists"),
                          SpotifyServer::track(0)[QLatin1StringView("track")][QLatin1StringView("artists")]},
                         {QStringLiteral("album"),
                          QJsonObject{{QStringLiteral("images"),
                                       QJsonArray{QJsonObject{
                                           {QStringLiteral("url"), QStringLiteral("https://i/1")}}}}}}}}};
}

} // namespace randblatt
