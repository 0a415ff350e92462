#include "modules/calendar/DateTimeParser.h"

#include "modules/calendar/DateTimeText.h"
#include "platform/LocalTime.h"

#include <QHash>
#include <QLocale>
#include <QRegularExpression>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// A 29 February is not further away.
constexpr int yearsToSearch = 8;

QRegularExpression pattern(const QString &text)
{
    return QRegularExpression(text, QRegularExpression::CaseInsensitiveOption |
                                        QRegularExpression::UseUnicodePropertiesOption);
}

QString quoted(const QString &text)
{
    return u"„"_s + text + u"“"_s;
}

QString twoDigits(int number)
{
    return QString::number(number).rightJustified(2, u'0');
}

/// 1 for Monday; 0 for a name that is no weekday's.
int weekdayNamed(const QString &name)
{
    static const QHash<QString, int> days{
        {u"montag"_s, 1},    {u"mo"_s, 1}, {u"dienstag"_s, 2}, {u"di"_s, 2}, {u"mittwoch"_s, 3},
        {u"mi"_s, 3},        {u"do"_s, 4}, {u"freitag"_s, 5},  {u"fr"_s, 5}, {u"samstag"_s, 6},
        {u"sonnabend"_s, 6}, {u"sa"_s, 6}, {u"sonntag"_s, 7},  {u"so"_s, 7}, {u"donnerstag"_s, 4},
    };
    return days.value(name);
}

/// 1 for January, by the first letters of the name.
int monthNamed(const QString &name)
{
    static const QHash<QString, int> months{
        {u"jan"_s, 1},  {u"jän"_s, 1},  {u"feb"_s, 2},  {u"mär"_s, 3}, {u"apr"_s, 4},
        {u"mai"_s, 5},  {u"jun"_s, 6},  {u"jul"_s, 7},  {u"aug"_s, 8}, {u"sep"_s, 9},
        {u"okt"_s, 10}, {u"nov"_s, 11}, {u"dez"_s, 12},
    };
    return months.value(name.toLower().first(3));
}

/// How far away a day is that is named by today; none for another word.
std::optional<int> daysFromToday(const QString &name)
{
    static const QHash<QString, int> days{
        {u"heute"_s, 0}, {u"morgen"_s, 1}, {u"übermorgen"_s, 2}, {u"uebermorgen"_s, 2}};
    const auto it = days.constFind(name);
    return it == days.cend() ? std::nullopt : std::optional(*it);
}

} // namespace

DateTimeParser::DateTimeParser(const QDateTime &present, const QDateTime &now)
    : m_present(present)
    , m_now(now)
{
}

TypedTime DateTimeParser::parse(const QString &typed)
{
    static const QRegularExpression between = pattern(uR"((?:[ ,;–-]+|(?:am|um|den)(?=[ ,]))*)"_s);
    static const QRegularExpression word = pattern(uR"([^ ,;]+)"_s);
    m_text = typed.simplified();
    (void)take(between);
    while (m_at < m_text.size() && m_problem.isEmpty()) {
        if (!takeWholeDate() && !takeTime() && !takeDayAndMonth() && !takeUnclear() && !takeWord())
            fail(quoted(take(word).captured()) + u" ist kein Tag und keine Uhrzeit."_s);
        (void)take(between);
    }
    settleUnclear();
    const QDateTime time = result();
    return m_problem.isEmpty() ? TypedTime{time, {}} : TypedTime{{}, m_problem};
}

QRegularExpressionMatch DateTimeParser::take(const QRegularExpression &pattern)
{
    auto match = pattern.match(m_text, m_at, QRegularExpression::NormalMatch,
                               QRegularExpression::AnchorAtOffsetMatchOption);
    if (match.hasMatch())
        m_at = match.capturedEnd();
    return match;
}

bool DateTimeParser::takeWholeDate()
{
    static const QRegularExpression iso =
        pattern(uR"(([0-9]{4})-([0-9]{1,2})-([0-9]{1,2})(?![0-9])(?:T(?=[0-9]))?)"_s);
    static const QRegularExpression numbers =
        pattern(uR"(([0-9]{1,2})(?:[.] ?|[/ -])([0-9]{1,2})(?:[.] ?|[/ -])([0-9]{4})(?![0-9]))"_s);
    // Two digits are a year only right behind the month, and where no time begins with them.
    static const QRegularExpression shortYear = pattern(
        uR"(([0-9]{1,2})(?:[.] ?|[/-])([0-9]{1,2})[./-]([0-9]{2})(?![0-9:]|[.][0-9]| ?(?:uhr|[ap][.]?m)))"_s);
    if (const auto match = take(iso); match.hasMatch()) {
        setDate(match.captured(3).toInt(), match.captured(2).toInt(), match.captured(1).toInt());
        return true;
    }
    if (const auto match = take(numbers); match.hasMatch()) {
        setDate(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
        return true;
    }
    if (const auto match = take(shortYear); match.hasMatch()) {
        setDate(match.captured(1).toInt(), match.captured(2).toInt(), 2000 + match.captured(3).toInt());
        return true;
    }
    return false;
}

bool DateTimeParser::takeDayAndMonth()
{
    static const QRegularExpression numbers =
        pattern(uR"(([0-9]{1,2})(?:[.] ?(?:([0-9]{1,2})[.]|([0-9])(?![0-9]))|/([0-9]{1,2})(?![0-9/])))"_s);
    static const QRegularExpression named = pattern(
        uR"(([0-9]{1,2})[.]? ?(januar|jänner|februar|märz|april|mai|juni?|juli?|august|september|oktober|november|dezember|jan|jän|feb|mär|apr|aug|sept?|okt|nov|dez)(?!\p{L})[.]?(?: ([0-9]{4})(?![0-9]))?)"_s);
    if (const auto match = take(numbers); match.hasMatch()) {
        setDate(match.captured(1).toInt(), match.captured(match.lastCapturedIndex()).toInt(), std::nullopt);
        return true;
    }
    if (const auto match = take(named); match.hasMatch()) {
        const auto year = match.hasCaptured(3) ? std::optional(match.captured(3).toInt()) : std::nullopt;
        setDate(match.captured(1).toInt(), monthNamed(match.captured(2)), year);
        return true;
    }
    return false;
}

bool DateTimeParser::takeTime()
{
    // Before a day, "am" is German.
    static const QRegularExpression english =
        pattern(uR"(([0-9]{1,2})(?:[:.]([0-9]{2}))? ?(?:(p[.]?m)|a[.]m|am(?=$| ?,))(?!\p{L})[.]?)"_s);
    static const QRegularExpression clock =
        pattern(uR"(([0-9]{1,2}):([0-9]{2})(?::[0-9]{2})?(?![0-9:])(?: ?uhr(?!\p{L}))?)"_s);
    static const QRegularExpression german =
        pattern(uR"(([0-9]{1,2})(?:[.]([0-9]{2}))? ?uhr(?!\p{L})(?: ([0-9]{1,2})(?![0-9.:/-]| ?\p{L}))?)"_s);
    if (const auto match = take(english); match.hasMatch()) {
        setEnglishTime(match.captured(1).toInt(), match.captured(2).toInt(), match.hasCaptured(3));
        return true;
    }
    if (const auto match = take(clock); match.hasMatch()) {
        setTime(match.captured(1).toInt(), match.captured(2).toInt());
        return true;
    }
    if (const auto match = take(german); match.hasMatch()) {
        setTime(match.captured(1).toInt(), match.captured(match.hasCaptured(3) ? 3 : 2).toInt());
        return true;
    }
    return false;
}

bool DateTimeParser::takeUnclear()
{
    static const QRegularExpression pair = pattern(uR"(([0-9]{1,2})[.]([0-9]{2})(?![0-9.]))"_s);
    static const QRegularExpression number = pattern(uR"([0-9]{1,2}(?![0-9.:/\p{L}]))"_s);
    if (!m_pair) {
        if (const auto match = take(pair); match.hasMatch()) {
            m_pair = {match.captured(1).toInt(), match.captured(2).toInt(), match.captured()};
            return true;
        }
    }
    if (!m_number) {
        if (const auto match = take(number); match.hasMatch()) {
            m_number = {match.captured(), m_pair.has_value() || (m_date && !m_hasYear)};
            return true;
        }
    }
    return false;
}

bool DateTimeParser::takeWord()
{
    static const QRegularExpression letters = pattern(uR"((\p{L}+)[.]?)"_s);
    const qsizetype before = m_at;
    const QString name = take(letters).captured(1).toLower();
    if (const int weekday = weekdayNamed(name); weekday != 0) {
        setWeekday(weekday);
        return true;
    }
    if (const auto days = daysFromToday(name)) {
        setDate(m_now.date().addDays(*days));
        return true;
    }
    m_at = before;
    return false;
}

void DateTimeParser::setDate(int day, int month, std::optional<int> year)
{
    QDate date = year ? QDate(*year, month, day) : QDate();
    for (int later = 0; !year && later <= yearsToSearch && !date.isValid(); ++later) {
        const QDate candidate(m_now.date().year() + later, month, day);
        if (candidate >= m_now.date())
            date = candidate;
    }
    if (date.isValid()) {
        setDate(date);
        m_hasYear = year.has_value();
    } else {
        fail(u"Den "_s + twoDigits(day) + u'.' + twoDigits(month) + u'.' +
             (year ? QString::number(*year) : QString()) + u" gibt es nicht."_s);
    }
}

void DateTimeParser::setDate(const QDate &date)
{
    if (m_date)
        fail(u"Hier stehen zwei Tage."_s);
    m_date = date;
}

void DateTimeParser::setWeekday(int weekday)
{
    if (m_weekday)
        fail(u"Hier stehen zwei Wochentage."_s);
    m_weekday = weekday;
}

void DateTimeParser::setTime(int hour, int minute)
{
    if (m_time)
        fail(u"Hier stehen zwei Uhrzeiten."_s);
    m_endsDay = hour == 24 && minute == 0;
    m_time = QTime(m_endsDay ? 0 : hour, minute);
    if (!m_time->isValid())
        fail(u"Die Uhrzeit "_s + QString::number(hour) + u':' + twoDigits(minute) + u" gibt es nicht."_s);
}

void DateTimeParser::setEnglishTime(int hour, int minute, bool afternoon)
{
    if (hour < 1 || hour > 12)
        fail(u"Mit am und pm zählen die Stunden nur von 1 bis 12."_s);
    setTime(hour % 12 + (afternoon ? 12 : 0), minute);
}

void DateTimeParser::settleUnclear()
{
    // What stands beside them tells what they are.
    const bool hasDay = m_date || m_weekday;
    if (m_pair) {
        const bool canBeTime = !m_time && !m_number && QTime(m_pair->first, m_pair->second).isValid();
        const bool canBeDay = !m_date && QDate(2000, m_pair->second, m_pair->first).isValid();
        if (canBeTime && canBeDay && !hasDay)
            fail(quoted(m_pair->text) + u" ist nicht eindeutig: bitte "_s + quoted(m_pair->text + u'.') +
                 u" oder "_s + quoted(QString(m_pair->text).replace(u'.', u':')) + u" schreiben."_s);
        else if (canBeTime && (hasDay || !canBeDay))
            setTime(m_pair->first, m_pair->second);
        else if (canBeDay)
            setDate(m_pair->first, m_pair->second, std::nullopt);
        else
            fail(quoted(m_pair->text) + u" ist kein Tag und keine Uhrzeit."_s);
    }
    if (m_number) {
        if (m_number->mayBeYear || m_time || !(m_date || m_weekday))
            fail(quoted(m_number->text) + u" ist nicht eindeutig: bitte Uhrzeiten wie „18:00“ schreiben."_s);
        else
            setTime(m_number->text.toInt(), 0);
    }
}

QDateTime DateTimeParser::result()
{
    if (!m_date && !m_weekday && !m_time)
        fail(u"Hier fehlen Tag und Uhrzeit."_s);
    QDate date = m_date.value_or(m_present.date());
    if (m_weekday && !m_date) {
        const int days = (*m_weekday - m_now.date().dayOfWeek() + 7) % 7;
        date = m_now.date().addDays(days == 0 ? 7 : days);
    } else if (m_weekday && *m_weekday != date.dayOfWeek()) {
        fail(u"Der "_s + date.toString(u"dd.MM.yyyy") + u" ist ein "_s +
             QLocale(QLocale::German).dayName(date.dayOfWeek()) + u'.');
    }
    const QDateTime time = localTime(date.addDays(m_endsDay ? 1 : 0), m_time.value_or(m_present.time()));
    if (!DateTimeText::isWritable(time))
        fail(u"Nur die Jahre 1000 bis 9999 sind möglich."_s);
    return time;
}

void DateTimeParser::fail(const QString &problem)
{
    if (m_problem.isEmpty())
        m_problem = problem;
}

} // namespace randblatt
