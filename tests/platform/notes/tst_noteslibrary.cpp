#include "platform/notes/NotesLibrary.h"
#include "platform/notes/NotesLibraryError.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// Lets no file grow beyond a size, for as long as it lives.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{.rlim_cur = size, .rlim_max = m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_before{};
};

} // namespace

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
        m_library->createFolder(u"x/Y"_s);
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
        const auto order = m_library->modified(id);
        const QByteArray before = get(u"Notizen/"_s + id + u".html"_s);
        m_now = m_now.addSecs(60);
        m_library->setBody(id, u"<div><b>T</b></div>"_s + m_library->body(id));
        QCOMPARE(get(u"Notizen/"_s + id + u".html"_s), before);
        QCOMPARE(m_library->modified(id), order);
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
        m_library->setName(id, u"U"_s);
        m_library->setBody(id, u"immer noch meins"_s);
        m_library->refresh();
        QCOMPARE(m_library->notes().size(), 2U);
    }

    void keepsDeletedNotesForThirtyDays()
    {
        put(u"Zuletzt gelöscht/alt.html"_s, "<p>vor Jahren geändert</p>", m_now.addYears(-3));
        const QString id = m_library->createNote(u"Notizen"_s, u"Weg"_s, u"x"_s);
        put(u"Zuletzt gelöscht/"_s + id + u".html"_s, "<p>schon da</p>", m_now);
        m_library->deleteNote(id);
        QVERIFY(!m_library->contains(id));
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

    void refusesFoldersThatCannotBe()
    {
        for (const auto &name : {u"Notizen"_s, NotesLibrary::deletedFolder(), QString(), QString(300, u'x')})
            QVERIFY2(!messageOf([&] { m_library->createFolder(name); }).isEmpty(), qPrintable(name));
    }

    void saysWhenTheLibraryIsNoFolder()
    {
        const QString root = m_folder->filePath(u"datei"_s);
        QFile file(root);
        QVERIFY(file.open(QIODevice::WriteOnly));
        NotesLibrary library(root);
        const QString message = messageOf([&] { library.refresh(); });
        QVERIFY2(message.contains(u"kein Ordner"), qPrintable(message));
        NotesLibrary below(root + u"/notes"_s);
        QVERIFY(!messageOf([&] { below.refresh(); }).isEmpty());
    }

    void saysWhenTheLibraryHasVanished()
    {
        const QString id = m_library->createNote(u"Notizen"_s, u"T"_s, u"x"_s);
        QVERIFY(QDir().rename(path(QString()), m_folder->filePath(u"anderswo"_s)));
        QVERIFY(messageOf([&] { m_library->refresh(); }).contains(u"nicht mehr da"));
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
            const FileSizeLimit limit(16384);
            const QString large(100'000, u'x');
            QVERIFY(messageOf([&] { m_library->setBody(id, large); }).contains(id));
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
        m_library->createFolder(u"Reise"_s);
        QVERIFY(m_library->folders().contains(u"Reise"_s));
        QVERIFY(QDir(path(u"Reise"_s)).removeRecursively());
        QVERIFY(!messageOf([&] { m_library->createNote(u"Reise"_s, u"N"_s, u"n"_s); }).isEmpty());
    }
};

RANDBLATT_TEST_MAIN(NotesLibraryTest, QCoreApplication)
#include "tst_noteslibrary.moc"
