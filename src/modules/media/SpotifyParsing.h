#pragma once

#include "modules/media/SpotifyRecords.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace randblatt {

/// A part of a list.
template <typename Record>
struct SpotifyPage
{
    QList<Record> records;
    /// How many entries the service sent, with those that are no records.
    int entries = 0;
};

struct SpotifyNowPlaying
{
    bool isPlaying = false;
    /// These are empty where the service names nothing. An episode has its programme for an artist.
    QString trackName;
    QString artistName;
    QUrl albumArtURL;

    friend bool operator==(const SpotifyNowPlaying &, const SpotifyNowPlaying &) = default;
};

// What the service's answers say, from JSON of any shape: none where the text is no JSON object with the
// member that it is about, empty values where others are missing or have another type. These functions may be
// used on any thread.

[[nodiscard]] std::optional<SpotifyPage<SpotifyPlaylist>> parsePlaylists(const QByteArray &json);
/// Both forms of an entry: with the member `track`, and with its successor `item`.
[[nodiscard]] std::optional<SpotifyPage<SpotifyTrack>> parseTracks(const QByteArray &json);
[[nodiscard]] std::optional<SpotifyNowPlaying> parseNowPlaying(const QByteArray &json);
/// The id of the device that commands go to: the first active one, else the first; empty where there is none.
[[nodiscard]] std::optional<QString> parseDevice(const QByteArray &json);
[[nodiscard]] std::optional<QString> parseUserID(const QByteArray &json);

} // namespace randblatt
