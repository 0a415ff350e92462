#pragma once

#include <QDate>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// The day that the keyboard is on in a month to choose from, and the day that was chosen before. Months
/// count from 0, as in QML.
class MonthCursor : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int year READ year NOTIFY moved FINAL)
    Q_PROPERTY(int month READ month NOTIFY moved FINAL)
    Q_PROPERTY(int day READ day NOTIFY moved FINAL)
    Q_PROPERTY(int currentKey READ currentKey NOTIFY moved FINAL)
    Q_PROPERTY(int chosenKey READ chosenKey NOTIFY started FINAL)

public:
    using QObject::QObject;

    /// Puts both days on that of `time`.
    Q_INVOKABLE void start(const QDateTime &time);
    Q_INVOKABLE void moveDays(int days);
    /// Goes to the same day of another month, or to that month's last.
    Q_INVOKABLE void moveMonths(int months);
    /// A number for a day, to compare with the keys of the cursor.
    [[nodiscard]] Q_INVOKABLE static int key(int year, int month, int day);

    [[nodiscard]] int year() const { return m_current.year(); }
    [[nodiscard]] int month() const { return m_current.month() - 1; }
    [[nodiscard]] int day() const { return m_current.day(); }
    [[nodiscard]] int currentKey() const { return key(year(), month(), day()); }
    [[nodiscard]] int chosenKey() const { return m_chosenKey; }

Q_SIGNALS:
    void started();
    void moved();

private:
    void moveTo(const QDate &day);

    QDate m_current = QDate::currentDate();
    int m_chosenKey = 0;
};

} // namespace randblatt
