#include "settings/Preferences.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

#include <csignal>
#include <limits>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

Q_DECLARE_METATYPE(randblatt::PreferenceValue)

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// Runs SQL on the file with a connection of its own; the first column of the rows, joined by commas.
QString query(const QString &path, const QByteArray &sql)
{
    sqlite3 *database = nullptr;
    sqlite3_open(qPrintable(path), &database);
    QStringList rows;
    sqlite3_exec(
        database, sql.constData(),
        [](void *target, int, char **columns, char **) {
            static_cast<QStringList *>(target)->append(QString::fromUtf8(columns[0]));
            return 0;
        },
        &rows, nullptr);
    sqlite3_close(database);
    return rows.join(u',');
}

/// Limits the size of the files that this process can write, as a full disk does.
class FullDisk
{
public:
    FullDisk()
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit none{1, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int) = SIG_DFL;
};

} // namespace

class PreferencesTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;

    [[nodiscard]] QString path() const { return m_folder->filePath(u"quillbar/preferences.sqlite"_s); }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void keepsEveryTypeOverARestart_data()
    {
        QTest::addColumn<PreferenceValue>("value");
        QTest::addColumn<QString>("type");
        const auto row = [](const char *name, const PreferenceValue &value, const QString &type) {
            QTest::newRow(name) << value << type;
        };
        row("text", u"Grüße 😀 '\"; --"_s, u"string"_s);
        row("empty text", u""_s, u"string"_s);
        row("a number as text", u"50"_s, u"string"_s);
        row("true", true, u"boolean"_s);
        row("fraction", 0.1 + 0.2, u"double"_s);
        row("whole number", 3.0, u"double"_s);
        row("array", QJsonArray{u"b"_s, u"a"_s}, u"array"_s);
        row("dictionary", QJsonObject{{u"todo"_s, 240.5}}, u"dictionary"_s);
        row("data", QByteArray("\x00\xff{", 3), u"data"_s);
        row("empty data", QByteArray(""), u"data"_s);
    }

    void keepsEveryTypeOverARestart()
    {
        QFETCH(PreferenceValue, value);
        QFETCH(QString, type);
        {
            Preferences preferences(path());
            QVERIFY(preferences.setValue(u"key"_s, u"older value of another type"_s));
            QVERIFY(preferences.setValue(u"key"_s, value));
            QCOMPARE(preferences.value(u"key"_s), value);
        }
        const Preferences preferences(path());
        QCOMPARE(preferences.value(u"key"_s), value);
        QCOMPARE(query(path(), "SELECT type FROM preferences"), type);
    }

    void tellsTypesApart()
    {
        Preferences preferences(path());
        preferences.setValue(u"key"_s, u"50"_s);
        QVERIFY(!preferences.get<double>(u"key"_s));
        QCOMPARE(preferences.get<QString>(u"key"_s), u"50"_s);
        QVERIFY(!preferences.value(u"Key"_s));
    }

    void isTheUsersAlone()
    {
        {
            Preferences preferences(path());
            preferences.setValue(u"key"_s, true);
            QCOMPARE(QFile::permissions(path()) & (QFile::ReadGroup | QFile::ReadOther),
                     QFile::Permissions());
            QCOMPARE(QFile::permissions(path() + "-wal"_L1) & (QFile::ReadGroup | QFile::ReadOther),
                     QFile::Permissions());
            QCOMPARE(QFile::permissions(QFileInfo(path()).path()) & (QFile::ExeGroup | QFile::ExeOther),
                     QFile::Permissions());
        }
        QCOMPARE(query(path(), "PRAGMA user_version"), u"1"_s);
        QCOMPARE(query(path(), "PRAGMA journal_mode"), u"wal"_s);
    }

    void survivesBeingKilled()
    {
        const pid_t child = fork();
        if (child == 0) {
            Preferences preferences(path());
            preferences.setValue(u"key"_s, u"geschrieben"_s);
            kill(getpid(), SIGKILL);
        }
        int status = 0;
        waitpid(child, &status, 0);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(Preferences(path()).get<QString>(u"key"_s), u"geschrieben"_s);
    }

    void removesAValueForGood()
    {
        {
            Preferences preferences(path());
            preferences.setValue(u"token"_s, u"secret"_s);
            preferences.setValue(u"other"_s, 1.0);
            QVERIFY(preferences.remove(u"token"_s));
            QVERIFY(preferences.remove(u"never there"_s));
            QVERIFY(!preferences.value(u"token"_s));
        }
        const Preferences preferences(path());
        QVERIFY(!preferences.value(u"token"_s));
        QCOMPARE(preferences.get<double>(u"other"_s), 1.0);
    }

    void setsAFileAsideThatItCannotRead_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("no database")
            << QByteArray("not a database at all, but long enough to be looked at").repeated(40);
        QTest::newRow("header alone") << QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\xff');
    }

    void setsAFileAsideThatItCannotRead()
    {
        QFETCH(QByteArray, content);
        QDir().mkpath(QFileInfo(path()).path());
        QFile file(path());
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(content);
        file.close();

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Einstellungen unlesbar, beiseitegelegt"_s));
        Preferences preferences(path());
        QVERIFY(preferences.setValue(u"key"_s, 1.0));
        const QStringList aside = QFileInfo(path()).dir().entryList({u"preferences.sqlite.unlesbar-*"_s});
        QCOMPARE(aside.count(), 1);
        QFile kept(QFileInfo(path()).dir().filePath(aside.first()));
        QVERIFY(kept.open(QFile::ReadOnly));
        QCOMPARE(kept.readAll(), content);
    }

    void setsADatabaseAsideThatIsNotOurs()
    {
        QDir().mkpath(QFileInfo(path()).path());
        query(path(), "CREATE TABLE preferences (name TEXT)");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"beiseitegelegt"_s));
        Preferences preferences(path());
        QVERIFY(preferences.setValue(u"key"_s, true));
    }

    void ignoresRowsThatContradictTheirType()
    {
        Preferences(path()).setValue(u"key"_s, true);
        query(path(), "UPDATE preferences SET type = 'double', value = 'x'");
        QVERIFY(!Preferences(path()).value(u"key"_s));
        query(path(), "UPDATE preferences SET type = 'array', value = '{'");
        QVERIFY(!Preferences(path()).value(u"key"_s));
    }

    void keepsWhatAFullDiskRefusesAndWritesItLater()
    {
        {
            Preferences preferences(path());
            preferences.setValue(u"first"_s, u"alt"_s);
            {
                const FullDisk full;
                QTest::ignoreMessage(QtWarningMsg,
                                     QRegularExpression(u"Einstellung „first“ nicht gespeichert"_s));
                QVERIFY(!preferences.setValue(u"first"_s, u"neu"_s));
                QTest::ignoreMessage(QtWarningMsg,
                                     QRegularExpression(u"Einstellung „second“ nicht gespeichert"_s));
                QVERIFY(!preferences.setValue(u"second"_s, 1.0));
                QCOMPARE(preferences.get<QString>(u"first"_s), u"neu"_s);
            }
            QVERIFY(preferences.setValue(u"second"_s, 2.0));
        }
        const Preferences preferences(path());
        QCOMPARE(preferences.get<QString>(u"first"_s), u"neu"_s);
        QCOMPARE(preferences.get<double>(u"second"_s), 2.0);
    }

    void livesInMemoryWhereNoFolderCanBeMade()
    {
        QFile blocker(m_folder->filePath(u"quillbar"_s));
        QVERIFY(blocker.open(QFile::WriteOnly));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"nicht beschreibbar"_s));
        auto preferences = std::make_unique<Preferences>(path());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"„key“ nicht gespeichert"_s));
        QVERIFY(!preferences->setValue(u"key"_s, true));
        QCOMPARE(preferences->get<bool>(u"key"_s), true);

        // The folder can be made when the application quits.
        QVERIFY(blocker.remove());
        preferences.reset();
        QCOMPARE(Preferences(path()).get<bool>(u"key"_s), true);
    }

    void refusesWhatTheFileCannotHold()
    {
        Preferences preferences(Preferences::inMemory());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"„key“ nicht gespeichert"_s));
        QVERIFY(!preferences.setValue(u"key"_s, std::numeric_limits<double>::quiet_NaN()));
        QVERIFY(preferences.setValue(u"key"_s, 1.0));
        QCOMPARE(preferences.get<double>(u"key"_s), 1.0);
    }

    void emptiesItsLogAfterAQuietSecond()
    {
        Preferences preferences(path());
        preferences.setValue(u"key"_s, QString(100'000, u'x'));
        QVERIFY(QFileInfo(path() + "-wal"_L1).size() > 100'000);
        QTRY_COMPARE(QFileInfo(path() + "-wal"_L1).size(), 0);
    }
};

RANDBLATT_TEST_MAIN(PreferencesTest, QCoreApplication)
#include "tst_preferences.moc"
