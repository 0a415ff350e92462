#pragma once

#include "platform/ServiceHosts.h"
#include "support/HttpServer.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QStringList>

namespace randblatt {

/// Stands in for the music service: its accounts service, its Web API, its image host and its SDK's. It takes
/// nothing but requests in exactly the right form; others are answered 400 and kept in `violations`.
class SpotifyServer
{
public:
    SpotifyServer();

    [[nodiscard]] ServiceHosts hosts() const;
    [[nodiscard]] QUrl url(const QString &path) const { return m_server.url(path); }
    /// The next `times` requests of `line`, as "GET /v1/me", get `response` in place of the right answer.
    /// `isCarriedOut`: it does what it is asked all the same.
    void fault(const QString &line, const HttpResponse &response, int times = 1, bool isCarriedOut = false);
    /// How many requests of `line` came in.
    [[nodiscard]] int count(const QString &line) const;
    /// The requests of `line`, in order.
    [[nodiscard]] QList<HttpRequest> requestsOf(const QString &line) const;
    [[nodiscard]] QStringList lines() const;
    void loseNetwork() { m_server.close(); }

    [[nodiscard]] static QJsonObject playlist(const QString &id, const QString &name, int tracks,
                                              const QString &ownerID = QStringLiteral("me"));
    /// An entry of a list of tracks.
    [[nodiscard]] static QJsonObject track(int number);
    [[nodiscard]] static QJsonArray tracks(int count);

    /// Told of each request and the status of its answer.
    std::function<void(const HttpRequest &, int)> observer;
    QList<HttpRequest> requests;
    QStringList violations;
    QString refreshToken = QStringLiteral("refresh-0");
    QSet<QString> accessTokens;
    QJsonValue expiresIn = 3600;
    bool renewsRefreshToken = true;
    /// Null: nothing is playing.
    QJsonValue nowPlaying = QJsonValue::Null;
    QJsonArray devices;
    QJsonArray playlists;
    QHash<QString, QJsonArray> playlistTracks;
    QJsonArray savedTracks;
    QString userID = QStringLiteral("me");
    /// The paths that were replaced answer 403.
    bool oldPathsClosed = false;
    /// What the image host serves.
    QByteArray image;
    QByteArray sdkScript;
    int imageDelay = 0;
    /// How long it takes to answer anything, in milliseconds.
    int delay = 0;

private:
    struct Fault
    {
        QString line;
        HttpResponse response;
        int times = 0;
        bool isCarriedOut = false;
    };

    HttpResponse answer(const HttpRequest &request);
    HttpResponse respond(const HttpRequest &request);
    HttpResponse respondRightly(const HttpRequest &request);
    HttpResponse authorize(const HttpRequest &request);
    HttpResponse token(const HttpRequest &request);
    HttpResponse api(const HttpRequest &request, const QString &path);
    HttpResponse player(const HttpRequest &request, const QString &path);
    HttpResponse playlistItems(const HttpRequest &request, const QString &id, bool isNew);
    void countTracks(const QString &id);
    HttpResponse insertItems(const HttpRequest &request, QJsonArray &all);
    HttpResponse createPlaylist(const HttpRequest &request, bool isClosed);
    HttpResponse page(const HttpRequest &request, const QJsonArray &all, int limit,
                      const QStringList &otherQuery = {}, const QString &member = QStringLiteral("track"));
    HttpResponse violation(const HttpRequest &request, const QString &what);
    HttpResponse grant(bool withRefreshToken);

    QList<Fault> m_faults;
    QString m_challenge;
    bool m_isCodeUsed = true;
    int m_grants = 0;
    HttpServer m_server;
};

} // namespace randblatt
