#pragma once

#include "modules/media/SpotifyRecords.h"

#include <QObject>
#include <QSet>

#include <functional>

namespace randblatt {

class SpotifyLibrary;
struct SpotifyReply;

/// What was taken out of a playlist, and where it was.
struct SpotifyRemoval
{
    SpotifyPlaylist playlist;
    /// In the playlist's order.
    QList<SpotifyTrack> tracks;
    /// The service was asked to put it back and has not answered.
    bool mayBeBack = false;
};

/// Changes the account's playlists.
class PlaylistEditor : public QObject
{
    Q_OBJECT

public:
    /// Gets why it failed, in German; empty where it did not.
    using Done = std::function<void(const QString &)>;

    /// Borrows the library, which must outlive the object.
    explicit PlaylistEditor(SpotifyLibrary &library, QObject *parent = nullptr);

    /// Creates a private playlist of this name. Where the service does not answer, its playlists tell whether
    /// there is a new one. `done` is called once, unless the account ends before.
    void create(const QString &name, const Done &done);
    /// Takes every occurrence of a track out of a playlist.
    void remove(const SpotifyTrack &track, const SpotifyPlaylist &playlist);
    /// Puts back what was removed, at its old place.
    void restore(const SpotifyRemoval &removal);
    void reset() { m_beingRemoved.clear(); }

Q_SIGNALS:
    /// Tracks were taken out, or could not be put back.
    void removed(const randblatt::SpotifyRemoval &removal);

private:
    void lookFor(const QString &name, const QString &why, const Done &done);
    void put(const SpotifyRemoval &removal, bool atItsPlace);
    void fail(const SpotifyRemoval &removal, const SpotifyReply &reply);

    SpotifyLibrary &m_library;
    QSet<std::pair<QString, QString>> m_beingRemoved;
};

} // namespace randblatt
