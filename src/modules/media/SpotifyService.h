#pragma once

#include "modules/media/SpotifyApi.h"
#include "modules/media/SpotifyParsing.h"
#include "modules/media/SpotifyPlaylistModel.h"
#include "modules/media/SpotifyTrackModel.h"

#include <QDeadlineTimer>
#include <QStringList>
#include <QTimer>

namespace randblatt {

/// What the player card shows and does: what is playing, the commands, the playlists and their tracks. Every
/// operation returns at once and reports through the properties. To be used on the main thread.
class SpotifyService : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media module has the service.")
    Q_PROPERTY(QString trackName READ trackName NOTIFY nowPlayingChanged FINAL)
    Q_PROPERTY(QString artistName READ artistName NOTIFY nowPlayingChanged FINAL)
    Q_PROPERTY(QUrl albumArtURL READ albumArtURL NOTIFY nowPlayingChanged FINAL)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY nowPlayingChanged FINAL)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged FINAL)
    Q_PROPERTY(bool deviceReady READ deviceReady NOTIFY deviceReadyChanged FINAL)
    Q_PROPERTY(bool loadingPlaylists READ loadingPlaylists NOTIFY loadingPlaylistsChanged FINAL)
    Q_PROPERTY(bool loadingTracks READ loadingTracks NOTIFY loadingTracksChanged FINAL)
    Q_PROPERTY(bool needsReauth READ needsReauth NOTIFY needsReauthChanged FINAL)
    Q_PROPERTY(randblatt::SpotifyPlaylistModel *playlists READ playlists CONSTANT FINAL)
    Q_PROPERTY(randblatt::SpotifyTrackModel *tracks READ tracks CONSTANT FINAL)
    Q_PROPERTY(randblatt::SpotifyPlaylist likedPlaylist READ likedPlaylist CONSTANT FINAL)

public:
    /// Borrows the authorisation and the network, which must outlive the service; `host` is the API's base
    /// URL.
    SpotifyService(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host,
                   QObject *parent = nullptr);

    /// Asks what is playing, now and then every 4 seconds.
    void startPolling();
    void stopPolling();
    void refreshNowPlaying();
    void loadUserID();
    Q_INVOKABLE void loadPlaylists();
    /// Empties the tracks and loads those of `playlist`, page by page.
    Q_INVOKABLE void loadTracks(const randblatt::SpotifyPlaylist &playlist);
    /// Plays a context, from the track at `startURI` on where that is given, or tracks without a context.
    void play(const QString &contextURI, const QStringList &uris, const QString &startURI = {});
    /// Plays all of a playlist; of the saved tracks those that are loaded.
    Q_INVOKABLE void playPlaylist(const randblatt::SpotifyPlaylist &playlist);
    /// Plays a playlist from one of its loaded tracks on.
    Q_INVOKABLE void playTrack(const randblatt::SpotifyTrack &track,
                               const randblatt::SpotifyPlaylist &playlist);
    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();
    /// Makes our own device the active one, without starting it.
    void transferToDevice();
    /// Creates a private playlist; the name is trimmed, and an empty one creates nothing.
    Q_INVOKABLE void createPlaylist(const QString &name);
    Q_INVOKABLE void removeTrack(const randblatt::SpotifyTrack &track,
                                 const randblatt::SpotifyPlaylist &playlist);
    /// Our own device's id, or none. Playback is transferred to a device each time that it is set.
    void setDeviceID(const std::optional<QString> &id);
    void setDeviceReady(bool ready);
    /// Forgets everything that belongs to the user's account.
    void reset();

    [[nodiscard]] QString trackName() const { return m_nowPlaying.trackName; }
    /// All artists, separated by commas.
    [[nodiscard]] QString artistName() const { return m_nowPlaying.artistName; }
    [[nodiscard]] QUrl albumArtURL() const { return m_nowPlaying.albumArtURL; }
    [[nodiscard]] bool isPlaying() const { return m_nowPlaying.isPlaying; }
    /// One line in German; empty where there is nothing to say.
    [[nodiscard]] QString statusMessage() const { return m_statusMessage; }
    [[nodiscard]] bool deviceReady() const { return m_deviceReady; }
    [[nodiscard]] std::optional<QString> deviceID() const { return m_deviceID; }
    [[nodiscard]] bool loadingPlaylists() const { return m_loadingPlaylists; }
    [[nodiscard]] bool loadingTracks() const { return m_loadingTracks; }
    /// Whether the token lacks what the playlists need, so that the user has to sign in again.
    [[nodiscard]] bool needsReauth() const { return m_needsReauth; }
    [[nodiscard]] SpotifyPlaylistModel *playlists() const { return m_playlists; }
    [[nodiscard]] SpotifyTrackModel *tracks() const { return m_tracks; }
    [[nodiscard]] SpotifyPlaylist likedPlaylist() const { return SpotifyPlaylist::liked(); }

Q_SIGNALS:
    void nowPlayingChanged();
    void statusMessageChanged();
    void deviceReadyChanged();
    void loadingPlaylistsChanged();
    void loadingTracksChanged();
    void needsReauthChanged();

private:
    using Answered = std::function<void(const SpotifyReply &)>;

    void applyNowPlaying(const SpotifyReply &reply);
    void loadPlaylistPage(int offset, int row);
    void loadTrackPage(int offset);
    /// Sends a command to our own device, else to the one that the service names; none gets a message.
    void command(const QByteArray &method, const QString &path, const std::optional<QJsonObject> &body,
                 const Answered &answered);
    void sendPlay(const std::optional<QJsonObject> &body);
    void explain(const SpotifyReply &reply);
    [[nodiscard]] QStringList loadedURIs(int first) const;
    /// Calls `then` with the user's id known, which it may have to ask for; not at all where it stays
    /// unknown.
    void withUserID(const std::function<void()> &then);
    void setUserID(const QString &id);
    void setPlaying(bool isPlaying);
    void setNowPlaying(const SpotifyNowPlaying &nowPlaying);
    void setStatusMessage(const QString &message);
    void showFailure(const QString &message);
    void setFlag(bool &flag, bool value, void (SpotifyService::*changed)());

    SpotifyApi m_api;
    SpotifyPlaylistModel *m_playlists;
    SpotifyTrackModel *m_tracks;
    QTimer m_timer;
    SpotifyNowPlaying m_nowPlaying;
    QString m_statusMessage;
    /// How long a failure's message stays before what is playing may replace it.
    QDeadlineTimer m_messageHold{0};
    bool m_deviceReady = false;
    std::optional<QString> m_deviceID;
    QString m_userID;
    bool m_loadingPlaylists = false;
    bool m_loadingTracks = false;
    bool m_needsReauth = false;
    SpotifyPlaylist m_shown;
    /// How many entries of the shown playlist were removed since the tracks began to load.
    int m_removedWhileLoading = 0;
    // Each of these changes when replies to earlier requests are no longer wanted.
    int m_pollTurn = 0;
    int m_playlistsTurn = 0;
    int m_tracksTurn = 0;
    int m_account = 0;
    int m_pollsUnderWay = 0;
};

} // namespace randblatt
