#include "modules/media/SpotifyPlaylistModel.h"

#include <algorithm>

namespace randblatt {

SpotifyPlaylistModel::SpotifyPlaylistModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

int SpotifyPlaylistModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant SpotifyPlaylistModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const SpotifyPlaylist &playlist = m_playlists.at(index.row());
    switch (static_cast<Role>(role)) {
    case Role::playlist:
        return QVariant::fromValue(playlist);
    case Role::name:
        return playlist.name;
    case Role::trackCount:
        return playlist.trackCount;
    case Role::imageURL:
        return playlist.imageURL;
    }
    return {};
}

QHash<int, QByteArray> SpotifyPlaylistModel::roleNames() const
{
    return {{static_cast<int>(Role::playlist), "playlist"},
            {static_cast<int>(Role::name), "name"},
            {static_cast<int>(Role::trackCount), "trackCount"},
            {static_cast<int>(Role::imageURL), "imageURL"}};
}

void SpotifyPlaylistModel::setRows(int first, const QList<SpotifyPlaylist> &playlists)
{
    const int before = count();
    int row = first;
    for (SpotifyPlaylist playlist : playlists) {
        playlist.editable = !m_userID.isEmpty() && playlist.ownerID == m_userID;
        const auto there = std::find_if(m_playlists.begin() + row, m_playlists.end(),
                                        [&](const auto &other) { return other.id == playlist.id; });
        const int found = static_cast<int>(std::distance(m_playlists.begin(), there));
        if (there == m_playlists.end()) {
            beginInsertRows({}, row, row);
            m_playlists.insert(row, playlist);
            endInsertRows();
        } else if (found != row) {
            beginMoveRows({}, found, found, {}, row);
            m_playlists.move(found, row);
            endMoveRows();
        }
        setRow(row++, playlist);
    }
    if (count() != before)
        Q_EMIT countChanged();
}

void SpotifyPlaylistModel::truncate(int count)
{
    if (count >= m_playlists.size())
        return;
    beginRemoveRows({}, count, static_cast<int>(m_playlists.size()) - 1);
    m_playlists.resize(count);
    endRemoveRows();
    Q_EMIT countChanged();
}

void SpotifyPlaylistModel::addTracks(const QString &id, int count)
{
    const auto there = std::find_if(m_playlists.begin(), m_playlists.end(),
                                    [&](const auto &playlist) { return playlist.id == id; });
    if (there == m_playlists.end())
        return;
    SpotifyPlaylist changed = *there;
    changed.trackCount += count;
    setRow(static_cast<int>(std::distance(m_playlists.begin(), there)), changed);
}

void SpotifyPlaylistModel::setUserID(const QString &userID)
{
    m_userID = userID;
    for (int row = 0; row < count(); ++row) {
        SpotifyPlaylist playlist = m_playlists.at(row);
        playlist.editable = !userID.isEmpty() && playlist.ownerID == userID;
        setRow(row, playlist);
    }
}

void SpotifyPlaylistModel::setRow(int row, const SpotifyPlaylist &playlist)
{
    if (m_playlists.at(row) == playlist)
        return;
    m_playlists[row] = playlist;
    Q_EMIT dataChanged(index(row), index(row));
}

} // namespace randblatt
