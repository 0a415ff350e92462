#include "campaigns/Campaign.h"
#include "campaigns/FileFaults.h"
#include "platform/calendar/CalendarFile.h"
#include "platform/notes/NotesLibrary.h"
#include "platform/notes/NotesLibraryError.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTimeZone>

#include <algorithm>
#include <functional>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype blockSize = 512;

const QDateTime &january()
{
    static const QDateTime date(QDate(2026, 1, 1), QTime(0, 0), QTimeZone::utc());
    return date;
}

NewCalendarEvent event(const QString &title, int day)
{
    const QDateTime start = january().addDays(day);
    return {.title = title, .start = start, .end = start.addSecs(3600), .uid = u"uid-"_s + title};
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s", qPrintable(file.errorString()));
}

QStringList titles(CalendarFile &calendar)
{
    QStringList titles;
    const auto events = calendar.events(january(), january().addDays(1000));
    if (!events)
        return {u"unlesbar: "_s + events.reason()};
    for (const CalendarEvent &found : *events)
        titles.append(found.title);
    titles.sort();
    return titles;
}

/// A calendar of some pages, and notes: one of our own making, and one of another program's.
struct Samples
{
    QTemporaryDir folder;
    QString calendar = folder.filePath(u"calendar.ics"_s);
    QString notes = folder.filePath(u"notes"_s);
    QByteArray calendarBytes;
    QByteArray own;
    QByteArray foreign = "<html><head><title>Fremd</title></head><body><h1>Wort-Fremd</h1>" +
                         QByteArray("<p>Ein <i>Absatz</i>.</p>\n").repeated(120) + "</body></html>\n";

    Samples()
    {
        constexpr int events = 24;
        CalendarFile file(calendar);
        for (int i = 0; i < events; ++i)
            (void)file.append(event(u"Termin-%1"_s.arg(i), i));
        calendarBytes = contents(calendar);
        NotesLibrary library(notes);
        library.refresh();
        library.createNote(NotesLibrary::defaultFolder(), u"Eigen"_s,
                           u"Wort-Eigen"_s + u"<br>Zeile um Zeile"_s.repeated(200));
        own = contents(defaultFolder() + u'/' + QDir(defaultFolder()).entryList(QDir::Files).value(0));
        reset();
    }

    [[nodiscard]] QString defaultFolder() const { return notes + u'/' + NotesLibrary::defaultFolder(); }

    void reset() const
    {
        put(calendar, calendarBytes);
        QDir(notes).removeRecursively();
        put(defaultFolder() + "/eigen.html"_L1, own);
        put(defaultFolder() + "/fremd.html"_L1, foreign);
    }

    /// Whether any file of the library's, a deleted one too, has the words.
    [[nodiscard]] bool areKept(const QByteArray &words) const
    {
        QDirIterator files(notes, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            if (contents(files.next()).contains(words))
                return true;
        }
        return false;
    }
};

/// A note's id by its name; empty where there is none of that name.
QString noteNamed(NotesLibrary &library, const QString &name)
{
    for (const QString &id : library.notes()) {
        if (library.name(id) == name)
            return id;
    }
    return {};
}

void damageCalendar(const Samples &samples, const QByteArray &bytes, const QString &what, Tally &tally)
{
    put(samples.calendar, bytes);
    CalendarFile calendar(samples.calendar);
    const auto events = calendar.events(january(), january().addDays(1000));
    if (contents(samples.calendar) != bytes)
        tally.violation(what + u": Lesen hat die Datei geändert"_s);
    const auto saved = calendar.append(event(u"Neu"_s, 3));
    const QByteArray after = contents(samples.calendar);
    // Put in at one place, so that all else is as it was.
    const qsizetype at =
        after.indexOf("BEGIN:VEVENT", after.lastIndexOf("END:VEVENT", after.indexOf("uid-Neu")));
    const qsizetype length = after.size() - bytes.size();
    const bool isInsertion = saved && at > 0 && length > 0 && QByteArray(after).remove(at, length) == bytes;
    if (saved ? !isInsertion : after != bytes)
        tally.violation(what + u": die alten Bytes sind fort"_s);
    if (!saved && (saved.reason().isEmpty() || events))
        tally.violation(what + u": niemand weiß vom Schaden"_s);
    ++(events ? tally.untouched : tally.told);
}

void damageNote(const Samples &samples, const QString &name, const QByteArray &bytes, const QString &what,
                Tally &tally)
{
    samples.reset();
    const QString path = samples.defaultFolder() + u'/' + name;
    put(path, bytes);
    bool isTold = false;
    try {
        NotesLibrary library(samples.notes);
        library.refresh();
        for (const QString &id : library.notes())
            (void)library.body(id);
        if (contents(path) != bytes)
            tally.violation(what + u": Lesen hat die Datei geändert"_s);
        for (const QString &id : library.notes())
            library.setBody(id, u"Wort-Danach"_s);
    } catch (const NotesLibraryError &) {
        isTold = true;
    }
    // The text of a note of our own may go for another one; what nobody of us wrote is kept.
    const bool isKept =
        samples.areKept(bytes) || (!isTold && NotesLibrary(samples.notes).notes().size() == 2);
    if (!isKept)
        tally.violation(what + u": die alten Bytes sind fort"_s);
    ++(isTold ? tally.told : tally.untouched);
}

/// One operation that is to be acknowledged or refused; with a check of what is there afterwards.
struct Operation
{
    QStringView name;
    /// Whether it was acknowledged.
    std::function<bool(const Samples &)> run;
    std::function<bool(const Samples &, bool isAcknowledged)> holds;
};

bool acknowledges(const Samples &samples, const std::function<void(NotesLibrary &)> &change)
{
    try {
        NotesLibrary library(samples.notes);
        library.refresh();
        change(library);
        return true;
    } catch (const NotesLibraryError &error) {
        return error.message.isEmpty();
    }
}

/// Whether the note of that name has the words, after a new start.
bool stands(const Samples &samples, const QString &name, const QString &words)
{
    NotesLibrary library(samples.notes);
    library.refresh();
    const QString id = noteNamed(library, name);
    return !id.isEmpty() && library.body(id).contains(words);
}

QList<Operation> operations()
{
    static const auto calendarHas = [](const Samples &samples, const QString &title, bool has) {
        CalendarFile calendar(samples.calendar);
        QStringList found = titles(calendar);
        const bool isThere = found.removeAll(title) == 1;
        CalendarFile before(samples.folder.filePath(u"before.ics"_s));
        put(before.path(), samples.calendarBytes);
        QStringList all = titles(before);
        all.removeAll(title);
        return isThere == has && found == all;
    };
    static const auto saveNote = [](const QString &name, const QString &text) {
        return [name, text](const Samples &samples) {
            return acknowledges(samples, [&](NotesLibrary &library) {
                const QString id = noteNamed(library, name);
                (void)library.body(id);
                library.setBody(id, text);
            });
        };
    };
    return {
        {u"Termin sichern",
         [](const Samples &samples) {
             return bool(CalendarFile(samples.calendar).append(event(u"Neu"_s, 3)));
         },
         [](const Samples &samples, bool acknowledged) {
             return calendarHas(samples, u"Neu"_s, true) ||
                    (!acknowledged && calendarHas(samples, u"Neu"_s, false));
         }},
        {u"Termin entfernen",
         [](const Samples &samples) {
             CalendarFile calendar(samples.calendar);
             const NewCalendarEvent known = event(u"Termin-5"_s, 5);
             const auto saved = calendar.append(known);
             return saved && calendar.remove(*saved);
         },
         [](const Samples &samples, bool acknowledged) {
             return calendarHas(samples, u"Termin-5"_s, false) ||
                    (!acknowledged && calendarHas(samples, u"Termin-5"_s, true));
         }},
        {u"Notiz anlegen",
         [](const Samples &samples) {
             return acknowledges(samples, [](NotesLibrary &library) {
                 library.createNote(NotesLibrary::defaultFolder(), u"Neu"_s, u"Wort-Neu"_s);
             });
         },
         [](const Samples &samples, bool acknowledged) {
             return (!acknowledged || stands(samples, u"Neu"_s, u"Wort-Neu"_s)) &&
                    stands(samples, u"Eigen"_s, u"Wort-Eigen"_s);
         }},
        {u"eigene Notiz sichern", saveNote(u"Eigen"_s, u"Wort-Neu"_s),
         [](const Samples &samples, bool acknowledged) {
             return stands(samples, u"Eigen"_s, u"Wort-Neu"_s) ||
                    (!acknowledged && stands(samples, u"Eigen"_s, u"Wort-Eigen"_s));
         }},
        {u"fremde Notiz sichern", saveNote(u"Fremd"_s, u"Wort-Neu"_s),
         [](const Samples &samples, bool acknowledged) {
             return samples.areKept(samples.foreign) &&
                    (stands(samples, u"Fremd"_s, u"Wort-Neu"_s) ||
                     (!acknowledged && stands(samples, u"Fremd"_s, u"Wort-Fremd"_s)));
         }},
        {u"Notiz umbenennen",
         [](const Samples &samples) {
             return acknowledges(samples, [](NotesLibrary &library) {
                 const QString id = noteNamed(library, u"Fremd"_s);
                 library.setBody(id, u"<div><b>Anders</b></div>"_s + library.body(id));
             });
         },
         [](const Samples &samples, bool acknowledged) {
             return stands(samples, u"Anders"_s, u"Wort-Fremd"_s) ||
                    (!acknowledged && stands(samples, u"Fremd"_s, u"Wort-Fremd"_s));
         }},
        {u"Notiz löschen",
         [](const Samples &samples) {
             return acknowledges(
                 samples, [](NotesLibrary &library) { library.deleteNote(noteNamed(library, u"Eigen"_s)); });
         },
         [](const Samples &samples, bool acknowledged) {
             return samples.areKept(samples.own) &&
                    (!acknowledged || !stands(samples, u"Eigen"_s, u"Wort-Eigen"_s));
         }},
    };
}

} // namespace

Tally runFileDamage(int step)
{
    Tally tally;
    const Samples samples;
    const auto damageEach = [&](const QString &name, const QByteArray &bytes, const auto &look) {
        for (qsizetype block = 0; block * blockSize < bytes.size(); block += step) {
            for (const bool flips : {false, true}) {
                ++tally.runs;
                look(damagedBlock(bytes, block, flips),
                     u"%1, Block %2, %3"_s.arg(name).arg(block).arg(flips ? u"gekippt" : u"genullt"));
            }
        }
    };
    damageEach(u"Kalender"_s, samples.calendarBytes, [&](const QByteArray &bytes, const QString &what) {
        damageCalendar(samples, bytes, what, tally);
    });
    damageEach(u"eigene Notiz"_s, samples.own, [&](const QByteArray &bytes, const QString &what) {
        damageNote(samples, u"eigen.html"_s, bytes, what, tally);
    });
    damageEach(u"fremde Notiz"_s, samples.foreign, [&](const QByteArray &bytes, const QString &what) {
        damageNote(samples, u"fremd.html"_s, bytes, what, tally);
    });
    return tally;
}

Tally runFileFaults(int step, quint32 seed)
{
    using Fault = FileFaults::Fault;
    struct Kind
    {
        Fault fault;
        QStringView name;
        /// A power failure leaves another thing each time.
        int draws;
    };
    constexpr int always = 1'000'000;
    constexpr int powerDraws = 6;
    Tally tally;
    const Samples samples;
    for (const Operation &operation : operations()) {
        for (const Kind kind :
             {Kind{Fault::ioError, u"E/A-Fehler", 1}, Kind{Fault::full, u"voll", 1},
              Kind{Fault::shortWrite, u"kurz geschrieben", 1}, Kind{Fault::noSync, u"nicht gesichert", 1},
              Kind{Fault::power, u"Stromausfall", powerDraws}}) {
            for (int draw = 0; draw < kind.draws; ++draw) {
                for (const int count : {1, always}) {
                    // It stays away for good.
                    if (kind.fault == Fault::power && count == 1)
                        continue;
                    int calls = 1;
                    // The last one comes after the last call: the power goes when all is done.
                    for (int nth = 1; nth <= calls + step; nth += step) {
                        samples.reset();
                        bool isAcknowledged = false;
                        {
                            FileFaults faults(nth, kind.fault, count,
                                              seed + static_cast<quint32>(nth * powerDraws + draw));
                            isAcknowledged = operation.run(samples);
                            calls = faults.calls();
                        }
                        ++tally.runs;
                        ++(isAcknowledged ? tally.untouched : tally.told);
                        bool holds = false;
                        try {
                            holds = operation.holds(samples, isAcknowledged);
                        } catch (const NotesLibraryError &) {
                        }
                        if (!holds)
                            tally.violation(u"%1, %2 ab Aufruf %3 (%4), %5"_s.arg(operation.name)
                                                .arg(kind.name)
                                                .arg(nth)
                                                .arg(count)
                                                .arg(isAcknowledged ? u"bestätigt" : u"abgelehnt"));
                    }
                }
            }
        }
    }
    return tally;
}

} // namespace randblatt
