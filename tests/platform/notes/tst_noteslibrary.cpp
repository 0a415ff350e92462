#include "platform/notes/NotesLibrary.h"
#include "platform/notes/NotesLibraryError.h"
#include "support/OtherProgram.h"
#include "support/ResourceLimit.h"
#include "support/TestEnvironment.h"
#include "support/Unprivileged.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

class NotesLibraryTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] QString path(const QString &relative) const
    {
        return m_folder->filePath(u"notes/"_s + relative);
    }

    void put(const QString &relative, const QByteArray &content, const QDateTime &modified = {}) const
    {
        QFile file(path(relative));
        QVERIFY(QDir().mkpath(QFileInfo(file).absolutePath()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.flush();
        if (modified.isValid())
            QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
    }

    [[nodiscard]] QByteArray get(const QString &relative) const
    {
        QFile file(path(relative));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] QStringList names(const std::optional<QString> &folder = std::nullopt) const
    {
        QStringList result;
        for (const QString &id : m_library->notes(folder))
            result.append(m_library->name(id));
        return result;
    }

    template <typename Operation>
    static QString messageOf(Operation operation)
    {
        try {
            operation();
        } catch (const NotesLibraryError &error) {
            return error.message;
        }
        return {};
    }

    void makeFolder(const QString &directory)
    {
        QVERIFY(QDir().mkpath(path(directory)));
        m_library->refresh();
    }

    [[nodiscard]] QDateTime modified(const QString &file) const
    {
        return QFileInfo(path(file)).lastModified();
    }

    QDateTime m_now;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<NotesLibrary> m_library;

private Q_SLOTS:
    void init()
    {
        m_now = QDateTime::currentDateTime();
        m_folder = std::make_unique<QTemporaryDir>();
        m_library = std::make_unique<NotesLibrary>(path(QString()), [this] { return m_now; });
        m_library->refresh();
    }

    void startsWithTheDefaultFolder()
    {
        QCOMPARE(m_library->folders(), QStringList{u"Notizen"_s});
        QVERIFY(QFileInfo(path(u"Notizen"_s)).isDir());
        QVERIFY(QDir(path(u"Notizen"_s)).removeRecursively());
        m_library->refresh();
        QVERIFY(QFileInfo(path(u"Notizen"_s)).isDir());
    }

    void listsByLastChange()
    {
        const QString first = m_library->createNote(u"Notizen"_s, u"A"_s, u"a"_s);
        const QString second = m_library->createNote(u"Notizen"_s, u"B"_s, u"b"_s);
        makeFolder(u"x%2fY"_s);
        m_library->createNote(u"x/Y"_s, u"C"_s, u"c"_s);
        QCOMPARE(names(), (QStringList{u"C"_s, u"B"_s, u"A"_s}));
        QCOMPARE(names(u"Notizen"_s), (QStringList{u"B"_s, u"A"_s}));
        m_library->setBody(first, u"neu"_s);
        QCOMPARE(names(), (QStringList{u"A"_s, u"C"_s, u"B"_s}));
        // Another process sees the same.
        NotesLibrary other(path(QString()));
        other.refresh();
        QCOMPARE(other.notes(), m_library->notes());
        QCOMPARE(other.folders(), (QStringList{u"Notizen"_s, u"x/Y"_s}));
        QCOMPARE(other.name(second), u"B"_s);
    }

    void takesTheNameOffTheBody()
    {
        const QString id = m_library->createNote(u"Notizen"_s, std::nullopt, u"<div><b>T&amp;</b></div>x"_s);
        QCOMPARE(m_library->name(id), u"T&"_s);
        QCOMPARE(m_library->body(id), u"x"_s);
        m_library->setBody(id, u"<div><b>U</b></div>y"_s);
        QCOMPARE(m_library->name(id), u"U"_s);
        QCOMPARE(m_library->body(id), u"y"_s);
        m_library->setBody(id, u"ohne Titel"_s);
        QCOMPARE(m_library->name(id), u"U"_s);
    }

    void leavesAnUnchangedNoteUnchanged()
    {
        const QString id = m_library->createNote(u"Notizen"_s, u"T"_s, u"<div><b>T</b></div>a<br>b"_s);
        const QString file = u"Notizen/"_s + id + u".html"_s;
        const auto order = modified(file);
        const QByteArray before = get(file);
        m_now = m_now.addSecs(60);
        m_library->setBody(id, u"<div><b>T</b></div>"_s + m_library->body(id));
        QCOMPARE(get(file), before);
        QCOMPARE(modified(file), order);
    }

    void seesWhatOtherProgramsDo()
    {
        put(u"Arbeit/Plan.html"_s, "<p>Montag</p>", m_now.addDays(-1));
        put(u"Arbeit/.Plan.html.swp"_s, "x");
        put(u"Arbeit/Bild.png"_s, "x");
        put(u"lose.html"_s, "x");
        QVERIFY(QDir().mkpath(path(u"Arbeit/Ordner.html"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"Arbeit/Röhre.html"_s)).constData(), 0600), 0);
        m_library->refresh();
        QCOMPARE(m_library->folders(), (QStringList{u"Notizen"_s, u"Arbeit"_s}));
        QCOMPARE(names(), QStringList{u"Montag"_s});
        // A change in place, with the size kept
        put(u"Arbeit/Plan.html"_s, "<p>Freitg</p>", m_now);
        m_library->refresh();
        QCOMPARE(names(), QStringList{u"Freitg"_s});
        // A move to another folder keeps the id.
        const QString id = m_library->notes().front();
        QVERIFY(QFile::rename(path(u"Arbeit/Plan.html"_s), path(u"Notizen/Plan.html"_s)));
        m_library->refresh();
        QCOMPARE(m_library->notes().front(), id);
        QCOMPARE(m_library->folderOf(id), u"Notizen"_s);
        QVERIFY(QFile::remove(path(u"Notizen/Plan.html"_s)));
        m_library->refresh();
        QVERIFY(m_library->notes().empty());
        QVERIFY(messageOf([&] { m_library->setBody(id, u"x"_s); }).contains(u"nicht vorhanden"));
    }

    void tellsFilesOfOneNameApart()
    {
        put(u"A/x.html"_s, "<p>in A</p>");
        m_library->refresh();
        const QString first = m_library->notes().front();
        put(u"B/x.html"_s, "<p>in B</p>");
        put(u"0/x.html"_s, "<p>in 0</p>");
        m_library->refresh();
        QCOMPARE(m_library->notes().size(), 3U);
        QCOMPARE(m_library->name(first), u"in A"_s);
        QCOMPARE(m_library->name(u"B/x"_s), u"in B"_s);
        QCOMPARE(m_library->name(u"0/x"_s), u"in 0"_s);
        m_library->setBody(u"B/x"_s, u"<div><b>B</b></div>neu"_s);
        QCOMPARE(get(u"A/x.html"_s), QByteArray("<p>in A</p>"));
        // Another process gives the short id to another of them, but takes the long one.
        NotesLibrary other(path(QString()));
        other.refresh();
        QCOMPARE(other.name(u"0/x"_s), u"in 0"_s);
        QCOMPARE(other.name(u"B/x"_s), u"B"_s);
    }

    void keepsWhatChangedBehindTheReader()
    {
        const QString id = m_library->createNote(u"Notizen"_s, u"T"_s, u"alt"_s);
        const QString file = u"Notizen/"_s + id + u".html"_s;
        QCOMPARE(m_library->body(id), u"alt"_s);
        put(file, "<title>T</title><p>von anderswo</p>", m_now.addSecs(-5));
        m_library->refresh();
        m_library->setBody(id, u"<div><b>T</b></div>meins"_s);
        QCOMPARE(names(), (QStringList{u"T"_s, u"T (ältere Fassung)"_s}));
        QCOMPARE(m_library->body(m_library->notes().at(1)), u"<p>von anderswo</p>"_s);
        QCOMPARE(m_library->folderOf(m_library->notes().at(1)), u"Notizen"_s);
        QCOMPARE(m_library->body(id), u"meins"_s);
        // Its own change is none that comes from elsewhere, nor is a new name.
        m_library->setBody(id, u"noch meins"_s);
        m_library->setBody(id, u"<div><b>U</b></div>noch mehr"_s);
        m_library->setBody(id, u"immer noch meins"_s);
        m_library->refresh();
        QCOMPARE(m_library->notes().size(), 2U);
    }

    void leavesOtherProgramsMarkupAlone_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("same");
        QTest::addColumn<bool>("isKept");
        QTest::newRow("markup") << QByteArray("<h1>Plan</h1><ul><li><a href='x'>a &lt; b</a></ul>")
                                << u"Plan<br>a &lt; b"_s << true;
        QTest::newRow("pictures") << QByteArray("Meer<img src='meer.png'>") << u"Meer"_s << true;
        QTest::newRow("plain text") << QByteArray("a &lt; b<br>c") << u"a &lt; b<br>c"_s << false;
    }

    void leavesOtherProgramsMarkupAlone()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const QString, same);
        QFETCH(const bool, isKept);
        const QByteArray file =
            "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>T</title>\n"
            "</head>\n<body>\n" +
            body + "\n</body>\n</html>\n";
        put(u"Notizen/x.html"_s, file, m_now.addDays(-3));
        m_library->refresh();
        QVERIFY(m_library->body(u"x"_s).startsWith(QString::fromUtf8(body)));
        m_library->setBody(u"x"_s, u"<div><b>T</b></div>"_s + same);
        QCOMPARE(get(u"Notizen/x.html"_s), file);
        // A new name alone changes nothing else.
        m_library->setBody(u"x"_s, u"<div><b>U</b></div>"_s + same);
        QCOMPARE(get(u"Notizen/x.html"_s), QByteArray(file).replace("<title>T", "<title>U"));
        m_library->setBody(u"x"_s, u"<div><b>U</b></div>"_s + same + u"!"_s);
        QCOMPARE(m_library->body(u"x"_s), same + u"!"_s);
        const QDir deleted(path(u"Zuletzt gelöscht"_s));
        const QStringList kept = deleted.entryList(QDir::Files);
        QCOMPARE(kept.size(), isKept ? 1 : 0);
        if (isKept)
            QCOMPARE(get(u"Zuletzt gelöscht/"_s + kept.first()),
                     QByteArray(file).replace("<title>T", "<title>U"));
        m_library->setBody(u"x"_s, u"noch einmal"_s);
        QCOMPARE(deleted.entryList(QDir::Files), kept);
    }

    void losesNoVersionOfAnotherProgram()
    {
        const QDir logs(m_folder->path());
        const QString id = m_library->createNote(u"Notizen"_s, u"T"_s, u"erste"_s);
        const QString file = path(u"Notizen/"_s + id + u".html"_s);
        const QByteArray prefix = "<title>T</title><p></p>";
        const pid_t other = inProcess([&] { return exchangeFiles(logs, file, prefix); });
        // Until some saves came too late. On a slow machine all of them do, and are refused.
        const auto copies = [&] { return names().count(u"T (ältere Fassung)"_s); };
        int saved = 0;
        int refused = 0;
        for (int number = 0; refused < 20 && (saved < 100 || copies() < 5); ++number) {
            m_library->refresh();
            const QByteArray seen = m_library->body(id).toUtf8();
            if (!seen.startsWith("own"))
                QVERIFY(append(logs.filePath(u"log.seen"_s), "<title>T</title>" + seen + '\n'));
            const QString message = messageOf([&] { m_library->setBody(id, u"own %1"_s.arg(number)); });
            ++(message.isEmpty() ? saved : refused);
        }
        QVERIFY(append(logs.filePath(u"stop"_s), "x"));
        QVERIFY(copies() > 0 || refused > 0);
        QVERIFY(hasEndedWell(other));
        QSet<QByteArray> found =
            lines(bytes(logs.filePath(u"log.out.other"_s))) + lines(bytes(logs.filePath(u"log.seen"_s)));
        for (const QString &folder : {u"Notizen"_s, u"Zuletzt gelöscht"_s, u".."_s}) {
            const QDir kept(path(folder));
            for (const QString &name : kept.entryList(QDir::Files | QDir::Hidden)) {
                if (!name.startsWith("log."_L1))
                    found += bytes(kept.filePath(name)).replace("T (ältere Fassung)", "T");
            }
        }
        const QSet<QByteArray> lost = lines(bytes(logs.filePath(u"log.put.other"_s))) - found;
        if (!lost.isEmpty())
            qWarning() << lost.size() << "are lost, as" << *lost.cbegin();
        QVERIFY(lost.isEmpty());
    }

    void savesNothingThatWasNotChanged()
    {
        // Between reading and saving a text another program wrote, and the user did not.
        put(u"Notizen/x.html"_s, "<title>T</title><p>alt</p>", m_now.addSecs(-9));
        m_library->refresh();
        (void)m_library->body(u"x"_s);
        put(u"Notizen/x.html"_s, "<title>T</title><p>neu</p>", m_now.addSecs(-5));
        m_library->refresh();
        m_library->setBody(u"x"_s, u"<div><b>T</b></div>alt"_s);
        QCOMPARE(get(u"Notizen/x.html"_s), QByteArray("<title>T</title><p>neu</p>"));
        m_library->setBody(u"x"_s, u"<div><b>T</b></div>alt!"_s);
        QCOMPARE(names(), (QStringList{u"T"_s, u"T (ältere Fassung)"_s}));
    }

    void bringsDeletedNotesBack()
    {
        makeFolder(u"Reise"_s);
        const QString id = m_library->createNote(u"Reise"_s, u"Weg"_s, u"x"_s);
        const QString file = u"Reise/"_s + id + u".html"_s;
        const auto before = modified(file);
        m_now = m_now.addSecs(100);
        m_library->deleteNote(id);
        QVERIFY(m_library->isDeleted(id));
        QVERIFY(messageOf([&] { m_library->moveNote(id, u"Nirgends"_s); }).contains(u"Nirgends"));
        QCOMPARE(m_library->moveNote(id, u"Reise"_s), id);
        QVERIFY(!m_library->isDeleted(id));
        QCOMPARE(m_library->folderOf(id), u"Reise"_s);
        QCOMPARE(m_library->body(id), u"x"_s);
        QCOMPARE(modified(file), before);
        QCOMPARE(QDir(path(u"Zuletzt gelöscht"_s)).entryList(QDir::Files).size(), 0);
        // After a restart, and where another note has come to have the name
        m_library->deleteNote(id);
        put(u"Notizen/"_s + id + u".html"_s, "anders");
        NotesLibrary other(path(QString()));
        other.refresh();
        QCOMPARE(other.moveNote(id, u"Reise"_s), id);
        QCOMPARE(other.folderOf(id), u"Reise"_s);
        QVERIFY(!messageOf([&] { other.moveNote(u"nie"_s, u"Reise"_s); }).isEmpty());
    }

    void saysWhatCannotBeRead_data()
    {
        QTest::addColumn<QString>("closed");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("all");
        QTest::addColumn<QString>("folder");
        const QString root = u"Keine Berechtigung: Der Notizordner lässt sich nicht lesen."_s;
        const QString folder = u"Keine Berechtigung: Der Ordner „Notizen“ lässt sich nicht lesen."_s;
        QTest::newRow("the library") << QString() << 0 << root << root;
        QTest::newRow("a folder") << u"/Notizen"_s << 0 << folder << folder;
        QTest::newRow("a folder whose names can be seen") << u"/Notizen"_s << 0400 << folder << folder;
    }

    void saysWhatCannotBeRead()
    {
        QFETCH(const QString, closed);
        QFETCH(const int, mode);
        QFETCH(const QString, all);
        QFETCH(const QString, folder);
        const Unprivileged user(m_folder->path());
        const QString root = m_folder->filePath(u"eigene"_s);
        NotesLibrary library(root);
        library.refresh();
        const QString id = library.createNote(u"Notizen"_s, u"T"_s, u"x"_s);
        const QByteArray place = QFile::encodeName(root + closed);
        const auto reopen = qScopeGuard([&] { ::chmod(place.constData(), 0700); });
        QCOMPARE(::chmod(place.constData(), static_cast<mode_t>(mode)), 0);

        NotesLibrary fresh(root);
        fresh.refresh();
        QCOMPARE(messageOf([&] { (void)fresh.notes(); }), all);
        QCOMPARE(messageOf([&] { (void)fresh.notes(u"Notizen"_s); }), folder);
        QVERIFY(messageOf([&] { (void)fresh.body(id); }).startsWith(u"Keine Berechtigung: "));
        QVERIFY(messageOf([&] {
                    (void)fresh.createNote(u"Notizen"_s, u"N"_s, u"n"_s);
                }).startsWith(u"Keine Berechtigung: "));
        // What is known stays known.
        library.refresh();
        if (!closed.isEmpty())
            QCOMPARE(library.notes(), std::vector<QString>{id});
        QVERIFY(messageOf([&] { library.setBody(id, u"y"_s); }).startsWith(u"Keine Berechtigung: "));

        QCOMPARE(::chmod(place.constData(), 0700), 0);
        for (NotesLibrary *each : {&library, &fresh}) {
            each->refresh();
            QCOMPARE(each->notes(), std::vector<QString>{id});
            QCOMPARE(each->body(id), u"x"_s);
        }
    }

    void keepsNotesThatCannotBeWritten()
    {
        const Unprivileged user(m_folder->path());
        NotesLibrary library(m_folder->filePath(u"eigene"_s));
        library.refresh();
        const QString id = library.createNote(u"Notizen"_s, u"T"_s, u"alt"_s);
        const QString folder = m_folder->filePath(u"eigene/Notizen"_s);
        const QString file = folder + u'/' + id + u".html"_s;
        const QString notSaved = u"Keine Berechtigung: Die Notiz lässt sich nicht speichern."_s;
        QCOMPARE(::chmod(QFile::encodeName(file).constData(), 0444), 0);
        QCOMPARE(messageOf([&] { library.setBody(id, u"neu"_s); }), notSaved);
        QCOMPARE(::chmod(QFile::encodeName(file).constData(), 0644), 0);
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0555), 0);
        QCOMPARE(messageOf([&] { library.setBody(id, u"neu"_s); }), notSaved);
        QVERIFY(messageOf([&] { library.deleteNote(id); }).startsWith(u"Keine Berechtigung: "));
        QCOMPARE(library.body(id), u"alt"_s);
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0755), 0);
        QFile writer(file);
        QVERIFY(writer.open(QIODevice::ReadWrite));
        QCOMPARE(messageOf([&] { library.setBody(id, u"neu"_s); }),
                 u"Von einem anderen Programm benutzt: Die Notiz lässt sich nicht speichern."_s);
        writer.close();
        library.setBody(id, u"neu"_s);
        QCOMPARE(library.body(id), u"neu"_s);
        QCOMPARE(QDir(m_folder->filePath(u"eigene"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 (QStringList{u"Notizen"_s, u"Zuletzt gelöscht"_s}));
    }

    void saysWhenNoFileCanBeOpened()
    {
        put(u"Notizen/x.html"_s, "<title>Titel</title>x");
        {
            const ResourceLimit limit(RLIMIT_NOFILE, 0);
            m_library->refresh();
            QVERIFY(messageOf([&] { (void)m_library->notes(); }).startsWith(u"Zu viele offene Dateien: "));
        }
        QCOMPARE(m_library->notes().size(), 1U);
        {
            const ResourceLimit limit(RLIMIT_NOFILE, 0);
            QCOMPARE(names(), QStringList{u"x"_s});
            QVERIFY(messageOf([&] {
                        m_library->setBody(u"x"_s, u"y"_s);
                    }).startsWith(u"Zu viele offene Dateien: "));
            QVERIFY(messageOf([&] {
                        (void)m_library->createNote(u"Notizen"_s, u"N"_s, u"n"_s);
                    }).startsWith(u"Zu viele offene Dateien: "));
        }
        // The name that stood for the unknown one is not taken for a new one.
        m_library->setBody(u"x"_s, u"<div><b>x</b></div>y"_s);
        QCOMPARE(names(), QStringList{u"Titel"_s});
        QCOMPARE(m_library->body(u"x"_s), u"y"_s);
    }

    void keepsDeletedNotesForThirtyDays()
    {
        put(u"Zuletzt gelöscht/alt.html"_s, "<p>vor Jahren geändert</p>", m_now.addYears(-3));
        const QString id = m_library->createNote(u"Notizen"_s, u"Weg"_s, u"x"_s);
        put(u"Zuletzt gelöscht/"_s + id + u".html"_s, "<p>schon da</p>", m_now);
        m_library->deleteNote(id);
        QVERIFY(names().isEmpty());
        m_library->refresh();
        QVERIFY(m_library->notes().empty());
        QCOMPARE(m_library->folders(), QStringList{u"Notizen"_s});
        const QDir deleted(path(u"Zuletzt gelöscht"_s));
        // Moved there by hand just now; not to be taken for deleted years ago.
        QCOMPARE(deleted.entryList(QDir::Files).size(), 3);
        m_now = m_now.addDays(29);
        m_library->refresh();
        QCOMPARE(deleted.entryList(QDir::Files).size(), 3);
        m_now = m_now.addDays(2);
        m_library->refresh();
        QCOMPARE(deleted.entryList(QDir::Files).size(), 0);
    }

    void writesIntoForeignDirectories()
    {
        put(u"50% Rabatt/a.html"_s, "x");
        m_library->refresh();
        const QString id = m_library->createNote(u"50% Rabatt"_s, u"B"_s, u"b"_s);
        QVERIFY(QFile::exists(path(u"50% Rabatt/"_s + id + u".html"_s)));
    }

    void saysWhenTheLibraryIsNoFolder()
    {
        const QString root = m_folder->filePath(u"datei"_s);
        QFile file(root);
        QVERIFY(file.open(QIODevice::WriteOnly));
        NotesLibrary library(root);
        const QString message = messageOf([&] {
            library.refresh();
            (void)library.notes();
        });
        QVERIFY2(message.startsWith(u"Kein Ordner: "), qPrintable(message));
        NotesLibrary below(root + u"/notes"_s);
        QVERIFY(!messageOf([&] { below.refresh(); }).isEmpty());
    }

    void saysWhenTheLibraryHasVanished()
    {
        const QString id = m_library->createNote(u"Notizen"_s, u"T"_s, u"x"_s);
        QVERIFY(QDir().rename(path(QString()), m_folder->filePath(u"anderswo"_s)));
        QVERIFY(messageOf([&] { m_library->refresh(); }).startsWith(u"Nicht vorhanden: "));
        QVERIFY(!messageOf([&] { m_library->setBody(id, u"y"_s); }).isEmpty());
        QVERIFY(!QFileInfo::exists(path(QString())));
        QVERIFY(QDir().rename(m_folder->filePath(u"anderswo"_s), path(QString())));
        m_library->refresh();
        QCOMPARE(m_library->body(id), u"x"_s);
    }

    void keepsTheOldTextWhenWritingFails()
    {
        const QString id = m_library->createNote(u"Notizen"_s, u"T"_s, u"alt"_s);
        const QByteArray before = get(u"Notizen/"_s + id + u".html"_s);
        {
            // As on a full disk: files can't grow beyond this.
            const ResourceLimit limit(RLIMIT_FSIZE, 16384);
            const QString large(100'000, u'x');
            QCOMPARE(messageOf([&] { m_library->setBody(id, large); }),
                     u"Zu groß: Die Notiz lässt sich nicht speichern."_s);
            QVERIFY(!messageOf([&] { m_library->createNote(u"Notizen"_s, u"N"_s, large); }).isEmpty());
        }
        QCOMPARE(get(u"Notizen/"_s + id + u".html"_s), before);
        QCOMPARE(QDir(path(u"Notizen"_s)).entryList(QDir::Files).size(), 1);
        m_library->refresh();
        m_library->setBody(id, u"neu"_s);
        QCOMPARE(m_library->body(id), u"neu"_s);
    }

    void saysWhenAFolderHasVanished()
    {
        makeFolder(u"Reise"_s);
        QVERIFY(m_library->folders().contains(u"Reise"_s));
        QVERIFY(QDir(path(u"Reise"_s)).removeRecursively());
        QVERIFY(!messageOf([&] { m_library->createNote(u"Reise"_s, u"N"_s, u"n"_s); }).isEmpty());
    }
};

RANDBLATT_TEST_MAIN(NotesLibraryTest, QCoreApplication)
#include "tst_noteslibrary.moc"
