#pragma once

#include <QMetaType>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// A playlist of the user's list; identified by its id.
struct SpotifyPlaylist
{
    Q_GADGET
    QML_VALUE_TYPE(spotifyPlaylist)
    Q_PROPERTY(QString id MEMBER id FINAL)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString uri MEMBER uri FINAL)
    Q_PROPERTY(int trackCount MEMBER trackCount FINAL)
    Q_PROPERTY(QUrl imageURL MEMBER imageURL FINAL)
    Q_PROPERTY(QString ownerName MEMBER ownerName FINAL)
    Q_PROPERTY(bool editable MEMBER editable FINAL)
    Q_PROPERTY(bool isLiked READ isLiked FINAL)

public:
    QString id;
    QString name;
    QString uri;
    int trackCount = 0;
    /// Empty where the playlist has no image.
    QUrl imageURL;
    QString ownerName;
    QString ownerID;
    /// Whether the owner is the user who is signed in.
    bool editable = false;

    /// The one that stands for the user's saved tracks.
    [[nodiscard]] static SpotifyPlaylist liked();
    [[nodiscard]] bool isLiked() const;

    friend bool operator==(const SpotifyPlaylist &, const SpotifyPlaylist &) = default;
};

/// A track of the playlist that is shown.
struct SpotifyTrack
{
    Q_GADGET
    QML_VALUE_TYPE(spotifyTrack)
    Q_PROPERTY(QString id MEMBER id FINAL)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString artist MEMBER artist FINAL)
    Q_PROPERTY(QString uri MEMBER uri FINAL)
    Q_PROPERTY(int index MEMBER index FINAL)

public:
    QString id;
    QString name;
    /// All artists, separated by commas.
    QString artist;
    QString uri;
    /// The place in the loaded list, from 0.
    int index = 0;
    /// The place in the service's list, which has entries that are no tracks as well.
    int place = 0;

    friend bool operator==(const SpotifyTrack &, const SpotifyTrack &) = default;
};

} // namespace randblatt
