#pragma once

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

    [[nodiscard]] Q_INVOKABLE static QString text(const QDateTime &time);
    /// What a typed text means: the five numbers in their order with anything between them, the year also
    /// with two digits; without a time of day, that of `present`. A text that is no time means `present`, and
    /// so does the text of `present`, seconds and all.
    [[nodiscard]] Q_INVOKABLE static QDateTime parsed(const QString &text, const QDateTime &present);
    /// The time with the number under the cursor `steps` higher; a day stays within its month's length.
    [[nodiscard]] Q_INVOKABLE static QDateTime stepped(const QDateTime &time, int cursor, int steps);
    /// Where the number under the cursor begins (x) and ends (y) in text().
    [[nodiscard]] Q_INVOKABLE static QPoint section(int cursor);
    /// The same time of day on another day; months count from 0.
    [[nodiscard]] Q_INVOKABLE static QDateTime onDay(const QDateTime &time, int year, int month, int day);
};

} // namespace randblatt
