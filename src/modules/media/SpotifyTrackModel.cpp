#include "modules/media/SpotifyTrackModel.h"

#include <algorithm>
#include <iterator>

namespace randblatt {

SpotifyTrackModel::SpotifyTrackModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

int SpotifyTrackModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant SpotifyTrackModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const SpotifyTrack &track = m_tracks.at(index.row());
    switch (static_cast<Role>(role)) {
    case Role::track:
        return QVariant::fromValue(track);
    case Role::name:
        return track.name;
    case Role::artist:
        return track.artist;
    }
    return {};
}

QHash<int, QByteArray> SpotifyTrackModel::roleNames() const
{
    return {{static_cast<int>(Role::track), "track"},
            {static_cast<int>(Role::name), "name"},
            {static_cast<int>(Role::artist), "artist"}};
}

void SpotifyTrackModel::clear()
{
    if (m_tracks.isEmpty())
        return;
    beginRemoveRows({}, 0, count() - 1);
    m_tracks.clear();
    endRemoveRows();
    Q_EMIT countChanged();
}

void SpotifyTrackModel::append(QList<SpotifyTrack> tracks)
{
    if (tracks.isEmpty())
        return;
    int index = count();
    beginInsertRows({}, index, index + static_cast<int>(tracks.size()) - 1);
    for (SpotifyTrack &track : tracks)
        track.index = index++;
    m_tracks.append(std::move(tracks));
    endInsertRows();
    Q_EMIT countChanged();
}

QList<SpotifyTrack> SpotifyTrackModel::take(const QString &uri)
{
    QList<SpotifyTrack> taken;
    for (int row = count() - 1; row >= 0; --row) {
        if (m_tracks.at(row).uri != uri)
            continue;
        beginRemoveRows({}, row, row);
        taken.prepend(m_tracks.takeAt(row));
        for (int later = row; later < count(); ++later)
            --m_tracks[later].place;
        endRemoveRows();
    }
    if (!taken.isEmpty())
        renumber(taken.first().index);
    return taken;
}

void SpotifyTrackModel::insert(const SpotifyTrack &track)
{
    const auto there = std::find_if(m_tracks.begin(), m_tracks.end(),
                                    [&](const auto &other) { return other.place >= track.place; });
    const int row = static_cast<int>(std::distance(m_tracks.begin(), there));
    beginInsertRows({}, row, row);
    m_tracks.insert(row, track);
    for (int later = row + 1; later < count(); ++later)
        ++m_tracks[later].place;
    endInsertRows();
    renumber(row);
}

void SpotifyTrackModel::renumber(int first)
{
    for (int row = first; row < count(); ++row)
        m_tracks[row].index = row;
    if (first < count())
        Q_EMIT dataChanged(index(first), index(count() - 1), {static_cast<int>(Role::track)});
    Q_EMIT countChanged();
}

void SpotifyTrackModel::setEditable(bool editable)
{
    if (m_isEditable == editable)
        return;
    m_isEditable = editable;
    Q_EMIT editableChanged();
}

} // namespace randblatt
