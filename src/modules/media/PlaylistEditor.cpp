#include "modules/media/PlaylistEditor.h"

#include "modules/media/SpotifyLibrary.h"
#include "modules/media/SpotifyMessages.h"

#include <QJsonArray>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

const QString notCreated = u" Die Playlist ist nicht erstellt."_s;

QString pathOf(const SpotifyPlaylist &playlist, QLatin1StringView what)
{
    return "/playlists/"_L1 + playlist.id + what;
}

QJsonObject removal(const QString &list, const SpotifyTrack &track)
{
    return {{list, QJsonArray{QJsonObject{{u"uri"_s, track.uri}}}}};
}

/// Whether nobody knows what came of a call that must not be made twice.
bool isUnknown(const SpotifyReply &reply)
{
    return reply.isSuccess() || reply.status >= 500 || (reply.status == 0 && reply.mayHaveArrived);
}

} // namespace

PlaylistEditor::PlaylistEditor(SpotifyLibrary &library, QObject *parent)
    : QObject(parent)
    , m_library(library)
{
}

void PlaylistEditor::create(const QString &name, const Done &done)
{
    m_library.withUserID([this, name, done](const SpotifyReply *failed) {
        if (failed != nullptr) {
            done(m_library.reason(*failed) + notCreated);
            return;
        }
        const QJsonObject body{{u"name"_s, name}, {u"public"_s, false}};
        const QString path = "/users/"_L1 + m_library.userID() + "/playlists"_L1;
        m_library.send({.method = "POST", .path = path, .body = body},
                       {.method = "POST", .path = u"/me/playlists"_s, .body = body},
                       [this, name, done](const SpotifyReply &reply) {
                           if (reply.status == 200 || reply.status == 201) {
                               m_library.loadPlaylists();
                               done({});
                           } else if (isUnknown(reply)) {
                               lookFor(name, m_library.reason(reply), done);
                           } else {
                               done(m_library.reason(reply) + notCreated);
                           }
                       });
    });
}

void PlaylistEditor::lookFor(const QString &name, const QString &why, const Done &done)
{
    QSet<QString> known;
    for (const SpotifyPlaylist &playlist : m_library.playlists()->playlists())
        known.insert(playlist.id);
    const bool wereKnown = m_library.arePlaylistsKnown();
    m_library.loadPlaylists([this, name, why, done, known, wereKnown](bool areKnown) {
        const QList<SpotifyPlaylist> &now = m_library.playlists()->playlists();
        const bool isThere = std::any_of(now.begin(), now.end(), [&](const SpotifyPlaylist &playlist) {
            return playlist.name == name && !known.contains(playlist.id);
        });
        if (isThere && wereKnown)
            done({});
        else if (areKnown && !isThere)
            done(why + notCreated);
        else
            done(why + u" Vielleicht ist die Playlist schon erstellt."_s);
    });
}

void PlaylistEditor::remove(const SpotifyTrack &track, const SpotifyPlaylist &playlist)
{
    const std::pair key(playlist.id, track.uri);
    if (m_beingRemoved.contains(key))
        return;
    m_beingRemoved.insert(key);
    m_library.send(
        {.method = "DELETE", .path = pathOf(playlist, "/tracks"_L1), .body = removal(u"tracks"_s, track)},
        {.method = "DELETE", .path = pathOf(playlist, "/items"_L1), .body = removal(u"items"_s, track)},
        [this, track, playlist, key](const SpotifyReply &reply) {
            m_beingRemoved.remove(key);
            if (reply.status != 200) {
                m_library.showFailure(removalFailure(reply, m_library.pausedUntil()));
                return;
            }
            QList<SpotifyTrack> taken = m_library.takeTracks(track.uri, playlist);
            if (taken.isEmpty())
                taken.append(track);
            Q_EMIT removed({.playlist = playlist, .tracks = taken});
        });
}

void PlaylistEditor::restore(const SpotifyRemoval &removal)
{
    m_library.withUserID([this, removal](const SpotifyReply *failed) {
        const bool isBack = removal.mayBeBack && m_library.hasTrack(removal.tracks.first(), removal.playlist);
        if (failed != nullptr)
            fail(removal, *failed);
        else if (removal.playlist.ownerID != m_library.userID())
            m_library.showFailure(u"Mit diesem Konto nicht möglich: Die Playlist gehört einem anderen."_s);
        else if (!isBack)
            put(removal, true);
    });
}

void PlaylistEditor::put(const SpotifyRemoval &removal, bool atItsPlace)
{
    const SpotifyTrack track = removal.tracks.first();
    QJsonObject body{{u"uris"_s, QJsonArray{track.uri}}};
    if (atItsPlace)
        body.insert(u"position"_s, track.place);
    m_library.send({.method = "POST", .path = pathOf(removal.playlist, "/tracks"_L1), .body = body},
                   {.method = "POST", .path = pathOf(removal.playlist, "/items"_L1), .body = body},
                   [this, removal, track, atItsPlace](const SpotifyReply &reply) {
                       if (reply.status == 400 && atItsPlace) {
                           // The playlist may have become shorter meanwhile: to its end then.
                           put(removal, false);
                           return;
                       }
                       if (!reply.isSuccess()) {
                           fail(removal, reply);
                           return;
                       }
                       if (atItsPlace)
                           m_library.insertTrack(track, removal.playlist);
                       else if (m_library.isShown(removal.playlist))
                           m_library.loadTracks(removal.playlist);
                       SpotifyRemoval rest{.playlist = removal.playlist, .tracks = removal.tracks.sliced(1)};
                       if (!rest.tracks.isEmpty())
                           put(rest, true);
                   });
}

void PlaylistEditor::fail(const SpotifyRemoval &removal, const SpotifyReply &reply)
{
    SpotifyRemoval again = removal;
    again.mayBeBack = isUnknown(reply);
    m_library.showFailure(m_library.reason(reply) + u" Konnte Titel nicht zurückholen."_s);
    if (again.mayBeBack && m_library.isShown(removal.playlist))
        m_library.loadTracks(removal.playlist);
    Q_EMIT removed(again);
}

} // namespace randblatt
