#include "modules/media/SpotifyParsing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

std::optional<QJsonObject> parseObject(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

QString joinedArtists(const QJsonValue &artists)
{
    QStringList names;
    const QJsonArray array = artists.toArray();
    for (const auto &artist : array) {
        if (const QString name = artist["name"_L1].toString(); !name.isEmpty())
            names.append(name);
    }
    return names.join(", "_L1);
}

/// The first image's address, if it is one of the web's.
QUrl firstImage(const QJsonValue &images)
{
    const QUrl url(images.toArray().at(0)["url"_L1].toString());
    return url.scheme() == "https"_L1 || url.scheme() == "http"_L1 ? url : QUrl();
}

} // namespace

std::optional<SpotifyPage<SpotifyPlaylist>> parsePlaylists(const QByteArray &json)
{
    const auto object = parseObject(json);
    if (!object)
        return std::nullopt;
    const QJsonArray items = object->value("items"_L1).toArray();
    SpotifyPage<SpotifyPlaylist> page;
    page.entries = static_cast<int>(items.size());
    for (const auto &value : items) {
        const QJsonObject item = value.toObject();
        SpotifyPlaylist playlist;
        playlist.id = item.value("id"_L1).toString();
        if (playlist.id.isEmpty())
            continue;
        const QJsonValue owner = item.value("owner"_L1);
        playlist.name = item.value("name"_L1).toString();
        playlist.uri = item.value("uri"_L1).toString();
        playlist.trackCount = item.value("tracks"_L1)["total"_L1].toInt();
        playlist.imageURL = firstImage(item.value("images"_L1));
        playlist.ownerName = owner["display_name"_L1].toString();
        playlist.ownerID = owner["id"_L1].toString();
        page.records.append(playlist);
    }
    return page;
}

std::optional<SpotifyPage<SpotifyTrack>> parseTracks(const QByteArray &json)
{
    const auto object = parseObject(json);
    if (!object)
        return std::nullopt;
    const QJsonArray items = object->value("items"_L1).toArray();
    SpotifyPage<SpotifyTrack> page;
    page.entries = static_cast<int>(items.size());
    page.records.reserve(items.size());
    for (const auto &entry : items) {
        QJsonValue track = entry["track"_L1];
        if (!track.isObject())
            track = entry["item"_L1];
        if (!track.isObject())
            continue;
        page.records.append({.id = track["id"_L1].toString(),
                             .name = track["name"_L1].toString(),
                             .artist = joinedArtists(track["artists"_L1]),
                             .uri = track["uri"_L1].toString(),
                             .index = static_cast<int>(page.records.size())});
    }
    return page;
}

std::optional<SpotifyNowPlaying> parseNowPlaying(const QByteArray &json)
{
    const auto object = parseObject(json);
    if (!object)
        return std::nullopt;
    const QJsonValue item = object->value("item"_L1);
    return SpotifyNowPlaying{.isPlaying = object->value("is_playing"_L1).toBool(),
                             .trackName = item["name"_L1].toString(),
                             .artistName = joinedArtists(item["artists"_L1]),
                             .albumArtURL = firstImage(item["album"_L1]["images"_L1])};
}

std::optional<QString> parseDevice(const QByteArray &json)
{
    const auto object = parseObject(json);
    if (!object)
        return std::nullopt;
    QString first;
    const QJsonArray devices = object->value("devices"_L1).toArray();
    for (const auto &device : devices) {
        const QString id = device["id"_L1].toString();
        if (!id.isEmpty() && device["is_active"_L1].toBool())
            return id;
        if (first.isEmpty())
            first = id;
    }
    return first;
}

std::optional<QString> parseUserID(const QByteArray &json)
{
    const auto object = parseObject(json);
    if (!object || !object->value("id"_L1).isString())
        return std::nullopt;
    return object->value("id"_L1).toString();
}

} // namespace randblatt
