#pragma once

#include "modules/calendar/DateTimeParser.h"

#include <QDateTime>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// The text of a date-and-time field, as "16.11.2026, 09:30", and what typing and stepping make of it.
class DateTimeText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    [[nodiscard]] static QString text(const QDateTime &time);
    /// The day alone, as "16.11.2026".
    [[nodiscard]] static QString dateText(const QDateTime &time);
    /// What a typed text means to somebody who types it at `now`, as DateTimeParser reads it. The text of
    /// `present` means `present`, seconds and all.
    [[nodiscard]] static TypedTime read(const QString &text, const QDateTime &present, const QDateTime &now);
    /// Whether text() has its usual form for the time, and read() may give it.
    [[nodiscard]] static bool isWritable(const QDateTime &time);
    /// The time with the number under the cursor `steps` higher; a day stays within its month's length.
    [[nodiscard]] static QDateTime stepped(const QDateTime &time, int cursor, int steps);
    /// Where the number under the cursor begins (x) and ends (y) in text().
    [[nodiscard]] Q_INVOKABLE static QPoint section(int cursor);
    /// The same time of day on another day; months count from 0.
    [[nodiscard]] static QDateTime onDay(const QDateTime &time, int year, int month, int day);
};

} // namespace randblatt
