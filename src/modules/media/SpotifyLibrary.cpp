#include "modules/media/SpotifyLibrary.h"

#include "modules/media/RunAside.h"

#include <algorithm>
#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr int playlistPage = 50;
constexpr int savedTrackPage = 50;
constexpr int playlistTrackPage = 100;
// The successor of the path takes no more.
constexpr int playlistItemPage = 50;

QList<std::pair<QString, QString>> pageQuery(int limit, int offset, const QString &fields = {})
{
    QList<std::pair<QString, QString>> query{{u"limit"_s, QString::number(limit)}};
    if (!fields.isEmpty())
        query.append({u"fields"_s, fields});
    if (offset > 0)
        query.append({u"offset"_s, QString::number(offset)});
    return query;
}

/// Whether a list that was answered so may be had later. What the service denies stays denied.
bool mayRepeat(const SpotifyReply &reply)
{
    return reply.status < 400 || reply.status == 429 || reply.status >= 500;
}

} // namespace

SpotifyLibrary::SpotifyLibrary(SpotifyAuth &auth, QNetworkAccessManager &network, const QUrl &host,
                               QObject *parent)
    : SpotifyConnection(auth, network, host, parent)
    , m_playlists(new SpotifyPlaylistModel(this))
    , m_tracks(new SpotifyTrackModel(this))
{
    connect(this, &SpotifyConnection::userIDChanged, this, [this] {
        m_playlists->setUserID(userID());
        updateEditable();
    });
}

void SpotifyLibrary::loadPlaylists()
{
    ++m_playlistsTurn;
    m_playlistsLoad.begin();
    setLoadingPlaylists(true);
    loadPlaylistPage(0, 0);
}

void SpotifyLibrary::loadPlaylists(const std::function<void(bool)> &then)
{
    m_afterPlaylists.push_back(then);
    loadPlaylists();
}

void SpotifyLibrary::loadPlaylistPage(int offset, int row)
{
    send({.path = u"/me/playlists"_s, .query = pageQuery(playlistPage, offset), .isPatient = true},
         [this, offset, row, turn = m_playlistsTurn](const SpotifyReply &reply) {
             if (turn != m_playlistsTurn)
                 return;
             if (reply.status != 200) {
                 addPlaylistPage(reply, offset, row, std::nullopt);
                 return;
             }
             runAside(
                 this, [json = reply.body] { return parsePlaylists(json); },
                 [this, reply, offset, row, turn](const auto &page) {
                     if (turn == m_playlistsTurn)
                         addPlaylistPage(reply, offset, row, page);
                 });
         });
}

void SpotifyLibrary::addPlaylistPage(const SpotifyReply &reply, int offset, int row,
                                     const std::optional<SpotifyPage<SpotifyPlaylist>> &page)
{
    if (!page) {
        if (reply.status == 401 || reply.status == 403)
            setNeedsReauth(true);
        m_playlistsLoad.fail(reason(reply) + (m_playlists->count() == 0
                                                  ? u" Die Playlists sind nicht geladen."_s
                                                  : u" Die Playlists sind vielleicht nicht die neuesten."_s),
                             mayRepeat(reply));
        endPlaylists(false);
        return;
    }
    setNeedsReauth(false);
    const int end = row + static_cast<int>(page->records.size());
    m_playlists->setRows(row, page->records);
    if (page->entries == playlistPage) {
        loadPlaylistPage(offset + page->entries, end);
        return;
    }
    m_playlists->truncate(end);
    m_playlistsLoad.succeed();
    endPlaylists(true);
}

void SpotifyLibrary::endPlaylists(bool areKnown)
{
    m_arePlaylistsKnown = areKnown;
    setLoadingPlaylists(false);
    const auto waiting = std::exchange(m_afterPlaylists, {});
    for (const auto &then : waiting)
        then(areKnown);
}

void SpotifyLibrary::loadTracks(const SpotifyPlaylist &playlist)
{
    m_tracks->clear();
    m_shown = playlist;
    m_nextTrack = 0;
    m_tracksLoad.succeed();
    updateEditable();
    loadMissingTracks();
}

void SpotifyLibrary::loadMissingTracks()
{
    ++m_tracksTurn;
    m_tracksLoad.begin();
    setLoadingTracks(true);
    loadTrackPage(m_nextTrack);
}

void SpotifyLibrary::loadTrackPage(int offset)
{
    m_removedWhileLoading = 0;
    const auto answered = [this, offset, turn = m_tracksTurn](const SpotifyReply &reply) {
        if (turn != m_tracksTurn)
            return;
        if (reply.status != 200) {
            addTrackPage(reply, offset, std::nullopt);
            return;
        }
        runAside(
            this, [json = reply.body] { return parseTracks(json); },
            [this, reply, offset, turn](const auto &page) {
                if (turn == m_tracksTurn)
                    addTrackPage(reply, offset, page);
            });
    };
    if (m_shown.isLiked()) {
        send({.path = u"/me/tracks"_s, .query = pageQuery(savedTrackPage, offset), .isPatient = true},
             answered);
        return;
    }
    const QString path = "/playlists/"_L1 + m_shown.id;
    send({.path = path + "/tracks"_L1,
          .query = pageQuery(playlistTrackPage, offset, u"items(track(id,uri,name,artists(name)))"_s),
          .isPatient = true},
         {.path = path + "/items"_L1,
          .query = pageQuery(playlistItemPage, offset, u"items(item(id,uri,name,artists(name)))"_s),
          .isPatient = true},
         answered);
}

void SpotifyLibrary::addTrackPage(const SpotifyReply &reply, int offset,
                                  const std::optional<SpotifyPage<SpotifyTrack>> &page)
{
    if (!page) {
        m_tracksLoad.fail(reason(reply) + (m_tracks->count() == 0 ? u" Die Titel sind nicht geladen."_s
                                                                  : u" Es fehlen Titel."_s),
                          mayRepeat(reply));
        setLoadingTracks(false);
        return;
    }
    const int pageSize = m_shown.isLiked()       ? savedTrackPage
                         : reply.isFromSuccessor ? playlistItemPage
                                                 : playlistTrackPage;
    // What was removed meanwhile has moved the following entries up.
    const int removed = std::exchange(m_removedWhileLoading, 0);
    QList<SpotifyTrack> tracks = page->records;
    for (SpotifyTrack &track : tracks)
        track.place += offset - removed;
    m_tracks->append(tracks);
    m_nextTrack = offset + page->entries - removed;
    if (page->entries == pageSize) {
        loadTrackPage(m_nextTrack);
        return;
    }
    m_tracksLoad.succeed();
    setLoadingTracks(false);
}

QList<SpotifyTrack> SpotifyLibrary::takeTracks(const QString &uri, const SpotifyPlaylist &playlist)
{
    if (!isShown(playlist))
        return {};
    const QList<SpotifyTrack> taken = m_tracks->take(uri);
    const int count = static_cast<int>(taken.size());
    m_playlists->addTracks(playlist.id, -count);
    if (m_loadingTracks)
        m_removedWhileLoading += count;
    else
        m_nextTrack -= count;
    return taken;
}

void SpotifyLibrary::insertTrack(const SpotifyTrack &track, const SpotifyPlaylist &playlist)
{
    m_playlists->addTracks(playlist.id, 1);
    if (!isShown(playlist))
        return;
    m_tracks->insert(track);
    if (m_loadingTracks)
        --m_removedWhileLoading;
    else
        ++m_nextTrack;
}

bool SpotifyLibrary::hasTrack(const SpotifyTrack &track, const SpotifyPlaylist &playlist) const
{
    const QList<SpotifyTrack> &tracks = m_tracks->tracks();
    return isShown(playlist) && std::any_of(tracks.begin(), tracks.end(),
                                            [&](const auto &other) { return other.uri == track.uri; });
}

void SpotifyLibrary::repeatFailedLoads()
{
    SpotifyConnection::repeatFailedLoads();
    if (m_playlistsLoad.isDue())
        loadPlaylists();
    if (m_tracksLoad.isDue())
        loadMissingTracks();
}

void SpotifyLibrary::reset()
{
    SpotifyConnection::reset();
    ++m_playlistsTurn;
    ++m_tracksTurn;
    m_shown = {};
    m_afterPlaylists.clear();
    m_playlistsLoad.succeed();
    m_tracksLoad.succeed();
    m_tracks->clear();
    m_playlists->truncate(0);
    m_arePlaylistsKnown = false;
    setLoadingPlaylists(false);
    setLoadingTracks(false);
}

void SpotifyLibrary::updateEditable()
{
    m_tracks->setEditable(!userID().isEmpty() && m_shown.ownerID == userID());
}

void SpotifyLibrary::setLoadingPlaylists(bool loading)
{
    m_loadingPlaylists = loading;
    Q_EMIT playlistsStateChanged();
}

void SpotifyLibrary::setLoadingTracks(bool loading)
{
    m_loadingTracks = loading;
    Q_EMIT tracksStateChanged();
}

} // namespace randblatt
