#pragma once

#include <QColor>
#include <QDate>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

struct CalendarEvent;

/// How the calendar writes times: in German, whatever the user's locale.
class CalendarFormat : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// As in "Montag, 16. November".
    [[nodiscard]] static QString dayHeading(const QDate &day);
    /// The same for a day in ISO 8601 form.
    [[nodiscard]] Q_INVOKABLE static QString dayHeading(const QString &isoDay);
    /// "Ganztägig", or as in "09:00 – 10:30".
    [[nodiscard]] static QString timeLine(const CalendarEvent &event);
    /// The day and time of an event, as in "Montag, 16. November, 09:00 – 10:30"; of one that ends on another
    /// day, both days.
    [[nodiscard]] static QString when(const CalendarEvent &event);
    /// A calendar's colour, or one for calendars without.
    [[nodiscard]] static QColor barColor(const QColor &color);
    /// As in "45 Min", "2 Std" and "1 Std 30".
    [[nodiscard]] Q_INVOKABLE static QString durationLabel(int minutes);
    /// As in "November 2026"; months count from 0.
    [[nodiscard]] Q_INVOKABLE static QString monthTitle(int month, int year);
    /// As in "Montag, 16. November 2026"; months count from 0.
    [[nodiscard]] Q_INVOKABLE static QString longDate(int year, int month, int day);
    /// Gives a control the German locale, so that weeks begin on Monday. In QML the linter does not know the
    /// property's type, and crashes over values of it.
    Q_INVOKABLE static void useGerman(QObject *control);
};

} // namespace randblatt
