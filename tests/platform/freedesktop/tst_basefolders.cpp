#include "platform/freedesktop/BaseFolders.h"
#include "support/TestEnvironment.h"

#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class BaseFoldersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ignoresRelativePaths_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QByteArray>("left");
        QTest::newRow("relative") << QByteArray("XDG_DATA_HOME") << QByteArray("data") << QByteArray();
        QTest::newRow("this folder") << QByteArray("XDG_CONFIG_HOME") << QByteArray(".") << QByteArray();
        QTest::newRow("an unexpanded home")
            << QByteArray("XDG_CACHE_HOME") << QByteArray("~/.cache") << QByteArray();
        QTest::newRow("absolute") << QByteArray("XDG_STATE_HOME") << QByteArray("/a b") << QByteArray("/a b");
        QTest::newRow("some of a list")
            << QByteArray("XDG_DATA_DIRS") << QByteArray("/usr/share:share::/opt/share")
            << QByteArray("/usr/share:/opt/share");
        QTest::newRow("all of a list") << QByteArray("XDG_CONFIG_DIRS") << QByteArray("etc:") << QByteArray();
    }

    void ignoresRelativePaths()
    {
        QFETCH(QByteArray, variable);
        QFETCH(QByteArray, value);
        QFETCH(QByteArray, left);
        qputenv(variable.constData(), value);
        ignoreRelativeBaseFolders();
        QCOMPARE(qgetenv(variable.constData()), left);
        QCOMPARE(qEnvironmentVariableIsSet(variable.constData()), !left.isEmpty());
    }

    void dataStaysInTheHomeFolder()
    {
        qputenv("HOME", "/home/someone");
        qputenv("XDG_DATA_HOME", "data");
        ignoreRelativeBaseFolders();
        QCOMPARE(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
                 u"/home/someone/.local/share"_s);
    }
};

RANDBLATT_TEST_MAIN(BaseFoldersTest, QCoreApplication)
#include "tst_basefolders.moc"
