#pragma once

#include "modules/media/SpotifyRecords.h"

#include <QAbstractListModel>

namespace randblatt {

/// The user's playlists, in the service's order.
class SpotifyPlaylistModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media service has the playlists.")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum class Role { playlist = Qt::UserRole + 1, name, trackCount, imageURL };

    explicit SpotifyPlaylistModel(QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// Makes `playlists` the rows from `first` on, which must not lie beyond the end; what is already there
    /// stays, also at another place.
    void setRows(int first, const QList<SpotifyPlaylist> &playlists);
    /// Takes the rows from `count` on away.
    void truncate(int count);
    /// Counts so many tracks more in a playlist.
    void addTracks(const QString &id, int count);
    /// Marks the playlists of this owner as editable; none where the id is empty.
    void setUserID(const QString &userID);

    [[nodiscard]] const QList<SpotifyPlaylist> &playlists() const { return m_playlists; }
    [[nodiscard]] int count() const { return static_cast<int>(m_playlists.size()); }

Q_SIGNALS:
    void countChanged();

private:
    void setRow(int row, const SpotifyPlaylist &playlist);

    QList<SpotifyPlaylist> m_playlists;
    QString m_userID;
};

} // namespace randblatt
