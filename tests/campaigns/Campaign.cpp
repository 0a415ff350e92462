#include "campaigns/Campaign.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdio>

namespace randblatt {

using namespace Qt::StringLiterals;

void Tally::violation(const QString &what)
{
    ++violations;
    std::fprintf(stderr, "Verletzt: %s\n", qPrintable(what));
}

QMap<QString, QByteArray> CampaignStore::files() const
{
    QMap<QString, QByteArray> files;
    const auto names = QDir(folder()).entryList(QDir::Files);
    for (const QString &name : names) {
        QFile file(folder() + u'/' + name);
        if (file.open(QFile::ReadOnly))
            files.insert(name, file.readAll());
    }
    return files;
}

void CampaignStore::setFiles(const QMap<QString, QByteArray> &files) const
{
    QDir(folder()).removeRecursively();
    QDir().mkpath(folder());
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        QFile file(folder() + u'/' + it.key());
        if (!file.open(QFile::WriteOnly) || file.write(it.value()) != it.value().size())
            qFatal("%s", qPrintable(file.errorString()));
    }
}

Acknowledged sampleValues()
{
    Acknowledged values{
        {u"todoItems.v1"_s, QByteArray("[{\"title\":\"Milch kaufen\"}]").repeated(800)},
        {u"notesScratch"_s, u"Zeile für Zeile, mit Umlauten: äöüß. "_s.repeated(900)},
        {u"alwaysVisible"_s, true},
        {u"panelWidth"_s, 433.25},
        {u"moduleOrder"_s, QJsonArray{u"todo"_s, u"notes"_s}},
        {u"moduleHeights"_s, QJsonObject{{u"todo"_s, 512.5}}},
        {u"draft:calendar.form"_s,
         QJsonObject{{u"title"_s, u"Zahnarzt"_s.repeated(300)}, {u"minutes"_s, 30}}},
    };
    constexpr int small = 30;
    for (int i = 0; i < small; ++i) {
        values.insert(u"einstellung%1"_s.arg(i), u"Wert %1 "_s.arg(i).repeated(i + 1));
        values.insert(u"draft:todo.%1"_s.arg(i), QJsonObject{{u"text"_s, u"Entwurf %1"_s.arg(i)}});
    }
    return values;
}

namespace {

constexpr auto draftPrefix = "draft:"_L1;

std::optional<PreferenceValue> stored(const Preferences &preferences, const QString &place)
{
    if (!place.startsWith(draftPrefix))
        return preferences.value(place);
    const QJsonObject draft = preferences.draft(place.mid(draftPrefix.size()));
    return draft.isEmpty() ? std::nullopt : std::optional<PreferenceValue>(draft);
}

/// Whether the old bytes are in files that were put aside.
bool areKept(const QString &asidePath, const QMap<QString, QByteArray> &oldBytes)
{
    return std::all_of(oldBytes.keyBegin(), oldBytes.keyEnd(), [&](const QString &name) {
        // The index of a log is made anew from it.
        if (name.endsWith("-shm"_L1))
            return true;
        const QString suffix = name.endsWith("-wal"_L1) ? u"-wal"_s : QString();
        if (oldBytes[name].isEmpty())
            return true;
        QFile kept(asidePath + suffix);
        return kept.open(QFile::ReadOnly) && kept.readAll() == oldBytes[name];
    });
}

} // namespace

Acknowledged write(Preferences &preferences, const Acknowledged &values)
{
    Acknowledged acknowledged;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        const bool isOnDisk =
            it.key().startsWith(draftPrefix)
                ? preferences.setDraft(it.key().mid(draftPrefix.size()), std::get<QJsonObject>(it.value()))
                : preferences.setValue(it.key(), it.value());
        if (isOnDisk)
            acknowledged.insert(it.key(), it.value());
    }
    return acknowledged;
}

void check(Preferences &preferences, const Acknowledged &values, const QMap<QString, QByteArray> &oldBytes,
           const QString &what, Tally &tally)
{
    ++tally.runs;
    QStringList missing;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (stored(preferences, it.key()) != it.value())
            missing.append(it.key());
    }
    const QString aside = preferences.health().asidePath();
    if (!aside.isEmpty())
        ++tally.told;
    else if (missing.isEmpty())
        ++tally.untouched;
    if (!aside.isEmpty() && !areKept(aside, oldBytes))
        tally.violation(what + u": die alten Bytes sind fort"_s);
    else if (!missing.isEmpty() && aside.isEmpty() && preferences.health().sentence().isEmpty())
        tally.violation(what + u": es fehlt "_s + missing.join(u", "_s));
    else if (!missing.isEmpty())
        ++tally.lostButTold;
}

} // namespace randblatt
