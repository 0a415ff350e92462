#include "campaigns/Campaign.h"
#include "support/FaultVfs.h"

#include <QEventLoop>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// Opens the store, writes, copies and ends, with a fault at the `nth` call; whether the fault came.
bool runWithFault(const CampaignStore &store, const QMap<QString, QByteArray> &files, int nth,
                  FaultVfs::Fault fault, int count, const QString &what, bool isDamaged, Tally &tally)
{
    FaultVfs disk;
    store.setFiles(files);
    Acknowledged values = isDamaged ? Acknowledged() : sampleValues();
    disk.failAt(nth, fault, count);
    {
        Preferences preferences(store.path());
        const Acknowledged written =
            write(preferences, {{u"alwaysVisible"_s, false},
                                {u"panelWidth"_s, 500.0},
                                {u"notesScratch"_s, u"neu "_s.repeated(9'000)},
                                {u"draft:todo.neu"_s, QJsonObject{{u"text"_s, u"x"_s}}}});
        // Where a write was refused, the value before it or the refused one is there.
        for (const QString &place :
             {u"alwaysVisible"_s, u"panelWidth"_s, u"notesScratch"_s, u"draft:todo.neu"_s})
            values.remove(place);
        values.insert(written);
        QEventLoop loop;
        const bool isCopying =
            preferences.copyTo(store.folder() + u"/backups/preferences-2026-11-23.sqlite"_s, &loop,
                               [&loop](StoreResult) { loop.quit(); });
        if (isCopying)
            loop.exec();
    }
    const bool came = disk.calls() >= nth;
    disk.heal();
    Preferences preferences(store.path());
    check(preferences, values, isDamaged ? files : QMap<QString, QByteArray>(), what, tally);
    if (isDamaged && preferences.health().asidePath().isEmpty())
        tally.violation(what + u": niemand weiß vom Schaden"_s);
    return came;
}

} // namespace

Tally runFaults(int step)
{
    Tally tally;
    const CampaignStore store;
    {
        Preferences preferences(store.path());
        if (write(preferences, sampleValues()) != sampleValues())
            qFatal("Die Vorlage lässt sich nicht schreiben.");
    }
    const auto healthy = store.files();
    auto damaged = healthy;
    constexpr qsizetype secondPage = 16384;
    damaged.first().replace(secondPage, 512, QByteArray(512, '\0'));
    struct Kind
    {
        FaultVfs::Fault fault;
        QStringView name;
    };
    constexpr int always = 1'000'000;
    for (const Kind kind :
         {Kind{FaultVfs::Fault::ioError, u"E/A-Fehler"}, Kind{FaultVfs::Fault::full, u"voll"},
          Kind{FaultVfs::Fault::shortWrite, u"kurz geschrieben"}}) {
        for (const int count : {1, always}) {
            for (const bool isDamaged : {false, true}) {
                bool came = true;
                for (int nth = 1; came; nth += step) {
                    const QString what =
                        u"%1 ab Aufruf %2 (%3), Datei %4"_s.arg(kind.name).arg(nth).arg(count).arg(
                            isDamaged ? u"beschädigt" : u"heil");
                    came = runWithFault(store, isDamaged ? damaged : healthy, nth, kind.fault, count, what,
                                        isDamaged, tally);
                }
            }
        }
    }
    return tally;
}

} // namespace randblatt
