#pragma once

#include "modules/media/SpotifyConnection.h"
#include "modules/media/SpotifyParsing.h"
#include "modules/media/SpotifyPlaylistModel.h"
#include "modules/media/SpotifyTrackModel.h"

#include <vector>

namespace randblatt {

/// What the account holds: its playlists, and the tracks of the one that is shown. What could not be loaded
/// is loaded again when the service answers other calls.
// With its namespace, for the type registration reads the base class as it is written.
class SpotifyLibrary : public randblatt::SpotifyConnection
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(bool loadingPlaylists READ loadingPlaylists NOTIFY playlistsStateChanged FINAL)
    Q_PROPERTY(QString playlistsProblem READ playlistsProblem NOTIFY playlistsStateChanged FINAL)
    Q_PROPERTY(bool loadingTracks READ loadingTracks NOTIFY tracksStateChanged FINAL)
    Q_PROPERTY(QString tracksProblem READ tracksProblem NOTIFY tracksStateChanged FINAL)
    Q_PROPERTY(randblatt::SpotifyPlaylistModel *playlists READ playlists CONSTANT FINAL)
    Q_PROPERTY(randblatt::SpotifyTrackModel *tracks READ tracks CONSTANT FINAL)
    Q_PROPERTY(randblatt::SpotifyPlaylist likedPlaylist READ likedPlaylist CONSTANT FINAL)

public:
    /// Loads the playlists, page by page.
    Q_INVOKABLE void loadPlaylists();
    /// The same; `then` is called once with whether they are known now, unless the account ends before.
    void loadPlaylists(const std::function<void(bool)> &then);
    /// Empties the tracks and loads those of `playlist`, page by page.
    Q_INVOKABLE void loadTracks(const randblatt::SpotifyPlaylist &playlist);
    /// Loads what is missing of the shown playlist's tracks.
    Q_INVOKABLE void loadMissingTracks();
    /// Takes tracks out of the list, if it is their playlist's that is shown, and gives them; the service has
    /// removed them.
    QList<SpotifyTrack> takeTracks(const QString &uri, const SpotifyPlaylist &playlist);
    /// Puts a track in, likewise.
    void insertTrack(const SpotifyTrack &track, const SpotifyPlaylist &playlist);
    void reset() override;

    [[nodiscard]] bool loadingPlaylists() const { return m_loadingPlaylists; }
    /// Why the playlists are not known, or not all of them, in German; empty where they are.
    [[nodiscard]] QString playlistsProblem() const { return m_playlistsLoad.problem(); }
    [[nodiscard]] bool loadingTracks() const { return m_loadingTracks; }
    /// The same for the tracks of the shown playlist.
    [[nodiscard]] QString tracksProblem() const { return m_tracksLoad.problem(); }
    [[nodiscard]] SpotifyPlaylistModel *playlists() const { return m_playlists; }
    [[nodiscard]] SpotifyTrackModel *tracks() const { return m_tracks; }
    [[nodiscard]] SpotifyPlaylist likedPlaylist() const { return SpotifyPlaylist::liked(); }
    /// Whether the playlists are those that the service last told, all of them.
    [[nodiscard]] bool arePlaylistsKnown() const { return m_arePlaylistsKnown; }
    [[nodiscard]] bool hasTrack(const SpotifyTrack &track, const SpotifyPlaylist &playlist) const;
    [[nodiscard]] bool isShown(const SpotifyPlaylist &playlist) const { return m_shown.id == playlist.id; }

Q_SIGNALS:
    void playlistsStateChanged();
    void tracksStateChanged();

protected:
    SpotifyLibrary(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host, QObject *parent);

    void repeatFailedLoads() override;

private:
    void loadPlaylistPage(int offset, int row);
    void addPlaylistPage(const SpotifyReply &reply, int offset, int row,
                         const std::optional<SpotifyPage<SpotifyPlaylist>> &page);
    void endPlaylists(bool areKnown);
    void loadTrackPage(int offset);
    void addTrackPage(const SpotifyReply &reply, int offset,
                      const std::optional<SpotifyPage<SpotifyTrack>> &page);
    void updateEditable();
    void setLoadingPlaylists(bool loading);
    void setLoadingTracks(bool loading);

    SpotifyPlaylistModel *m_playlists;
    SpotifyTrackModel *m_tracks;
    RepeatedLoad m_playlistsLoad;
    RepeatedLoad m_tracksLoad;
    bool m_loadingPlaylists = false;
    bool m_loadingTracks = false;
    bool m_arePlaylistsKnown = false;
    std::vector<std::function<void(bool)>> m_afterPlaylists;
    SpotifyPlaylist m_shown;
    /// The first entry of the shown playlist that is not known.
    int m_nextTrack = 0;
    /// How many entries of the shown playlist were removed since the last page was asked for.
    int m_removedWhileLoading = 0;
    // These change when replies to earlier requests are no longer wanted.
    int m_playlistsTurn = 0;
    int m_tracksTurn = 0;
};

} // namespace randblatt
