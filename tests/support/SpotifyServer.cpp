#include "support/SpotifyServer.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QRegularExpression>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto clientID = "5d2c8e71a09f4b63b8e4c1f07a92d3e6"_L1;
// With what has a meaning of its own in forms.
constexpr auto code = "good-code+&=/ 1"_L1;
constexpr auto redirectURI = "randblatt://callback"_L1;
constexpr auto scope = "streaming user-read-email user-read-private user-read-playback-state "
                       "user-modify-playback-state user-read-currently-playing playlist-read-private "
                       "playlist-read-collaborative playlist-modify-public playlist-modify-private "
                       "user-library-read user-library-modify user-top-read"_L1;

/// Playlists as those clients get them to whom the old paths are closed.
QJsonArray inNewForm(const QJsonArray &playlists)
{
    QJsonArray all;
    for (const auto &value : playlists) {
        QJsonObject playlist = value.toObject();
        playlist.insert(u"items"_s, playlist.take(u"tracks"_s));
        all.append(playlist);
    }
    return all;
}

HttpResponse json(const QJsonObject &object, int status = 200)
{
    return {.status = status, .body = QJsonDocument(object).toJson(QJsonDocument::Compact)};
}

HttpResponse error(int status)
{
    return json({{u"error"_s, QJsonObject{{u"status"_s, status}}}}, status);
}

QStringList keys(const QUrlQuery &query)
{
    QStringList names;
    const auto items = query.queryItems();
    for (const auto &item : items)
        names.append(item.first);
    return names;
}

} // namespace

SpotifyServer::SpotifyServer()
    : m_server([this](const HttpRequest &request) { return answer(request); })
{
}

ServiceHosts SpotifyServer::hosts() const
{
    return {.accounts = m_server.url(), .api = m_server.url(), .sdk = m_server.url()};
}

void SpotifyServer::fault(const QString &line, const HttpResponse &response, int times, bool isCarriedOut)
{
    m_faults.append({line, response, times, isCarriedOut});
}

int SpotifyServer::count(const QString &line) const
{
    return static_cast<int>(requestsOf(line).size());
}

QList<HttpRequest> SpotifyServer::requestsOf(const QString &line) const
{
    QList<HttpRequest> found;
    std::copy_if(requests.begin(), requests.end(), std::back_inserter(found),
                 [&line](const HttpRequest &request) { return request.line() == line; });
    return found;
}

QStringList SpotifyServer::lines() const
{
    QStringList lines;
    for (const HttpRequest &request : requests)
        lines.append(request.line());
    return lines;
}

QJsonObject SpotifyServer::playlist(const QString &id, const QString &name, int tracks,
                                    const QString &ownerID)
{
    return {{u"id"_s, id},
            {u"name"_s, name},
            {u"uri"_s, QString(u"spotify:playlist:"_s + id)},
            {u"tracks"_s, QJsonObject{{u"total"_s, tracks}}},
            {u"images"_s, QJsonArray()},
            {u"owner"_s, QJsonObject{{u"id"_s, ownerID}, {u"display_name"_s, QString(ownerID.toUpper())}}}};
}

QJsonObject SpotifyServer::track(int number)
{
    return {
        {u"track"_s, QJsonObject{{u"id"_s, u"t%1"_s.arg(number)},
                                 {u"uri"_s, u"spotify:track:t%1"_s.arg(number)},
                                 {u"name"_s, u"Titel %1"_s.arg(number)},
                                 {u"artists"_s, QJsonArray{QJsonObject{{u"name"_s, u"Nora Feld"_s}},
                                                           QJsonObject{{u"name"_s, u"Die Brandung"_s}}}}}}};
}

QJsonArray SpotifyServer::tracks(int count)
{
    QJsonArray all;
    for (int number = 0; number < count; ++number)
        all.append(track(number));
    return all;
}

HttpResponse SpotifyServer::answer(const HttpRequest &request)
{
    requests.append(request);
    HttpResponse response = respond(request);
    response.delayMilliseconds = std::max(response.delayMilliseconds, delay);
    if (observer)
        observer(request, response.status);
    return response;
}

HttpResponse SpotifyServer::respond(const HttpRequest &request)
{
    for (Fault &fault : m_faults) {
        if (fault.line == request.line() && fault.times > 0) {
            --fault.times;
            if (fault.isCarriedOut)
                respondRightly(request);
            return fault.response;
        }
    }
    return respondRightly(request);
}

HttpResponse SpotifyServer::respondRightly(const HttpRequest &request)
{
    if (request.path == "/authorize"_L1)
        return authorize(request);
    if (request.path == "/api/token"_L1)
        return token(request);
    if (request.path.startsWith("/image/"_L1))
        return {.body = image, .contentType = "image/png", .delayMilliseconds = imageDelay};
    if (request.path == "/spotify-player.js"_L1)
        return {.body = sdkScript, .contentType = "text/javascript"};
    if (!request.path.startsWith("/v1/"_L1))
        return violation(request, u"unbekannter Pfad"_s);
    const QByteArray authorization = request.headers.value("authorization");
    if (!authorization.startsWith("Bearer "))
        return violation(request, u"kein Token"_s);
    if (!accessTokens.contains(QString::fromLatin1(authorization.sliced(7))))
        return error(401);
    const bool isWriting = request.method != "GET";
    if (isWriting && request.headers.value("content-type") != "application/json")
        return violation(request, u"kein JSON angekündigt"_s);
    if (isWriting && !QJsonDocument::fromJson(request.body).isObject())
        return violation(request, u"kein JSON-Objekt"_s);
    // RFC 9112, section 6.3: without a length the body is empty; the service answers 411.
    if (isWriting && !request.headers.contains("content-length"))
        return violation(request, u"keine Länge"_s);
    if (!isWriting && !request.body.isEmpty())
        return violation(request, u"Inhalt bei GET"_s);
    return api(request, request.path.sliced(3));
}

HttpResponse SpotifyServer::authorize(const HttpRequest &request)
{
    const QUrlQuery &query = request.query;
    const auto value = [&query](const QString &key) { return query.queryItemValue(key, QUrl::FullyDecoded); };
    if (keys(query) != QStringList{u"client_id"_s, u"response_type"_s, u"redirect_uri"_s, u"scope"_s,
                                   u"code_challenge_method"_s, u"code_challenge"_s, u"state"_s})
        return violation(request, u"falsche Felder"_s);
    if (value(u"client_id"_s) != clientID || value(u"response_type"_s) != "code"_L1 ||
        value(u"redirect_uri"_s) != redirectURI || value(u"scope"_s) != scope ||
        value(u"code_challenge_method"_s) != "S256"_L1 || value(u"state"_s).size() != 16)
        return violation(request, u"falsche Werte"_s);
    m_challenge = value(u"code_challenge"_s);
    m_isCodeUsed = false;
    const QByteArray location =
        "randblatt://callback?code=good%2Dcode%2B%26%3D%2F%201&state=" + value(u"state"_s).toLatin1();
    return {.status = 302, .headers = {{"Location", location}}};
}

HttpResponse SpotifyServer::token(const HttpRequest &request)
{
    if (request.method != "POST" ||
        request.headers.value("content-type") != "application/x-www-form-urlencoded")
        return violation(request, u"kein Formular"_s);
    // RFC 6749, appendix B: nothing but letters, digits and a few marks stands for itself in a form.
    static const QRegularExpression encoded(u"^([a-z_]+=([A-Za-z0-9._~-]|%[0-9A-F]{2})*(&|$))+$"_s);
    if (!encoded.match(QString::fromLatin1(request.body)).hasMatch())
        return violation(request, u"falsch verschlüsselt"_s);
    const QUrlQuery form(QString::fromLatin1(request.body));
    const auto value = [&form](const QString &key) { return form.queryItemValue(key, QUrl::FullyDecoded); };
    if (value(u"client_id"_s) != clientID)
        return violation(request, u"falsche Client-ID"_s);
    if (value(u"grant_type"_s) == "refresh_token"_L1) {
        if (form.queryItems().size() != 3)
            return violation(request, u"falsche Felder"_s);
        if (value(u"refresh_token"_s) != refreshToken)
            return json({{u"error"_s, u"invalid_grant"_s}}, 400);
        return grant(renewsRefreshToken);
    }
    if (value(u"grant_type"_s) != "authorization_code"_L1 || form.queryItems().size() != 5 ||
        value(u"redirect_uri"_s) != redirectURI)
        return violation(request, u"falsche Felder"_s);
    const QByteArray verifier = value(u"code_verifier"_s).toUtf8();
    const QByteArray challenge =
        QCryptographicHash::hash(verifier, QCryptographicHash::Sha256)
            .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    // A code holds once, and RFC 7636, section 4.1, wants 43 characters at least.
    if (std::exchange(m_isCodeUsed, true) || verifier.size() < 43 || value(u"code"_s) != code ||
        QString::fromLatin1(challenge) != m_challenge)
        return json({{u"error"_s, u"invalid_grant"_s}}, 400);
    return grant(true);
}

HttpResponse SpotifyServer::grant(bool withRefreshToken)
{
    ++m_grants;
    const QString access = u"access-%1"_s.arg(m_grants);
    accessTokens = {access};
    QJsonObject granted{{u"access_token"_s, access}, {u"token_type"_s, u"Bearer"_s}};
    if (!expiresIn.isUndefined())
        granted.insert(u"expires_in"_s, expiresIn);
    if (withRefreshToken) {
        refreshToken = u"refresh-%1"_s.arg(m_grants);
        granted.insert(u"refresh_token"_s, refreshToken);
    }
    return json(granted);
}

HttpResponse SpotifyServer::api(const HttpRequest &request, const QString &path)
{
    const QStringList parts = path.split(u'/', Qt::SkipEmptyParts);
    if (path.startsWith("/me/player"_L1))
        return player(request, path);
    if (path == "/me"_L1 && request.method == "GET" && request.query.isEmpty())
        return json({{u"id"_s, userID}});
    if (path == "/me/playlists"_L1)
        return request.method == "GET" ? page(request, playlists, 50) : createPlaylist(request, false);
    if (path == "/me/tracks"_L1 && request.method == "GET")
        return page(request, savedTracks, 50);
    if (parts.size() == 3 && parts.at(0) == "users"_L1 && parts.at(1) == userID)
        return createPlaylist(request, oldPathsClosed);
    if (parts.size() == 3 && parts.at(0) == "playlists"_L1)
        return playlistItems(request, parts.at(1), parts.at(2) == "items"_L1);
    return violation(request, u"unbekannter Pfad"_s);
}

HttpResponse SpotifyServer::player(const HttpRequest &request, const QString &path)
{
    if (request.method == "GET") {
        const bool isDevices = path == "/me/player/devices"_L1;
        // Clients that do not name episodes are told of one without its item.
        if (request.query.toString() != (isDevices ? u""_s : u"additional_types=episode"_s))
            return violation(request, u"falsche Felder"_s);
        if (isDevices)
            return json({{u"devices"_s, devices}});
        return nowPlaying.isNull() ? HttpResponse{.status = 204} : json(nowPlaying.toObject());
    }
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    if (path == "/me/player"_L1) {
        const bool isRight = request.method == "PUT" &&
                             body.keys() == QStringList{u"device_ids"_s, u"play"_s} &&
                             body.value("device_ids"_L1).toArray().size() == 1 &&
                             body.value("play"_L1) == QJsonValue(false) && request.query.isEmpty();
        return isRight ? HttpResponse{.status = 204} : violation(request, u"falsche Übergabe"_s);
    }
    if (keys(request.query) != QStringList(u"device_id"_s))
        return violation(request, u"kein Gerät"_s);
    const bool isPlay = path == "/me/player/play"_L1;
    const bool isPut = isPlay || path == "/me/player/pause"_L1;
    const QStringList known{u"context_uri"_s, u"offset"_s, u"uris"_s};
    const QStringList used = body.keys();
    if (request.method != (isPut ? "PUT" : "POST") || (!isPlay && request.body != "{}") ||
        !std::all_of(used.begin(), used.end(), [&](const QString &key) { return known.contains(key); }))
        return violation(request, u"falscher Befehl"_s);
    return {.status = 204};
}

HttpResponse SpotifyServer::playlistItems(const HttpRequest &request, const QString &id, bool isNew)
{
    if (oldPathsClosed && !isNew)
        return error(403);
    if (!playlistTracks.contains(id))
        return error(404);
    QJsonArray &all = playlistTracks[id];
    const QString member = isNew ? u"item"_s : u"track"_s;
    if (request.method == "DELETE") {
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        const QString list = isNew ? u"items"_s : u"tracks"_s;
        const QJsonArray doomed = body.value(list).toArray();
        if (body.keys() != QStringList(list) || doomed.size() != 1 ||
            doomed.first().toObject().keys() != QStringList(u"uri"_s))
            return violation(request, u"falsches Entfernen"_s);
        QJsonArray kept;
        for (const auto &entry : std::as_const(all)) {
            if (entry["track"_L1]["uri"_L1] != doomed.first()["uri"_L1])
                kept.append(entry);
        }
        all = kept;
        countTracks(id);
        return json({{u"snapshot_id"_s, u"s"_s}});
    }
    if (request.method == "POST") {
        const HttpResponse response = insertItems(request, all);
        countTracks(id);
        return response;
    }
    // At most 50 of the new kind, whatever is asked for.
    if (isNew && request.query.queryItemValue(u"limit"_s).toInt() > 50)
        return error(422);
    const QString fields = u"items(%1(id,uri,name,artists(name)))"_s.arg(member);
    if (request.query.queryItemValue(u"fields"_s, QUrl::FullyDecoded) != fields)
        return violation(request, u"falsche Felder"_s);
    return page(request, all, isNew ? 50 : 100, {u"fields"_s}, member);
}

void SpotifyServer::countTracks(const QString &id)
{
    for (QJsonValueRef value : playlists) {
        QJsonObject playlist = value.toObject();
        if (playlist.value("id"_L1) == id) {
            playlist.insert(u"tracks"_s, QJsonObject{{u"total"_s, playlistTracks[id].size()}});
            value = playlist;
        }
    }
}

HttpResponse SpotifyServer::insertItems(const HttpRequest &request, QJsonArray &all)
{
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    const QJsonArray uris = body.value("uris"_L1).toArray();
    const bool isAtEnd = !body.contains("position"_L1);
    const QStringList expected = isAtEnd ? QStringList(u"uris"_s) : QStringList{u"position"_s, u"uris"_s};
    if (body.keys() != expected || uris.size() != 1 || !request.query.isEmpty())
        return violation(request, u"falsches Einfügen"_s);
    const int position = isAtEnd ? static_cast<int>(all.size()) : body.value("position"_L1).toInt(-1);
    // Files of the user's own cannot be added.
    if (position < 0 || position > all.size() || uris.first().toString().startsWith("spotify:local:"_L1))
        return error(400);
    all.insert(position, track(uris.first().toString().section(u":t"_s, -1).toInt()));
    return json({{u"snapshot_id"_s, u"s"_s}}, 201);
}

HttpResponse SpotifyServer::createPlaylist(const HttpRequest &request, bool isClosed)
{
    if (isClosed)
        return error(403);
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    if (request.method != "POST" || body.keys() != QStringList{u"name"_s, u"public"_s} ||
        body.value("public"_L1) != QJsonValue(false) || !request.query.isEmpty())
        return violation(request, u"falsche Playlist"_s);
    const QString id = u"new%1"_s.arg(playlists.size());
    playlists.prepend(playlist(id, body.value("name"_L1).toString(), 0, userID));
    playlistTracks.insert(id, {});
    return json(playlists.first().toObject(), 201);
}

HttpResponse SpotifyServer::page(const HttpRequest &request, const QJsonArray &all, int limit,
                                 const QStringList &otherQuery, const QString &member)
{
    const QStringList first = QStringList(u"limit"_s) + otherQuery;
    const QStringList used = keys(request.query);
    const int offset = request.query.queryItemValue(u"offset"_s).toInt();
    if (request.method != "GET" ||
        (used != first && (used != first + QStringList(u"offset"_s) || offset == 0)) ||
        request.query.queryItemValue(u"limit"_s) != QString::number(limit))
        return violation(request, u"falsche Felder"_s);
    QJsonArray part;
    for (qsizetype i = offset; i < all.size() && i < offset + limit; ++i) {
        const QJsonValue entry = all.at(i);
        part.append(member == "item"_L1 ? QJsonObject{{member, entry["track"_L1]}} : entry);
    }
    if (oldPathsClosed && request.path == "/v1/me/playlists"_L1)
        part = inNewForm(part);
    return json({{u"items"_s, part}});
}

HttpResponse SpotifyServer::violation(const HttpRequest &request, const QString &what)
{
    violations.append(request.line() + u": "_s + what + u": "_s + QString::fromUtf8(request.body));
    return error(400);
}

} // namespace randblatt
