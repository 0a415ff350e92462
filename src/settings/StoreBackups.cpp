#include "settings/StoreBackups.h"

#include "settings/Preferences.h"
#include "settings/StoreCopy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QLoggingCategory>

#include <algorithm>
#include <chrono>

namespace randblatt {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(lcBackups, "quillbar.backups")

constexpr int daysKept = 7;
constexpr int weeksKept = 4;

// By then everything is shown and still.
constexpr auto afterStart = 10s;

constexpr auto prefix = "preferences-"_L1;
constexpr auto suffix = ".sqlite"_L1;

// In the name of the file that waits for the next start.
constexpr auto chosenName = "gewaehlt"_L1;

} // namespace

StoreBackups::StoreBackups(Preferences &preferences, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
{
    connect(&preferences.health(), &StoreHealth::synced, this, &StoreBackups::makeDue);
    m_afterStart.setSingleShot(true);
    m_afterStart.setInterval(afterStart);
    connect(&m_afterStart, &QTimer::timeout, this, &StoreBackups::makeDue);
    m_afterStart.start();
}

QString StoreBackups::folder() const
{
    return copiesFolder(m_preferences.path());
}

QString StoreBackups::pathOf(const QString &copy) const
{
    return folder() + u'/' + prefix + copy + suffix;
}

QStringList StoreBackups::copies() const
{
    QStringList copies;
    const auto names =
        QDir(folder()).entryList({prefix + u'*' + suffix}, QDir::Files, QDir::Name | QDir::Reversed);
    for (const QString &name : names) {
        const QString copy = name.mid(prefix.size(), name.size() - prefix.size() - suffix.size());
        if (QDate::fromString(copy, Qt::ISODate).isValid())
            copies.append(copy);
    }
    return copies;
}

QString StoreBackups::label(const QString &copy)
{
    const QLocale german(QLocale::German, QLocale::Germany);
    return german.toString(QDate::fromString(copy, Qt::ISODate), u"dddd, d. MMMM yyyy"_s);
}

QString StoreBackups::chosen() const
{
    QFile note(folder() + u'/' + chosenName);
    return QFileInfo::exists(chosenStore(m_preferences.path())) && note.open(QFile::ReadOnly)
               ? QString::fromUtf8(note.readAll())
               : QString();
}

void StoreBackups::choose(const QString &copy)
{
    unchoose();
    const QString target = chosenStore(m_preferences.path());
    QFile note(folder() + u'/' + chosenName);
    const QByteArray name = copy.toUtf8();
    const bool isChosen = copyStore(pathOf(copy), nullptr, target) == StoreResult::ok &&
                          note.open(QFile::WriteOnly) && note.write(name) == name.size() && note.flush();
    setProblem(isChosen ? QString() : u"Die Sicherung lässt sich nicht lesen."_s);
    if (!isChosen)
        QFile::remove(target);
    Q_EMIT changed();
}

void StoreBackups::unchoose()
{
    QFile::remove(chosenStore(m_preferences.path()));
    QFile::remove(folder() + u'/' + chosenName);
    Q_EMIT changed();
}

void StoreBackups::makeDue()
{
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    if (m_isCopying || QFileInfo::exists(pathOf(today)))
        return;
    const auto ended = [this](StoreResult result) {
        m_isCopying = false;
        if (result != StoreResult::ok)
            qCWarning(lcBackups, "Keine Sicherung der Einstellungen: %s", describe(result));
        setProblem(result == StoreResult::ok ? QString()
                                             : QString::fromUtf8(describe(result)) +
                                                   u": Die Daten sind heute noch nicht gesichert."_s);
        removeOutdated();
        Q_EMIT changed();
    };
    m_isCopying = m_preferences.copyTo(pathOf(today), this, ended);
}

void StoreBackups::removeOutdated()
{
    QList<QDate> days;
    const QStringList all = copies();
    for (const QString &copy : all)
        days.append(QDate::fromString(copy, Qt::ISODate));
    const auto old = outdated(days);
    for (const QDate &day : old)
        QFile::remove(pathOf(day.toString(Qt::ISODate)));
}

QList<QDate> StoreBackups::outdated(QList<QDate> days)
{
    std::sort(days.begin(), days.end(), std::greater());
    QList<QDate> old;
    QList<std::pair<int, int>> weeks;
    for (qsizetype i = 0; i < days.size(); ++i) {
        int year = 0;
        const int number = days.at(i).weekNumber(&year);
        const std::pair week(year, number);
        const bool isLastOfWeek = !weeks.contains(week);
        if (isLastOfWeek)
            weeks.append(week);
        if (i >= daysKept && (!isLastOfWeek || weeks.size() > weeksKept))
            old.append(days.at(i));
    }
    return old;
}

void StoreBackups::setProblem(const QString &problem)
{
    m_problem = problem;
}

} // namespace randblatt
