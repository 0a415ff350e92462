#pragma once

#include "platform/CalendarStore.h"

#include <QAbstractListModel>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class CalendarService;

/// The service's events as a list to show, each with the day that it starts on. A reload changes only the
/// rows that differ.
class AgendaModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The calendar module makes its agenda.")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum class Role {
        title = Qt::UserRole + 1,
        timeLine,
        color,
        calendarName,
        /// The day of the start in ISO 8601 form, to group by.
        day,
        eventId,
    };
    Q_ENUM(Role)

    /// `service` is borrowed and must outlive the model.
    explicit AgendaModel(const CalendarService &service, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// All that is known of an event, for its card: `title`, `when`, `color`, `calendarName`, `place`,
    /// `description`, `attendees` and `links`, texts all; `meetings` says how many of the links are to meet
    /// on. Empty if there is no such event any more.
    [[nodiscard]] Q_INVOKABLE QVariantMap details(const QString &eventId) const;

    [[nodiscard]] int count() const { return static_cast<int>(m_events.size()); }

Q_SIGNALS:
    void countChanged();
    /// The rows show the service's events again.
    void followed();

private:
    void follow();
    void removeVanished(const QList<CalendarEvent> &events);
    void place(const QList<CalendarEvent> &events);
    void insert(const QList<CalendarEvent> &events, int begin, int end);
    [[nodiscard]] int rowOf(const CalendarEvent &event, int from) const;

    const CalendarService &m_service;
    QList<CalendarEvent> m_events;
};

} // namespace randblatt
