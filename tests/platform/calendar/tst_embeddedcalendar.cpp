#include "CalendarContract.h"
#include "platform/calendar/CalendarFile.h"
#include "platform/calendar/DesktopCalendarStore.h"
#include "platform/calendar/EmbeddedCalendar.h"
#include "support/TestEnvironment.h"
#include "support/Unprivileged.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

/// How another program changes the file.
enum class Writer { renames, writesInto, isLikeUs };

class EmbeddedCalendarTest : public CalendarContract
{
    Q_OBJECT

protected:
    std::unique_ptr<CalendarStore> makeStore(const QByteArray &ics) override
    {
        m_folder = std::make_unique<QTemporaryDir>();
        write(ics);
        std::vector<std::unique_ptr<CalendarBackend>> backends;
        backends.push_back(std::make_unique<EmbeddedCalendar>(path()));
        return std::make_unique<DesktopCalendarStore>(std::move(backends));
    }
    void addByOthers(const QByteArray &ics) override
    {
        QFile::remove(path());
        write(ics);
    }
    void changeByOthers(const SavedEvent &event, const QByteArray &property) override
    {
        QByteArray text = written();
        const QByteArray uid = "UID:" + event.uid.toUtf8() + "\r\n";
        QVERIFY(text.contains(uid));
        write(text.replace(uid, QByteArray(uid + property + "\r\n")));
    }

private:
    [[nodiscard]] QString path() const { return m_folder->filePath(u"quillbar/calendar.ics"_s); }
    void write(const QByteArray &bytes) const
    {
        QDir().mkpath(m_folder->filePath(u"quillbar"_s));
        QFile file(path());
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(bytes);
    }
    [[nodiscard]] QByteArray written() const
    {
        QFile file(path());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("(fehlt)");
    }
    [[nodiscard]] QStringList files() const
    {
        return QDir(m_folder->filePath(u"quillbar"_s)).entryList(QDir::Files, QDir::Name);
    }
    /// The sample's day, as the store sees it.
    [[nodiscard]] static CalendarStore::Events fetchDay(CalendarStore &store)
    {
        return fetch(store, QDate(2026, 10, 26), 1);
    }
    [[nodiscard]] static NewCalendarEvent sample()
    {
        const QDateTime start(QDate(2026, 10, 26), QTime(9, 0));
        return {u"Neu"_s, start, start.addSecs(3600)};
    }

    /// Puts the file elsewhere, with a link in its place.
    void moveBehindLink() const
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"Synchron"_s));
        const QString target = m_folder->filePath(u"Synchron/termine.ics"_s);
        QVERIFY(QFile::rename(path(), target));
        QVERIFY(QFile::link(target, path()));
    }

    static void replaceByOthers(const QString &path)
    {
        QFile file(path + u".neu"_s);
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(calendar({}));
        file.close();
        QVERIFY(::rename(QFile::encodeName(file.fileName()).constData(),
                         QFile::encodeName(path).constData()) == 0);
    }

    /// Another program that adds event after event to what it finds, without looking again, and notes them.
    /// If its last one is not there it reads a second time, as who watches the file, and then goes on
    /// without.
    [[nodiscard]] int addUntilStopped(bool inPlace) const
    {
        const QByteArray target = QFile::encodeName(path());
        const QByteArray beside = target + ".other";
        QByteArray last;
        int looks = 0;
        // An end, for with every event the file takes longer to read, and this is the quicker program.
        for (int added = 0; added < 200 && !QFile::exists(m_folder->filePath(u"stop"_s));) {
            const QByteArray uid = "other-" + QByteArray::number(added);
            QByteArray text = written();
            const qsizetype end = text.lastIndexOf("END:VCALENDAR");
            if (end < 0 || (!text.contains(last) && ++looks < 1000)) {
                ::usleep(100);
                continue;
            }
            looks = 0;
            ++added;
            last = "UID:" + uid + "\r\n";
            text.insert(end, event(uid, "SUMMARY:Ihrer\nDTSTART:20261026T080000Z"));
            QFile file(QFile::decodeName(inPlace ? target : beside));
            if (!file.open(inPlace ? QFile::ReadWrite | QFile::ExistingOnly
                                   : QFile::WriteOnly | QFile::Truncate) ||
                file.write(text) != text.size() || !file.flush() || ::fsync(file.handle()) != 0)
                return 1;
            file.close();
            if (!inPlace && ::rename(beside.constData(), target.constData()) != 0)
                return 1;
            QFile log(m_folder->filePath(u"log"_s));
            if (!log.open(QFile::WriteOnly | QFile::Append) || log.write(uid + '\n') < 0)
                return 1;
            log.close();
            // Who writes into the file has it open most of the time: it lets others have a turn.
            const auto seen = fileStamp(path());
            for (int look = 0; inPlace && look < 20 && fileStamp(path()) == seen; ++look)
                ::usleep(1000);
        }
        return 0;
    }

    /// A second program of this kind.
    [[nodiscard]] int saveUntilStopped() const
    {
        CalendarFile file(path());
        while (!QFile::exists(m_folder->filePath(u"stop"_s))) {
            const auto saved = file.append(sample());
            QFile log(m_folder->filePath(u"log"_s));
            if (saved &&
                (!log.open(QFile::WriteOnly | QFile::Append) || log.write(saved->uid.toUtf8() + '\n') < 0))
                return 1;
        }
        return 0;
    }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void leavesEverythingElseInTheFileAsItIs_data()
    {
        QTest::addColumn<QByteArray>("newline");
        QTest::newRow("standard line breaks") << QByteArray("\r\n");
        QTest::newRow("plain line breaks") << QByteArray("\n");
    }

    void leavesEverythingElseInTheFileAsItIs()
    {
        QFETCH(QByteArray, newline);
        QByteArray before = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-OURS;X-P=\"a:b\":1\r\n" +
                            event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z\nX-UNKNOWN:ü\nX-LONG:1\n 2\n"
                                       "BEGIN:VALARM\nACTION:DISPLAY\nTRIGGER:-PT5M\nEND:VALARM\nNONSENSE") +
                            "BEGIN:VTODO\r\nUID:t\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
        before.replace("\r\n", newline);
        const auto store = makeStore(before);
        QVERIFY(access(*store));
        QVERIFY(save(*store, sample()));
        const QByteArray after = written();
        const QByteArray end = "END:VCALENDAR" + newline;
        QVERIFY(after.endsWith(end));
        QVERIFY(after.startsWith(before.chopped(end.size())));
        QCOMPARE(after.contains("\r\n"), newline == "\r\n");
        QCOMPARE(fetch(*store, QDate(2026, 10, 26), 1)->size(), 2);
        QCOMPARE(files(), QStringList{u"calendar.ics"_s});
    }

    void startsAFileThatOnlyTheUserReads()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        CalendarFile file(path());
        QVERIFY(file.open());
        QCOMPARE(files(), QStringList());
        QVERIFY(file.append(sample()));
        const auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QCOMPARE(QFile::permissions(path()), owner);
        QCOMPARE(QFile::permissions(m_folder->filePath(u"quillbar"_s)),
                 owner | QFile::ExeOwner | QFile::ExeUser);
        QCOMPARE(file.events(sample().start, sample().end)->size(), 1);
    }

    void leavesAFileThatIsNoCalendarAlone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isLinked");
        QTest::newRow("something else") << QByteArray("Milch, Brot und Kaffee\n") << false;
        QTest::newRow("binary") << QByteArray("\0\1\2\3BEGIN:", 10) << false;
        const QByteArray whole = calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z"));
        QTest::newRow("half written") << whole.chopped(30) << false;
        QTest::newRow("half written behind a link") << whole.chopped(30) << true;
        QTest::newRow("the end of another text left") << whole + "SUMMARY:Rest\r\nEND:VCALENDAR\r\n" << false;
        QTest::newRow("another component") << QByteArray("BEGIN:VCARD\r\nFN:X\r\nEND:VCARD\r\n") << false;
    }

    void leavesAFileThatIsNoCalendarAlone()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isLinked);
        const auto store = makeStore(bytes);
        if (isLinked)
            moveBehindLink();
        QVERIFY(access(*store));
        for (int round = 0; round < 2; ++round) {
            const auto events = fetchDay(*store);
            QVERIFY(!events);
            QCOMPARE(events.reason(), u"Die Kalenderdatei ist unvollständig oder beschädigt."_s);
            const auto saved = save(*store, sample());
            QVERIFY(!saved);
            QCOMPARE(saved.reason(), events.reason());
        }
        QCOMPARE(written(), bytes);
        QCOMPARE(files(), QStringList{u"calendar.ics"_s});
        QCOMPARE(QFileInfo(path()).isSymLink(), isLinked);

        // Once it is whole it is read, without being asked.
        QSignalSpy changes(store.get(), &CalendarStore::changed);
        write(calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z")));
        QTRY_VERIFY(!changes.isEmpty());
        QTRY_VERIFY(fetchDay(*store));
        QVERIFY(save(*store, sample()));
        QCOMPARE(fetchDay(*store)->size(), 2);
        QCOMPARE(QFileInfo(path()).isSymLink(), isLinked);
    }

    void readsOverAControlCharacterAtTheEnd_data()
    {
        QTest::addColumn<QByteArray>("end");
        QTest::newRow("an end of text") << QByteArray("\x1a");
        QTest::newRow("a null") << QByteArray("\0", 1);
        QTest::newRow("a block of nulls") << QByteArray(4096, '\0');
    }

    void readsOverAControlCharacterAtTheEnd()
    {
        QFETCH(QByteArray, end);
        const auto store = makeStore(calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z")) + end);
        QVERIFY(access(*store));
        QCOMPARE(fetchDay(*store)->size(), 1);
        QVERIFY(save(*store, sample()));
        QCOMPARE(fetchDay(*store)->size(), 2);
        QVERIFY(written().endsWith(QByteArray("END:VCALENDAR\r\n" + end)));
    }

    void readsNothingButRegularFilesOfABearableSize_data()
    {
        QTest::addColumn<std::function<bool(const QByteArray &)>>("make");
        QTest::addColumn<QString>("reason");
        using Make = std::function<bool(const QByteArray &)>;
        QTest::newRow("a pipe") << Make([](const QByteArray &path) {
            return ::mkfifo(path.constData(), 0600) == 0;
        }) << u"Kalenderdatei: Keine gewöhnliche Datei."_s;
        QTest::newRow("a device without end")
            << Make([](const QByteArray &path) { return ::symlink("/dev/zero", path.constData()) == 0; })
            << u"Kalenderdatei: Keine gewöhnliche Datei."_s;
        QTest::newRow("a folder") << Make([](const QByteArray &path) {
            return ::mkdir(path.constData(), 0700) == 0;
        }) << u"Kalenderdatei: Ein Ordner statt einer Datei."_s;
        QTest::newRow("links in a circle")
            << Make([](const QByteArray &path) { return ::symlink("calendar.ics", path.constData()) == 0; })
            << u"Kalenderdatei: Verknüpfungen im Kreis."_s;
        QTest::newRow("a very large file") << Make([](const QByteArray &path) {
            const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
            const bool isMade = ::ftruncate(file, 65LL * 1024 * 1024) == 0;
            return ::close(file) == 0 && isMade;
        }) << u"Die Kalenderdatei ist größer als 64 MB."_s;
        QTest::newRow("a file of somebody else's") << Make([](const QByteArray &path) {
            return ::close(::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0)) == 0;
        }) << u"Kalenderdatei: Keine Berechtigung."_s;
    }

    void readsNothingButRegularFilesOfABearableSize()
    {
        QFETCH(std::function<bool(const QByteArray &)>, make);
        QFETCH(QString, reason);
        const auto store = makeStore({});
        QVERIFY(QDir(QFileInfo(path()).absolutePath()).removeRecursively());
        const Unprivileged user(m_folder->path());
        QVERIFY(QDir(m_folder->path()).mkdir(u"quillbar"_s));
        QVERIFY(make(QFile::encodeName(path())));
        QVERIFY(access(*store));
        const auto events = fetchDay(*store);
        QVERIFY(!events);
        QCOMPARE(events.reason(), reason);
        const auto saved = save(*store, sample());
        QVERIFY(!saved);
        QCOMPARE(saved.reason(), reason);
        QCOMPARE(QDir(QFileInfo(path()).absolutePath())
                     .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
                 QStringList{u"calendar.ics"_s});
    }

    void followsALink_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("to a file") << true;
        QTest::newRow("to where no file is yet") << false;
    }

    void followsALink()
    {
        QFETCH(bool, exists);
        const auto store = makeStore(calendar({}));
        moveBehindLink();
        if (!exists)
            QFile::remove(QFileInfo(path()).symLinkTarget());
        QVERIFY(access(*store));
        QVERIFY(save(*store, sample()));
        QVERIFY(QFileInfo(path()).isSymLink());
        QCOMPARE(fetchDay(*store)->size(), 1);
        // Another program that replaces the file behind the link is seen as well.
        QSignalSpy changes(store.get(), &CalendarStore::changed);
        QTRY_VERIFY((changes.clear(), replaceByOthers(QFileInfo(path()).symLinkTarget()), changes.wait(200)));
        QTRY_COMPARE(fetchDay(*store)->size(), 0);
    }

    void losesNoVersionOfAnotherProgram_data()
    {
        QTest::addColumn<Writer>("writer");
        QTest::newRow("that renames whole files") << Writer::renames;
        QTest::newRow("that writes into the file") << Writer::writesInto;
        QTest::newRow("like this one") << Writer::isLikeUs;
    }

    void losesNoVersionOfAnotherProgram()
    {
        QFETCH(Writer, writer);
        m_folder = std::make_unique<QTemporaryDir>();
        write(calendar({}));
        const pid_t process = ::fork();
        if (process == 0)
            ::_exit(writer == Writer::isLikeUs ? saveUntilStopped()
                                               : addUntilStopped(writer == Writer::writesInto));
        CalendarFile file(path());
        QByteArrayList uids;
        // A machine with much else to do lets the others win for long: then few of ours come through.
        constexpr qsizetype enough = 1;
        QDeadlineTimer end(30'000);
        for (int number = 0; (number < 60 || uids.size() < enough) && !end.hasExpired(); ++number) {
            if (const auto saved = file.append(sample()))
                uids.append(saved->uid.toUtf8());
        }
        QFile stop(m_folder->filePath(u"stop"_s));
        QVERIFY(stop.open(QFile::WriteOnly));
        int status = 0;
        QCOMPARE(::waitpid(process, &status, 0), process);
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        QVERIFY2(uids.size() >= enough, qPrintable(QString::number(uids.size())));

        QFile log(m_folder->filePath(u"log"_s));
        QVERIFY(log.open(QFile::ReadOnly));
        const QByteArrayList theirs = log.readAll().chopped(1).split('\n');
        QByteArray everything;
        for (const QString &name : files()) {
            QFile version(m_folder->filePath(u"quillbar/"_s + name));
            QVERIFY(version.open(QFile::ReadOnly));
            everything += version.readAll();
        }
        int lost = 0;
        // What the others do that do not look again is not in our hands.
        for (const QByteArray &uid : writer == Writer::isLikeUs ? theirs + uids : theirs)
            lost += everything.contains(QByteArray("UID:" + uid + "\r\n")) ? 0 : 1;
        qInfo("%d saved, %d of %d lost", static_cast<int>(uids.size()), lost,
              static_cast<int>(theirs.size()));
        QCOMPARE(lost, 0);
        QVERIFY(theirs.size() > 10);
        QVERIFY(CalendarIndex::isCalendar(written()));
    }

    void takesAnEmptyFileForAnEmptyCalendar()
    {
        const auto store = makeStore("\n");
        QVERIFY(access(*store));
        QCOMPARE(fetch(*store, QDate(2026, 10, 26), 1)->size(), 0);
        QVERIFY(save(*store, sample()));
        QCOMPARE(files(), QStringList{u"calendar.ics"_s});
    }

    void keepsTheOldFileWhenAWriteFails()
    {
        const QByteArray before = calendar(event("a", "SUMMARY:Alt\nDTSTART:20261026T080000Z"));
        const auto store = makeStore(before);
        QVERIFY(access(*store));
        // A folder in which nothing can be made; the superuser may write anywhere else.
        QVERIFY(QFile::rename(m_folder->filePath(u"quillbar"_s), m_folder->filePath(u"real"_s)));
        QVERIFY(!save(*store, sample()));
        QVERIFY(QFile::rename(m_folder->filePath(u"real"_s), m_folder->filePath(u"quillbar"_s)));
        QCOMPARE(written(), before);
        QCOMPARE(fetch(*store, QDate(2026, 10, 26), 1)->size(), 1);
    }

    void showsNonsenseAsWellAsItGoes()
    {
        const auto store = makeStore(calendar(
            event("1", "SUMMARY:Rückwärts\nDTSTART:20261026T100000Z\nDTEND:20261026T080000Z") +
            event("2", "SUMMARY:Gemischt\nDTSTART;VALUE=DATE:20261027\nDTEND:20261029T080000Z") +
            event("3", "SUMMARY:Ohne Anfang") + event("4", "SUMMARY:Dreißigster\nDTSTART:20260230T080000Z") +
            event("5", "SUMMARY:Zweimal\nDTSTART:20261028T080000Z") +
            event("5", "SUMMARY:Zweimal\nDTSTART:20261028T080000Z") +
            event("6", "SUMMARY:Nie\nDTSTART:20261001T080000Z\nRRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30") +
            event("7", "SUMMARY:Abgesagt\nSTATUS:CANCELLED\nDTSTART:20261028T080000Z") +
            event("9", "SUMMARY:Endlos\nDTSTART:20270101T080000Z\nDURATION:P4000000000W\nRRULE:FREQ=DAILY") +
            event("10", "SUMMARY:Zusatz ohne Sinn\nDTSTART:20261030T080000Z\n"
                        "RDATE:99999999T999999Z,20261301T080000Z,20261031T080000Z\n"
                        "RDATE;VALUE=PERIOD:99990230T080000Z/PT1H") +
            event("8", "SUMMARY:Regel ohne Sinn\nDTSTART:20261029T080000Z\nRRULE:FREQ=MANCHMAL")));
        QVERIFY(access(*store));
        const auto events = fetch(*store, QDate(2026, 10, 26), 7);
        QCOMPARE(lines(events),
                 (QStringList{u"2026-10-26 11:00 – 2026-10-26 11:00 Rückwärts"_s, u"2026-10-27 +2 Gemischt"_s,
                              u"2026-10-28 09:00 – 2026-10-28 09:00 Zweimal"_s,
                              u"2026-10-28 09:00 – 2026-10-28 09:00 Zweimal"_s,
                              u"2026-10-29 09:00 – 2026-10-29 09:00 Regel ohne Sinn"_s,
                              u"2026-10-30 09:00 – 2026-10-30 09:00 Zusatz ohne Sinn"_s,
                              u"2026-10-31 09:00 – 2026-10-31 09:00 Zusatz ohne Sinn"_s}));
        QVERIFY(events->at(2).id != events->at(3).id);
    }

    void replacesOccurrences_data()
    {
        QTest::addColumn<QByteArray>("components");
        QTest::addColumn<QStringList>("expected");
        const QByteArray berlin = ";TZID=Europe/Berlin:";
        const QByteArray series = event("x", "SUMMARY:Kurs\nDTSTART" + berlin + "20261026T080000\nDTEND" +
                                                 berlin + "20261026T090000\nRRULE:FREQ=DAILY;COUNT=4");
        const auto moved = [&](const QByteArray &recurrenceId, const QByteArray &more,
                               const QByteArray &time) {
            return event("x", "RECURRENCE-ID" + recurrenceId + "\n" + more + "DTSTART" + berlin + time +
                                  "\nDURATION:PT30M");
        };
        const QStringList plain{
            u"2026-10-26 08:00 – 2026-10-26 09:00 Kurs"_s, u"2026-10-27 08:00 – 2026-10-27 09:00 Kurs"_s,
            u"2026-10-28 08:00 – 2026-10-28 09:00 Kurs"_s, u"2026-10-29 08:00 – 2026-10-29 09:00 Kurs"_s};
        auto second = plain;
        second[1] = u"2026-10-27 10:00 – 2026-10-27 10:30 Neu"_s;
        QTest::newRow("named without a zone")
            << series + moved(":20261027T080000", "SUMMARY:Neu\n", "20261027T100000") << second;
        QTest::newRow("named in UTC")
            << series + moved(":20261027T070000Z", "SUMMARY:Neu\n", "20261027T100000") << second;
        QTest::newRow("named by its day")
            << series + moved(";VALUE=DATE:20261027", "SUMMARY:Neu\n", "20261027T100000") << second;
        const QByteArray old =
            moved(berlin + "20261027T080000", "SEQUENCE:1\nSUMMARY:Alt\n", "20261027T150000");
        const QByteArray last =
            moved(berlin + "20261027T080000", "SEQUENCE:2\nSUMMARY:Neu\n", "20261027T100000");
        QTest::newRow("twice, the old version first") << series + old + last << second;
        QTest::newRow("twice, the old version last") << last + old + series << second;
        auto third = plain;
        third.removeAt(1);
        QTest::newRow("and cancelled")
            << series + old +
                   moved(berlin + "20261027T080000", "SEQUENCE:2\nSTATUS:CANCELLED\n", "20261027T150000")
            << third;
        QTest::newRow("the whole series in a later version")
            << series +
                   event("x", "SEQUENCE:1\nSUMMARY:Neu\nDTSTART" + berlin + "20261027T100000\nDURATION:PT30M")
            << QStringList{second.at(1)};
        const QByteArray future = ";RANGE=THISANDFUTURE" + berlin;
        QTest::newRow("this one and all that follow")
            << series + moved(future + "20261027T080000", "SUMMARY:Neu\n", "20261027T100000")
            << QStringList{plain.at(0), u"2026-10-27 10:00 – 2026-10-27 10:30 Neu"_s,
                           u"2026-10-28 10:00 – 2026-10-28 10:30 Neu"_s,
                           u"2026-10-29 10:00 – 2026-10-29 10:30 Neu"_s};
        QTest::newRow("all that follow, and one of those again")
            << series + moved(future + "20261027T080000", "SUMMARY:Neu\n", "20261026T233000") +
                   moved(berlin + "20261028T080000", "SUMMARY:Anders\n", "20261028T120000")
            << QStringList{plain.at(0), u"2026-10-26 23:30 – 2026-10-27 00:00 Neu"_s,
                           u"2026-10-28 12:00 – 2026-10-28 12:30 Anders"_s,
                           u"2026-10-28 23:30 – 2026-10-29 00:00 Neu"_s};
        QTest::newRow("an end to all that follow")
            << series + moved(future + "20261028T080000", "STATUS:CANCELLED\n", "20261028T080000")
            << plain.first(2);
    }

    void replacesOccurrences()
    {
        QFETCH(QByteArray, components);
        QFETCH(QStringList, expected);
        const auto index = CalendarIndex::parse(calendar(components));
        QVERIFY(index);
        const QDate first(2026, 10, 26);
        QCOMPARE(lines(index->events(first.startOfDay(), first.addDays(7).startOfDay())), expected);
    }

    void knowsZonesByTheirOtherNames_data()
    {
        QTest::addColumn<QTime>("expected");
        QTest::newRow("Etc/GMT-1") << QTime(13, 0);
        QTest::newRow("Etc/UTC") << QTime(14, 0);
        QTest::newRow("US/Eastern") << QTime(18, 0);
        QTest::newRow("Eastern Standard Time") << QTime(18, 0);
        QTest::newRow("/freeassociation.sourceforge.net/America/New_York") << QTime(18, 0);
        QTest::newRow("/etc/../../tmp/zone") << QTime(12, 0);
        QTest::newRow("Haus") << QTime(12, 0);
    }

    void knowsZonesByTheirOtherNames()
    {
        QFETCH(QTime, expected);
        const auto index = CalendarIndex::parse(
            calendar(event("z", QByteArray("DTSTART;TZID=") + QTest::currentDataTag() + ":20260715T120000")));
        QVERIFY(index);
        const QDate day(2026, 7, 15);
        const auto events = index->events(day.startOfDay(), day.addDays(1).startOfDay());
        QCOMPARE(events.size(), 1);
        QCOMPARE(events.first().start.time(), expected);
    }

    void readsOldEncodingsAndColours()
    {
        const auto index = CalendarIndex::parse(
            "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Gr\xfcn\r\nX-APPLE-CALENDAR-COLOR:#1BADF8FF\r\n" +
            event("1", "SUMMARY:Gr\xfc\xdf\x65 aus K\xf6ln\nDTSTART;VALUE=DATE:20261026") +
            event("2", "SUMMARY:Grüße\nDTSTART;VALUE=DATE:20261027") + "END:VCALENDAR\r\n");
        QVERIFY(index);
        const auto events = index->events(sample().start, sample().start.addDays(2));
        QCOMPARE(lines(events), (QStringList{u"2026-10-26 +1 Grüße aus Köln"_s, u"2026-10-27 +1 Grüße"_s}));
        QCOMPARE(events.first().calendarColor, QColor(0x1b, 0xad, 0xf8));
        QCOMPARE(events.first().calendarName, u"Grün"_s);
    }

    void tellsTheDetailsOfAnEvent()
    {
        const auto store = makeStore(calendar(
            event("1",
                  "SUMMARY:Runde\nDTSTART:20261026T080000Z\nLOCATION:Raum 5\\, Hof\n"
                  "DESCRIPTION:Unterlagen: https://example.org/a?b=1.\\nDort: https://meet.example.org/x\n"
                  "ORGANIZER;CN=\"Sommer, Mira\":mailto:mira@example.org\n"
                  "ATTENDEE;PARTSTAT=ACCEPTED;CN=Jürgen:mailto:j@example.org\n"
                  "ATTENDEE;PARTSTAT=NEEDS-ACTION:mailto:mira@example.com\n"
                  "CONFERENCE;VALUE=URI;FEATURE=VIDEO:https://konferenz.example.org/5\n"
                  "URL:javascript:alert(1)\nBEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:Wecker\nEND:VALARM") +
            event("2", "SUMMARY:Nichts\nDTSTART:20261026T090000Z") +
            event("3", "SUMMARY:Markup\nDTSTART:20261026T100000Z\n"
                       "DESCRIPTION:<p>Mit <b>Kuchen</b></p><a href=\"https://example.org/k\">hier</a>")));
        QVERIFY(access(*store));
        const auto events = fetchDay(*store);
        QVERIFY(events && events->size() == 3);
        const auto details = events->at(0).details;
        QVERIFY(details);
        QCOMPARE(details->place, u"Raum 5, Hof"_s);
        QCOMPARE(details->description,
                 u"Unterlagen: https://example.org/a?b=1.\nDort: https://meet.example.org/x"_s);
        QCOMPARE(details->attendees,
                 (QStringList{u"Sommer, Mira (lädt ein)"_s, u"Jürgen (zugesagt)"_s, u"mira@example.com"_s}));
        QCOMPARE(details->links,
                 (QList<QUrl>{QUrl(u"https://konferenz.example.org/5"_s),
                              QUrl(u"https://meet.example.org/x"_s), QUrl(u"https://example.org/a?b=1"_s)}));
        QCOMPARE(details->meetings, 2);
        QVERIFY(!events->at(1).details);
        QVERIFY(events->at(2).details);
        QVERIFY(events->at(2).details->description.startsWith(u"Mit Kuchen"_s));
        QCOMPARE(events->at(2).details->links, QList<QUrl>{QUrl(u"https://example.org/k"_s)});
        // What others write later is seen, too.
        changeByOthers({{}, u"2"_s, {}}, "LOCATION:Garten");
        QTRY_VERIFY(fetchDay(*store)->at(1).details);
    }

    void savesAWholeDay()
    {
        const auto store = makeStore(calendar({}));
        QVERIFY(access(*store));
        const QDate day(2026, 10, 26);
        QVERIFY(save(*store, {u"Messe"_s, day.startOfDay(), day.addDays(1).startOfDay(), u"m"_s, true}));
        QVERIFY2(written().contains("DTSTART;VALUE=DATE:20261026\r\nDTEND;VALUE=DATE:20261027\r\n"),
                 written());
        QCOMPARE(lines(fetchDay(*store)), QStringList{u"2026-10-26 +1 Messe"_s});
    }

    void givesUpARuleThatTakesTooLong()
    {
        // Legal, and nobody can skip over what has to be counted.
        const auto index = CalendarIndex::parse(
            calendar(event("s", "SUMMARY:Zähler\nDTSTART:19700101T000000Z\n"
                                "RRULE:FREQ=SECONDLY;BYSECOND=0,1,2,3,4,5;COUNT=2000000000") +
                     event("t", "SUMMARY:Danach\nDTSTART:20261026T080000Z")));
        QVERIFY(index);
        QTest::ignoreMessage(QtWarningMsg, "Terminregel aufgegeben, nur der erste Termin wird gezeigt: s");
        const QDate day(2026, 10, 26);
        QElapsedTimer timer;
        timer.start();
        for (int round = 0; round < 3; ++round)
            QCOMPARE(index->events(day.startOfDay(), day.addDays(7).startOfDay()).size(), 1);
        QVERIFY2(timer.elapsed() < 30'000, qPrintable(QString::number(timer.elapsed())));
        const QDate first(1970, 1, 1);
        QCOMPARE(lines(index->events(first.startOfDay(), first.addDays(1).startOfDay())),
                 QStringList{u"1970-01-01 01:00 – 1970-01-01 01:00 Zähler"_s});
    }

    void survivesARecurrenceEverySecond()
    {
        const auto store = makeStore(calendar(
            event("s", "SUMMARY:Tick\nDTSTART:19700101T000000Z\nDURATION:PT1S\nRRULE:FREQ=SECONDLY") +
            event("c", "SUMMARY:Tack\nDTSTART:19700101T000000Z\nRRULE:FREQ=SECONDLY;COUNT=2000000000")));
        QVERIFY(access(*store));
        const auto events = fetch(*store, QDate(2026, 10, 26), 7);
        QVERIFY(events);
        QVERIFY(events->size() <= 10'000);
    }

    void findsTheSameOccurrencesFromAfarAsFromTheStart_data()
    {
        QTest::addColumn<QByteArray>("rule");
        for (const char *rule :
             {"FREQ=DAILY;INTERVAL=3", "FREQ=WEEKLY;INTERVAL=3;BYDAY=MO,WE,SU", "FREQ=MONTHLY;BYMONTHDAY=31",
              "FREQ=MONTHLY;INTERVAL=5;BYDAY=-1FR", "FREQ=YEARLY;INTERVAL=2",
              "FREQ=MONTHLY;BYDAY=MO,TU;BYSETPOS=2", "FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=TU,SU",
              "FREQ=YEARLY;BYMONTH=2,11;BYDAY=2SU", "FREQ=HOURLY;INTERVAL=7",
              "FREQ=MINUTELY;INTERVAL=1000;BYHOUR=8,9", "FREQ=YEARLY;BYWEEKNO=44;BYDAY=TH"})
            QTest::newRow(rule) << QByteArray(rule);
    }

    void findsTheSameOccurrencesFromAfarAsFromTheStart()
    {
        QFETCH(QByteArray, rule);
        const QByteArray series =
            "SUMMARY:R\nDTSTART;TZID=Europe/Berlin:20200131T083000\nDURATION:PT26H\nRRULE:" + rule;
        // Counting, a rule has to be followed from its start.
        const auto skipping = CalendarIndex::parse(calendar(event("a", series)));
        const auto counting = CalendarIndex::parse(calendar(event("a", series + ";COUNT=20000")));
        QVERIFY(skipping && counting);
        int found = 0;
        for (QDate day(2025, 12, 1); day < QDate(2027, 1, 10); day = day.addDays(17)) {
            const auto some = skipping->events(day.startOfDay(), day.addDays(17).startOfDay());
            const auto all = counting->events(day.startOfDay(), day.addDays(17).startOfDay());
            QCOMPARE(lines(some), lines(all));
            found += static_cast<int>(all.size());
        }
        QVERIFY(found > 0);
    }
};

RANDBLATT_TEST_MAIN(EmbeddedCalendarTest, QCoreApplication)
#include "tst_embeddedcalendar.moc"
