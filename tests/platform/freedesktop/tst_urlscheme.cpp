#include "platform/freedesktop/UrlScheme.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

QString folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation);
}

QByteArray content(const QString &name)
{
    QFile file(folder() + u'/' + name);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestUrlScheme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(QDir(folder()).removeRecursively() || !QDir(folder()).exists()); }

    void makesTheDesktopKnowAProgramThatIsNotInstalled()
    {
        registerUrlScheme(u"randblatt"_s, u"/somewhere/my \"new\" $HOME/100 %/quillbar"_s);
        const QByteArray written = content(u"com.randblatt.Quillbar.callback.desktop"_s);
        QVERIFY(written.startsWith("[Desktop Entry]\n"));
        QVERIFY(written.contains(R"(
Exec="/somewhere/my \\"new\\" \\$HOME/100 %%/quillbar" %u
)"));
        QVERIFY(written.contains("\nMimeType=x-scheme-handler/randblatt;\n"));
        if (!QStandardPaths::findExecutable(u"update-desktop-database"_s).isEmpty())
            QCOMPARE(content(u"mimeinfo.cache"_s),
                     "[MIME Cache]\nx-scheme-handler/randblatt=com.randblatt.Quillbar.callback.desktop;\n");
        registerUrlScheme(u"randblatt"_s, u"/a\nExec=evil/quillbar"_s);
        QVERIFY(content(u"com.randblatt.Quillbar.callback.desktop"_s)
                    .contains("\nExec=\"/a\\nExec=evil/quillbar\" %u\nTryExec=/a\\nExec=evil/quillbar\n"));
        registerUrlScheme(u"randblatt"_s, u"/elsewhere/quillbar"_s);
        registerUrlScheme(u"randblatt"_s, u"/with\x1b/quillbar"_s);
        QVERIFY(content(u"com.randblatt.Quillbar.callback.desktop"_s).contains("\"/elsewhere/quillbar\" %u"));
    }

    void leavesAnInstalledProgramAlone()
    {
        QVERIFY(QDir().mkpath(folder()));
        QFile installed(folder() + "/com.randblatt.Quillbar.desktop"_L1);
        QVERIFY(installed.open(QFile::WriteOnly));
        registerUrlScheme(u"randblatt"_s, u"/somewhere/quillbar"_s);
        QCOMPARE(QDir(folder()).entryList(QDir::Files), QStringList(u"com.randblatt.Quillbar.desktop"_s));
    }
};

RANDBLATT_TEST_MAIN(TestUrlScheme, QCoreApplication)
#include "tst_urlscheme.moc"
