#pragma once

#include <QDate>
#include <QDateTime>
#include <QRegularExpressionMatch>
#include <QString>

#include <optional>

class QRegularExpression;

namespace randblatt {

/// What a typed text means.
struct TypedTime
{
    /// Invalid if the text is not understood.
    QDateTime time;
    /// Why it is not, as a German sentence; else empty.
    QString problem;
};

/// Reads one text as people write a day and a time: numbers with or without a year, ISO 8601, German names of
/// days and months, "18 Uhr", and the twelve hours of English clocks. What can be read in two ways is not
/// understood.
class DateTimeParser
{
public:
    /// What the text leaves open is taken from `present`: the time of a day alone, the day of a time alone. A
    /// day without a year is the next one from the day of `now` on, a weekday the next one after it.
    DateTimeParser(const QDateTime &present, const QDateTime &now);

    /// To be called once.
    [[nodiscard]] TypedTime parse(const QString &typed);

private:
    /// Two numbers with a point between them: a day and its month, or hours and minutes.
    struct Pair
    {
        int first;
        int second;
        QString text;
    };
    /// A number alone: hours, or a day, or a year.
    struct Number
    {
        QString text;
        bool mayBeYear;
    };

    [[nodiscard]] QRegularExpressionMatch take(const QRegularExpression &pattern);
    [[nodiscard]] bool takeWholeDate();
    [[nodiscard]] bool takeDayAndMonth();
    [[nodiscard]] bool takeWord();
    [[nodiscard]] bool takeTime();
    [[nodiscard]] bool takeUnclear();
    void setDate(int day, int month, std::optional<int> year);
    void setDate(const QDate &date);
    void setWeekday(int weekday);
    void setTime(int hour, int minute);
    void setEnglishTime(int hour, int minute, bool afternoon);
    void settleUnclear();
    [[nodiscard]] QDateTime result();
    void fail(const QString &problem);

    const QDateTime m_present;
    const QDateTime m_now;
    QString m_text;
    /// How much of the text is read.
    qsizetype m_at = 0;

    std::optional<QDate> m_date;
    bool m_hasYear = true;
    std::optional<int> m_weekday;
    std::optional<QTime> m_time;
    /// Whether the time is 24:00, the end of its day.
    bool m_endsDay = false;
    std::optional<Pair> m_pair;
    std::optional<Number> m_number;
    /// The first one that was found.
    QString m_problem;
};

} // namespace randblatt
