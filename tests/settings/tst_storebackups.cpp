#include "settings/Preferences.h"
#include "settings/StoreBackups.h"
#include "support/FaultVfs.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

const QString tasks = u"todoItems.v1"_s;

} // namespace

class StoreBackupsTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FaultVfs> m_disk;

    [[nodiscard]] QString folder() const { return m_folder->filePath(u"quillbar"_s); }
    [[nodiscard]] QString path() const { return folder() + "/preferences.sqlite"_L1; }
    [[nodiscard]] static QString today() { return QDate::currentDate().toString(Qt::ISODate); }
    [[nodiscard]] QString copyPath() const
    {
        return folder() + "/backups/preferences-"_L1 + today() + ".sqlite"_L1;
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_disk = std::make_unique<FaultVfs>();
    }

    void cleanup() { m_disk.reset(); }

    void keepsDaysAndWeeks_data()
    {
        QTest::addColumn<QList<int>>("days");
        QTest::addColumn<QList<int>>("kept");
        QTest::newRow("few") << QList<int>{0, 1, 5} << QList<int>{0, 1, 5};
        // The first is a Monday; the weeks before it end with the days 1, 8, 15 and 22.
        QTest::newRow("every day") << QList<int>{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14,
                                                 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29}
                                   << QList<int>{0, 1, 2, 3, 4, 5, 6, 8, 15};
        QTest::newRow("after a long absence")
            << QList<int>{0, 100, 101, 102, 103, 104, 105, 106, 107, 120, 121}
            << QList<int>{0, 100, 101, 102, 103, 104, 105, 106, 120};
    }

    void keepsDaysAndWeeks()
    {
        QFETCH(QList<int>, days);
        QFETCH(QList<int>, kept);
        const QDate monday(2026, 11, 23);
        QList<QDate> dates;
        for (const int day : days)
            dates.append(monday.addDays(-day));
        const QList<QDate> outdated = StoreBackups::outdated(dates);
        QList<int> left;
        for (const int day : days) {
            if (!outdated.contains(monday.addDays(-day)))
                left.append(day);
        }
        QCOMPARE(left, kept);
    }

    void copiesOnceADay_data()
    {
        QTest::addColumn<bool>("sharesMemory");
        QTest::newRow("beside the program") << true;
        QTest::newRow("where memory cannot be shared") << false;
    }

    void copiesOnceADay()
    {
        QFETCH(bool, sharesMemory);
        m_disk->setWithoutSharedMemory(!sharesMemory);
        Preferences preferences(path());
        StoreBackups backups(preferences);
        QSignalSpy changes(&backups, &StoreBackups::changed);
        // With the checkpoint after the first change.
        preferences.setValue(tasks, QByteArray("[1]"));
        QTRY_COMPARE(backups.copies(), QStringList{today()});
        preferences.setValue(tasks, QByteArray("[1,2]"));
        QSignalSpy synced(&preferences.health(), &StoreHealth::synced);
        QTRY_COMPARE(synced.count(), 1);
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(Preferences(copyPath()).get<QByteArray>(tasks), QByteArray("[1]"));
        constexpr auto others = QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther;
        QCOMPARE(QFile::permissions(copyPath()) & others, QFile::Permissions());
        QCOMPARE(QFile::permissions(folder() + "/backups"_L1) & others, QFile::Permissions());
    }

    void bringsACopyBackAtTheNextStart()
    {
        {
            Preferences preferences(path());
            StoreBackups backups(preferences);
            preferences.setValue(tasks, QByteArray("[1]"));
            QTRY_VERIFY(!backups.copies().isEmpty());
            preferences.setValue(tasks, QByteArray("[]"));
            backups.choose(today());
            QCOMPARE(backups.chosen(), today());
            backups.unchoose();
            QCOMPARE(backups.chosen(), QString());
            backups.choose(today());
            preferences.setValue(u"panelWidth"_s, 310.0);
        }
        QString kept;
        {
            Preferences preferences(path());
            QCOMPARE(preferences.get<QByteArray>(tasks), QByteArray("[1]"));
            QCOMPARE(StoreBackups(preferences).chosen(), QString());
            kept = preferences.health().asidePath();
        }
        const Preferences before(kept);
        QCOMPARE(before.get<QByteArray>(tasks), QByteArray("[]"));
        QCOMPARE(before.get<double>(u"panelWidth"_s), 310.0);
        QCOMPARE(Preferences(path()).get<QByteArray>(tasks), QByteArray("[1]"));
    }

    void doesNotBringADamagedCopyBack()
    {
        Preferences preferences(path());
        StoreBackups backups(preferences);
        preferences.setValue(tasks, QByteArray("[1]"));
        QTRY_VERIFY(!backups.copies().isEmpty());
        QFile copy(copyPath());
        QVERIFY(copy.open(QFile::ReadWrite));
        QVERIFY(copy.seek(16384));
        copy.write(QByteArray(512, '\0'));
        copy.close();
        backups.choose(today());
        QCOMPARE(backups.chosen(), QString());
        QVERIFY(!backups.problem().isEmpty());
    }

    void takesWhatIsLostFromTheLatestCopy()
    {
        {
            Preferences preferences(path());
            StoreBackups backups(preferences);
            preferences.setValue(tasks, QByteArray("[1]"));
            preferences.setValue(u"notesScratch"_s, QString(40'000, u'x'));
            preferences.setDraft(u"todo.add"_s, {{u"text"_s, u"Milch"_s}});
            QTRY_VERIFY(!backups.copies().isEmpty());
        }
        QFile file(path());
        QVERIFY(file.open(QFile::ReadWrite));
        file.write(QByteArray(16384, '\0'));
        file.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"beiseitegelegt"_s));
        Preferences preferences(path());
        QCOMPARE(preferences.get<QByteArray>(tasks), QByteArray("[1]"));
        QCOMPARE(preferences.get<QString>(u"notesScratch"_s), QString(40'000, u'x'));
        QVERIFY(preferences.draft(u"todo.add"_s).isEmpty());
        QVERIFY(!preferences.health().asidePath().isEmpty());
    }

    void findsDamageThatNobodyElseReads()
    {
        Preferences(path()).setValue(tasks, QByteArray(60'000, '1'));
        Preferences preferences(path());
        QFile file(path());
        QVERIFY(file.open(QFile::ReadWrite));
        QVERIFY(file.seek(file.size() - 16384 + 100));
        file.write(QByteArray(512, '\xff'));
        file.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"beiseitegelegt"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Keine Sicherung"_s));
        StoreBackups backups(preferences);
        backups.makeDue();
        QTRY_VERIFY(!backups.problem().isEmpty());
        QVERIFY(!preferences.health().asidePath().isEmpty());
        QCOMPARE(Preferences(path()).get<QByteArray>(tasks), QByteArray(60'000, '1'));
        QVERIFY(backups.copies().isEmpty());
        backups.makeDue();
        QTRY_COMPARE(backups.copies(), QStringList{today()});
        QCOMPARE(backups.problem(), QString());
    }
};

RANDBLATT_TEST_MAIN(StoreBackupsTest, QCoreApplication)
#include "tst_storebackups.moc"
