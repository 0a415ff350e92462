#pragma once

#include "modules/media/PlaylistEditor.h"
#include "modules/media/SpotifyLibrary.h"

#include <QStringList>
#include <QTimer>

#include <optional>

namespace randblatt {

/// What the player card shows and does: what is playing, the commands, the playlists and their tracks. Every
/// operation returns at once and reports through the properties. To be used on the main thread.
// With its namespace, for the type registration reads the base class as it is written.
class SpotifyService : public randblatt::SpotifyLibrary
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media module has the service.")
    Q_PROPERTY(QString trackName READ trackName NOTIFY nowPlayingChanged FINAL)
    Q_PROPERTY(QString artistName READ artistName NOTIFY nowPlayingChanged FINAL)
    Q_PROPERTY(QUrl albumArtURL READ albumArtURL NOTIFY nowPlayingChanged FINAL)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY nowPlayingChanged FINAL)
    Q_PROPERTY(bool deviceReady READ deviceReady NOTIFY deviceReadyChanged FINAL)

public:
    /// Borrows the authorisation and the network, which must outlive the service; `host` is the API's base
    /// URL.
    SpotifyService(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host,
                   QObject *parent = nullptr);

    /// Asks what is playing, now and then every 4 seconds, and half a second after each command that
    /// succeeded. It rests where the token is rejected, until a command succeeds.
    void startPolling();
    void stopPolling();
    void refreshNowPlaying();
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
    /// Creates a private playlist; see PlaylistEditor. The name is trimmed, and an empty one creates nothing.
    void createPlaylist(const QString &name, const PlaylistEditor::Done &done = {});
    Q_INVOKABLE void removeTrack(const randblatt::SpotifyTrack &track,
                                 const randblatt::SpotifyPlaylist &playlist);
    /// Puts back what tracksRemoved() told.
    void restoreTracks(const SpotifyRemoval &removal) { m_editor.restore(removal); }
    /// Our own device's id, or none. Playback is transferred to a device each time that it is set.
    void setDeviceID(const std::optional<QString> &id);
    void setDeviceReady(bool ready);
    void reset() override;

    [[nodiscard]] QString trackName() const { return m_nowPlaying.trackName; }
    /// All artists, separated by commas.
    [[nodiscard]] QString artistName() const { return m_nowPlaying.artistName; }
    [[nodiscard]] QUrl albumArtURL() const { return m_nowPlaying.albumArtURL; }
    [[nodiscard]] bool isPlaying() const { return m_nowPlaying.isPlaying; }
    [[nodiscard]] bool deviceReady() const { return m_deviceReady; }
    [[nodiscard]] std::optional<QString> deviceID() const { return m_deviceID; }

Q_SIGNALS:
    void nowPlayingChanged();
    void deviceReadyChanged();
    /// Tracks were taken out of a playlist, or could not be put back.
    void tracksRemoved(const randblatt::SpotifyRemoval &removal);

private:
    void pollAnswered(const SpotifyReply &reply, int turn);
    void showNowPlaying(const std::optional<SpotifyNowPlaying> &nowPlaying);
    /// Nothing plays.
    void showIdle();
    void showPollFailure(const SpotifyReply &reply);
    /// Sends a command to our own device, else to the one that the service names; none gets a message.
    void command(const QByteArray &method, const QString &path, const std::optional<QJsonObject> &body,
                 const Answered &answered);
    /// The token is taken after all.
    void wake();
    void sendPlay(const std::optional<QJsonObject> &body);
    void skip(const QString &path);
    void explain(const SpotifyReply &reply);
    [[nodiscard]] QStringList loadedURIs(int first) const;
    void setPlaying(bool isPlaying);
    void setNowPlaying(const SpotifyNowPlaying &nowPlaying);

    PlaylistEditor m_editor;
    QTimer m_timer;
    QTimer m_pollSoon;
    /// Polling is wanted, but the token was rejected.
    bool m_isResting = false;
    SpotifyNowPlaying m_nowPlaying;
    bool m_deviceReady = false;
    std::optional<QString> m_deviceID;
    /// Changes when replies to earlier polls are no longer wanted.
    int m_pollTurn = 0;
    int m_pollsUnderWay = 0;
};

} // namespace randblatt
