#pragma once

#include "modules/media/SpotifyRecords.h"

#include <QAbstractListModel>

namespace randblatt {

/// The tracks of the playlist that is shown, in its order; a track may be there more than once.
class SpotifyTrackModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media service has the tracks.")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
    Q_PROPERTY(bool editable READ isEditable NOTIFY editableChanged FINAL)

public:
    enum class Role { track = Qt::UserRole + 1, name, artist };

    explicit SpotifyTrackModel(QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    void clear();
    /// Appends the tracks and numbers them on.
    void append(QList<SpotifyTrack> tracks);
    /// Takes every occurrence of a track away and gives them as they were.
    QList<SpotifyTrack> take(const QString &uri);
    /// Puts a track at its place in the service's list.
    void insert(const SpotifyTrack &track);
    /// Whether the user may remove tracks from the playlist.
    void setEditable(bool editable);

    [[nodiscard]] const QList<SpotifyTrack> &tracks() const { return m_tracks; }
    [[nodiscard]] int count() const { return static_cast<int>(m_tracks.size()); }
    [[nodiscard]] bool isEditable() const { return m_isEditable; }

Q_SIGNALS:
    void countChanged();
    void editableChanged();

private:
    void renumber(int first);

    QList<SpotifyTrack> m_tracks;
    bool m_isEditable = false;
};

} // namespace randblatt
