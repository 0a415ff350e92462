#include "settings/AppSettings.h"
#include "settings/Draft.h"
#include "settings/Preferences.h"
#include "settings/StoreWorker.h"
#include "support/Fakes.h"
#include "support/FaultVfs.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

#include <memory>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

const QString tasks = u"todoItems.v1"_s;

/// A foreign program's connection to the store.
class OtherProgram
{
public:
    explicit OtherProgram(const QString &path)
    {
        sqlite3_open(QFile::encodeName(path).constData(), &m_database);
    }
    ~OtherProgram() { sqlite3_close(m_database); }
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;

    int run(const char *sql) { return sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr); }

private:
    sqlite3 *m_database = nullptr;
};

/// Leaves the store as a killed process does: with what was written in its log.
void writeAndDie(const QString &path, const QList<std::pair<QString, PreferenceValue>> &values)
{
    const pid_t child = fork();
    if (child == 0) {
        Preferences preferences(path);
        for (const auto &[key, value] : values)
            preferences.setValue(key, value);
        kill(getpid(), SIGKILL);
    }
    waitpid(child, nullptr, 0);
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

void overwrite(const QString &path, qint64 offset, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QFile::ReadWrite));
    QVERIFY(file.seek(offset));
    QCOMPARE(file.write(bytes), bytes.size());
}

} // namespace

/// The store on disks that are full, foreign, worn or gone.
class StoreFaultsTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FaultVfs> m_disk;

    [[nodiscard]] QString folder() const { return m_folder->filePath(u"quillbar"_s); }
    [[nodiscard]] QString path() const { return folder() + "/preferences.sqlite"_L1; }
    [[nodiscard]] QStringList keptFiles() const
    {
        return QDir(folder()).entryList(
            {u"preferences.sqlite.unlesbar-*"_s, u"preferences.sqlite.aufgehoben-*"_s});
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_disk = std::make_unique<FaultVfs>();
    }

    void cleanup() { m_disk.reset(); }

    void savesWhatIsLeftOfADamagedStore_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<QByteArray>("damage");
        QTest::addColumn<bool>("tasksSurvive");
        // The pages of the file: the schema; the three tables' rows; what is too long for those.
        QTest::newRow("a long text's bytes") << 5 << QByteArray(512, '\0') << true;
        QTest::newRow("the drafts' rows") << 2 << QByteArray(512, '\xff') << true;
        QTest::newRow("the schema") << 0 << QByteArray(512, '\0') << false;
    }

    void savesWhatIsLeftOfADamagedStore()
    {
        QFETCH(int, page);
        QFETCH(QByteArray, damage);
        QFETCH(bool, tasksSurvive);
        {
            Preferences preferences(path());
            QVERIFY(preferences.setValue(tasks, QByteArray("[1,2,3]")));
            QVERIFY(preferences.setValue(u"notesScratch"_s, QString(40'000, u'x')));
            QVERIFY(preferences.setDraft(u"todo.add"_s, {{u"text"_s, u"Milch"_s}}));
        }
        const QByteArray before = contents(path());
        overwrite(path(), page * 16384, damage);
        const QByteArray damaged = contents(path());
        QVERIFY(before != damaged);

        Preferences preferences(path());
        QCOMPARE(preferences.get<QByteArray>(tasks).has_value(), tasksSurvive);
        QVERIFY(preferences.setValue(u"panelWidth"_s, 300.0));
        QVERIFY(!preferences.health().asideSentence().isEmpty());
        QCOMPARE(contents(preferences.health().asidePath()), damaged);
        QCOMPARE(preferences.health().sentence(), QString());
    }

    void tellsOfTheKeptFileUntilItIsKnown()
    {
        QDir().mkpath(folder());
        overwrite(path(), 0, QByteArray("no database, but long enough to be taken for one").repeated(30));
        QString kept;
        {
            Preferences preferences(path());
            kept = preferences.health().asidePath();
            QVERIFY(!kept.isEmpty());
        }
        {
            Preferences preferences(path());
            QCOMPARE(preferences.health().asidePath(), kept);
            preferences.health().dismissAside();
            QCOMPARE(preferences.health().asidePath(), QString());
        }
        QCOMPARE(Preferences(path()).health().asidePath(), QString());
        QVERIFY(QFile::exists(kept));
    }

    void keepsWhatItKnowsWhenTheFileIsDamagedUnderneath()
    {
        Preferences(path()).setValue(tasks, QByteArray("[1,2,3]"));
        Preferences preferences(path());
        overwrite(path(), 0, QByteArray(contents(path()).size(), '\xff'));
        preferences.setValue(u"panelWidth"_s, 300.0);
        QTRY_VERIFY(!preferences.health().asidePath().isEmpty());
        QCOMPARE(preferences.get<QByteArray>(tasks), QByteArray("[1,2,3]"));
        QCOMPARE(preferences.health().sentence(), QString());
        const Preferences another(path());
        QCOMPARE(another.get<QByteArray>(tasks), QByteArray("[1,2,3]"));
        QCOMPARE(another.get<double>(u"panelWidth"_s), 300.0);
    }

    void tellsOfADamagedLog()
    {
        writeAndDie(
            path(),
            {{tasks, QByteArray("[1]")}, {u"notesScratch"_s, u"alt"_s}, {tasks, QByteArray("[1,2]")}});
        const QByteArray log = contents(path() + "-wal"_L1);
        const qsizetype frame = 24 + 16384;
        QVERIFY(log.size() > 32 + 3 * frame);
        overwrite(path() + "-wal"_L1, log.size() - 2 * frame - 600, QByteArray(512, '\xff'));
        Preferences preferences(path());
        QVERIFY(!preferences.health().asidePath().isEmpty());
        QCOMPARE(contents(preferences.health().asidePath() + "-wal"_L1).size(), log.size());
    }

    void readsTheLogWhereItCannotWrite()
    {
        writeAndDie(path(), {{tasks, QByteArray("[1,2,3]")}});
        m_disk->setReadOnly(folder());
        Preferences preferences(path());
        QCOMPARE(preferences.get<QByteArray>(tasks), QByteArray("[1,2,3]"));
        QVERIFY(!preferences.setValue(u"panelWidth"_s, 300.0));
        QVERIFY(preferences.health().sentenceFor({}).contains(u"nicht gespeichert"_s));

        // It becomes writable, and is found so without another write.
        m_disk->heal();
        QTRY_COMPARE(preferences.health().sentence(), QString());
        QCOMPARE(Preferences(path()).get<double>(u"panelWidth"_s), 300.0);
        QCOMPARE(Preferences(path()).get<QByteArray>(tasks), QByteArray("[1,2,3]"));
    }

    void keepsAValueThatItCouldNotRead_data()
    {
        QTest::addColumn<bool>("joins");
        QTest::newRow("and lets the new one win") << false;
        QTest::newRow("and lets its owner join both") << true;
    }

    void keepsAValueThatItCouldNotRead()
    {
        QFETCH(bool, joins);
        Preferences(path()).setValue(tasks, QByteArray("[1,2,3]"));
        const QByteArray before = contents(path());
        m_disk->failAt(1, FaultVfs::Fault::ioError, 1'000'000);
        Preferences preferences(path());
        QVERIFY(!preferences.value(tasks));
        QVERIFY(preferences.health().sentenceFor(u"todo"_s).contains(u"noch nicht gelesen"_s));
        QVERIFY(!preferences.setValue(tasks, QByteArray("[4]")));
        QVERIFY(preferences.health().sentenceFor(u"todo"_s).contains(u"nicht gespeichert"_s));
        if (joins) {
            connect(&preferences.health(), &StoreHealth::valueArrived, this,
                    [&](const QString &key, const PreferenceValue &stored) {
                        QCOMPARE(key, tasks);
                        QCOMPARE(stored, PreferenceValue(QByteArray("[1,2,3]")));
                        preferences.setValue(tasks, QByteArray("[1,2,3,4]"));
                    });
        }
        m_disk->heal();
        preferences.health().retry();
        QCOMPARE(preferences.health().sentence(), QString());
        const QByteArray expected = joins ? "[1,2,3,4]" : "[4]";
        QCOMPARE(Preferences(path()).get<QByteArray>(tasks), expected);
        QCOMPARE(contents(preferences.health().asidePath()), before);
    }

    void takesUpWhatItCouldNotReadAtFirst()
    {
        Preferences(path()).setValue(tasks, QByteArray("[1,2,3]"));
        Preferences(path()).setValue(u"moduleHeights"_s, QJsonObject{{u"todo"_s, 500.0}});
        Preferences(path()).setValue(u"panelWidth"_s, 333.0);
        Preferences(path()).setDraft(u"todo.add"_s, {{u"text"_s, u"Milch"_s}});
        m_disk->failAt(1, FaultVfs::Fault::ioError, 1'000'000);
        Preferences preferences(path());
        QSignalSpy arrived(&preferences.health(), &StoreHealth::valueArrived);
        QVERIFY(!preferences.value(tasks));
        FakeLoginItem loginItem;
        const AppSettings settings(preferences, loginItem);
        QSignalSpy widths(&settings, &AppSettings::panelWidthChanged);
        QSignalSpy sides(&settings, &AppSettings::sidebarSideChanged);
        const Draft draft(preferences, u"todo.add"_s);
        m_disk->heal();
        QTRY_COMPARE(arrived.count(), 3);
        QCOMPARE(preferences.get<QByteArray>(tasks), QByteArray("[1,2,3]"));
        QCOMPARE(settings.panelWidth(), 333.0);
        QCOMPARE(settings.height(u"todo"_s), 500.0);
        QCOMPARE(widths.count(), 1);
        QCOMPARE(sides.count(), 0);
        QCOMPARE(draft.text(), u"Milch"_s);
        QVERIFY(keptFiles().isEmpty());
    }

    void leavesAHealthyFileWhereItIsUnderFlakyReads()
    {
        {
            Preferences preferences(path());
            preferences.setValue(tasks, QByteArray("[1,2,3]"));
            preferences.setValue(u"notesScratch"_s, QString(100'000, u'x'));
        }
        for (quint32 seed = 0; seed < 200; ++seed) {
            m_disk->setFlakyReads(40, seed);
            Preferences preferences(path());
            m_disk->heal();
            preferences.health().retry();
            QCOMPARE(preferences.get<QByteArray>(tasks), QByteArray("[1,2,3]"));
            QVERIFY2(keptFiles().isEmpty(), qPrintable(u"seed %1"_s.arg(seed)));
        }
    }

    void savesWhereMemoryCannotBeShared_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("a new store") << false;
        QTest::newRow("a store that came there with its log") << true;
    }

    void savesWhereMemoryCannotBeShared()
    {
        QFETCH(bool, exists);
        if (exists)
            writeAndDie(path(), {{tasks, QByteArray("[1,2,3]")}});
        m_disk->setWithoutSharedMemory(true);
        {
            Preferences preferences(path());
            QCOMPARE(preferences.get<QByteArray>(tasks).has_value(), exists);
            QVERIFY(preferences.setValue(u"panelWidth"_s, 300.0));
            QVERIFY(QFileInfo(path() + "-wal"_L1).size() > 0);
            QTRY_COMPARE(QFileInfo(path() + "-wal"_L1).size(), 0);
            QVERIFY(preferences.setValue(u"panelWidth"_s, 310.0));
        }
        const Preferences preferences(path());
        QCOMPARE(preferences.get<double>(u"panelWidth"_s), 310.0);
        QCOMPARE(preferences.get<QByteArray>(tasks).has_value(), exists);
    }

    void writesOnAfterAForeignLock()
    {
        Preferences preferences(path());
        OtherProgram other(path());
        QCOMPARE(other.run("BEGIN IMMEDIATE"), SQLITE_OK);
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < 20; ++i)
            QVERIFY(!preferences.setValue(u"key%1"_s.arg(i), 1.0 * i));
        // 100 ms for all of them, against a second for each.
        QVERIFY(clock.elapsed() < 1000);
        QCOMPARE(preferences.get<double>(u"key7"_s), 7.0);
        QCOMPARE(preferences.health().unsaved().size(), 20);
        QVERIFY(preferences.health().sentence().startsWith(u"Ein anderes Programm"_s));
        QCOMPARE(other.run("ROLLBACK"), SQLITE_OK);
        QTRY_VERIFY(preferences.health().unsaved().isEmpty());
        QCOMPARE(Preferences(path()).get<double>(u"key19"_s), 19.0);
    }

    void writesAllThatWasRefusedAfterOneSuccess()
    {
        Preferences preferences(path());
        m_disk->failAt(1, FaultVfs::Fault::full, 1'000'000);
        QVERIFY(!preferences.setValue(tasks, QByteArray("[1]")));
        QVERIFY(!preferences.setDraft(u"notes.search"_s, {{u"text"_s, u"Mil"_s}}));
        QCOMPARE(preferences.health().sentenceFor(u"todo"_s),
                 u"Kein Platz auf dem Datenträger: Änderungen sind noch nicht gespeichert."_s);
        QVERIFY(!preferences.health().sentenceFor(u"notes"_s).isEmpty());
        QCOMPARE(preferences.health().sentenceFor(u"calendar"_s), QString());
        m_disk->heal();
        QVERIFY(preferences.setValue(u"panelWidth"_s, 300.0));
        QVERIFY(preferences.health().unsaved().isEmpty());
        QCOMPARE(Preferences(path()).get<QByteArray>(tasks), QByteArray("[1]"));
    }

    void tellsWhatADiskDoesNotSync()
    {
        Preferences preferences(path());
        m_disk->failAt(1'000'000, FaultVfs::Fault::none);
        QVERIFY(preferences.setValue(tasks, QByteArray("[1]")));
        m_disk->failAt(1, FaultVfs::Fault::ioError, 1'000'000);
        QTRY_VERIFY(!preferences.health().sentenceFor(u"todo"_s).isEmpty());
        m_disk->heal();
        QTRY_COMPARE_WITH_TIMEOUT(preferences.health().sentence(), QString(), 20'000);
    }

    void makesTheFileAgainThatSomebodyRemoved()
    {
        Preferences preferences(path());
        preferences.setValue(tasks, QByteArray("[1,2,3]"));
        QVERIFY(QDir(folder()).removeRecursively());
        QVERIFY(preferences.setValue(u"panelWidth"_s, 300.0));
        const Preferences another(path());
        QCOMPARE(another.get<QByteArray>(tasks), QByteArray("[1,2,3]"));
        QCOMPARE(another.get<double>(u"panelWidth"_s), 300.0);
    }

    void mendsPermissions()
    {
        constexpr auto ours = QFile::ReadOwner | QFile::WriteOwner;
        constexpr auto others = QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::ExeOther;
        Preferences(path()).setValue(tasks, QByteArray("[1]"));
        QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner | others));
        QVERIFY(QFile::setPermissions(folder(), ours | QFile::ExeOwner | others));
        Preferences preferences(path());
        QVERIFY(preferences.setValue(u"panelWidth"_s, 300.0));
        for (const auto &companion : {""_L1, "-wal"_L1})
            QCOMPARE(QFile::permissions(path() + companion) & (others | ours), ours);
        QCOMPARE(QFile::permissions(folder()) & (others | QFile::ExeOwner), QFile::ExeOwner);
    }

    void goesOnAfterAJobThatThrows()
    {
        StoreWorker worker;
        QList<StoreResult> results;
        const auto note = [&results](StoreResult result) { results.append(result); };
        worker.run([]() -> StoreResult { throw std::bad_alloc(); }, note);
        worker.run([] { return StoreResult::ok; }, note);
        QTRY_COMPARE(results, (QList{StoreResult::unavailable, StoreResult::ok}));
    }

    void anotherToolsRowsAreNoDamage()
    {
        Preferences(path()).setValue(tasks, QByteArray("[1]"));
        OtherProgram(path()).run("UPDATE preferences SET value = CAST('[2]' AS BLOB)");
        OtherProgram(path()).run("INSERT OR REPLACE INTO preferences VALUES ('panelWidth', 'double', 310.0)");
        Preferences preferences(path());
        QCOMPARE(preferences.get<QByteArray>(tasks), QByteArray("[2]"));
        QCOMPARE(preferences.get<double>(u"panelWidth"_s), 310.0);
        QVERIFY(keptFiles().isEmpty());
    }
};

RANDBLATT_TEST_MAIN(StoreFaultsTest, QCoreApplication)
#include "tst_storefaults.moc"
