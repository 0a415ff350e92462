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

/// The list that is the object's member `name`.
std::optional<QJsonArray> parseList(const QByteArray &json, const QString &name)
{
    const auto object = parseObject(json);
    const QJsonValue list = object ? object->value(name) : QJsonValue();
    return list.isArray() ? std::optional(list.toArray()) : std::nullopt;
}

/// Whether the value has the type, or is not there.
bool isAbsentOr(QJsonValue::Type type, const QJsonValue &value)
{
    return value.isUndefined() || value.isNull() || value.type() == type;
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

/// What is played where the service names no item.
QString nameOfKind(const QJsonObject &playing)
{
    const QJsonValue kind = playing.value("currently_playing_type"_L1);
    return kind == "ad"_L1 ? u"Werbung"_s : kind == "episode"_L1 ? u"Podcast"_s : QString();
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
    const auto items = parseList(json, u"items"_s);
    if (!items)
        return std::nullopt;
    SpotifyPage<SpotifyPlaylist> page;
    page.entries = static_cast<int>(items->size());
    for (const auto &value : *items) {
        const QJsonObject item = value.toObject();
        SpotifyPlaylist playlist;
        playlist.id = item.value("id"_L1).toString();
        if (playlist.id.isEmpty())
            continue;
        const QJsonValue owner = item.value("owner"_L1);
        playlist.name = item.value("name"_L1).toString();
        playlist.uri = item.value("uri"_L1).toString();
        // The successor of the member comes first: where both are there, it is the one that is kept up.
        const QJsonValue count = item.value("items"_L1)["total"_L1];
        playlist.trackCount = (count.isDouble() ? count : item.value("tracks"_L1)["total"_L1]).toInt();
        playlist.imageURL = firstImage(item.value("images"_L1));
        playlist.ownerName = owner["display_name"_L1].toString();
        playlist.ownerID = owner["id"_L1].toString();
        page.records.append(playlist);
    }
    return page;
}

std::optional<SpotifyPage<SpotifyTrack>> parseTracks(const QByteArray &json)
{
    const auto items = parseList(json, u"items"_s);
    if (!items)
        return std::nullopt;
    SpotifyPage<SpotifyTrack> page;
    page.entries = static_cast<int>(items->size());
    page.records.reserve(items->size());
    int place = -1;
    for (const auto &entry : *items) {
        ++place;
        QJsonValue track = entry["track"_L1];
        if (!track.isObject())
            track = entry["item"_L1];
        if (!track.isObject())
            continue;
        page.records.append({.id = track["id"_L1].toString(),
                             .name = track["name"_L1].toString(),
                             .artist = joinedArtists(track["artists"_L1]),
                             .uri = track["uri"_L1].toString(),
                             .index = static_cast<int>(page.records.size()),
                             .place = place});
    }
    return page;
}

std::optional<SpotifyNowPlaying> parseNowPlaying(const QByteArray &json)
{
    const auto object = parseObject(json);
    if (!object)
        return std::nullopt;
    const QJsonValue item = object->value("item"_L1);
    const QJsonValue isPlaying = object->value("is_playing"_L1);
    if (!isAbsentOr(QJsonValue::Object, item) || !isAbsentOr(QJsonValue::Bool, isPlaying))
        return std::nullopt;
    SpotifyNowPlaying nowPlaying{.isPlaying = isPlaying.toBool(),
                                 .trackName = item["name"_L1].toString(),
                                 .artistName = joinedArtists(item["artists"_L1]),
                                 .albumArtURL = firstImage(item["album"_L1]["images"_L1])};
    const QJsonValue show = item["show"_L1];
    if (!item.isObject()) {
        nowPlaying.trackName = nameOfKind(*object);
    } else if (show.isObject()) {
        const QUrl image = firstImage(item["images"_L1]);
        nowPlaying.artistName = show["name"_L1].toString();
        nowPlaying.albumArtURL = image.isEmpty() ? firstImage(show["images"_L1]) : image;
    }
    return nowPlaying;
}

std::optional<QString> parseDevice(const QByteArray &json)
{
    const auto devices = parseList(json, u"devices"_s);
    if (!devices)
        return std::nullopt;
    QString first;
    for (const auto &device : *devices) {
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
