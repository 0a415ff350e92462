#include "platform/freedesktop/XdgAutostartLoginItem.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace randblatt;
using namespace Qt::StringLiterals;

class XdgAutostartLoginItemTest : public QObject
{
    Q_OBJECT

private:
    static constexpr auto executable = "/usr/bin/quillbar"_L1;

    static QString entryPath(const QString &folder) { return folder + "/com.randblatt.Quillbar.desktop"_L1; }

    static QString read(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    static void write(const QString &path, const QString &text)
    {
        QFile file(path);
        QVERIFY(file.open(QFile::WriteOnly));
        QVERIFY(file.write(text.toUtf8()) >= 0);
    }

private Q_SLOTS:
    void registersAndUnregisters()
    {
        const QTemporaryDir root;
        const QString folder = root.filePath(u"config/autostart"_s);
        XdgAutostartLoginItem item(folder, executable);
        QVERIFY(!item.isRegistered());
        QCOMPARE(item.unregisterItem(), std::nullopt);

        QCOMPARE(item.registerItem(), std::nullopt);
        QVERIFY(item.isRegistered());
        const QStringList lines = read(entryPath(folder)).split(u'\n');
        QCOMPARE(lines.first(), u"[Desktop Entry]"_s);
        for (const auto &line : {u"Type=Application"_s, u"Name=Quillbar"_s, u"Exec=/usr/bin/quillbar"_s,
                                 u"TryExec=/usr/bin/quillbar"_s})
            QVERIFY2(lines.contains(line), qUtf8Printable(line));
        QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 1);

        QCOMPARE(item.unregisterItem(), std::nullopt);
        QVERIFY(!item.isRegistered());
        QVERIFY(!QFile::exists(entryPath(folder)));
    }

    void doesNotCountWhatStartsNothingOrSomethingElse_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("hidden") << u"[Desktop Entry]\nExec=/usr/bin/quillbar\nHidden=true\n"_s;
        QTest::newRow("switched off")
            << u"[Desktop Entry]\nExec=/usr/bin/quillbar\nX-GNOME-Autostart-enabled=false\n"_s;
        QTest::newRow("foreign") << u"[Desktop Entry]\nExec=/opt/old/quillbar\n"_s;
        QTest::newRow("without Exec") << u"[Desktop Entry]\nType=Application\n"_s;
        QTest::newRow("in another group")
            << u"[Desktop Entry]\nExec=/opt/old/quillbar\n[Desktop Action a]\nExec=/usr/bin/quillbar\n"_s;
        QTest::newRow("commented out") << u"[Desktop Entry]\n#Exec=/usr/bin/quillbar\n"_s;
        QTest::newRow("empty") << QString();
    }

    void doesNotCountWhatStartsNothingOrSomethingElse()
    {
        QFETCH(QString, text);
        const QTemporaryDir folder;
        write(entryPath(folder.path()), text);
        XdgAutostartLoginItem item(folder.path(), executable);
        QVERIFY(!item.isRegistered());
        // Registering replaces it.
        QCOMPARE(item.registerItem(), std::nullopt);
        QVERIFY(item.isRegistered());
    }

    void toleratesWhatOthersAdd()
    {
        const QTemporaryDir folder;
        write(entryPath(folder.path()),
              u"# by hand\n[Desktop Entry]\nHidden=false\nExec = /usr/bin/quillbar \n"
              u"X-GNOME-Autostart-enabled=true\n[Other]\nHidden=true\n"_s);
        QVERIFY(XdgAutostartLoginItem(folder.path(), executable).isRegistered());
    }

    void quotesThePath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("exec");
        QTest::addColumn<QString>("tryExec");
        QTest::newRow("space") << u"/opt/my apps/quillbar"_s << uR"("/opt/my apps/quillbar")"_s
                               << u"/opt/my apps/quillbar"_s;
        QTest::newRow("field code") << u"/opt/100%/quillbar"_s << u"/opt/100%%/quillbar"_s
                                    << u"/opt/100%/quillbar"_s;
        QTest::newRow("dollar") << u"/opt/$a/quillbar"_s << uR"("/opt/\\$a/quillbar")"_s
                                << u"/opt/$a/quillbar"_s;
        QTest::newRow("quote") << uR"(/opt/"a"/quillbar)"_s << uR"("/opt/\\"a\\"/quillbar")"_s
                               << uR"(/opt/"a"/quillbar)"_s;
        QTest::newRow("backslash") << uR"(/opt/a\b/quillbar)"_s << uR"("/opt/a\\\\b/quillbar")"_s
                                   << uR"(/opt/a\\b/quillbar)"_s;
        QTest::newRow("umlaut") << u"/home/jörg/quillbar"_s << u"/home/jörg/quillbar"_s
                                << u"/home/jörg/quillbar"_s;
    }

    void quotesThePath()
    {
        QFETCH(QString, path);
        QFETCH(QString, exec);
        QFETCH(QString, tryExec);
        const QTemporaryDir folder;
        XdgAutostartLoginItem item(folder.path(), path);
        QCOMPARE(item.registerItem(), std::nullopt);
        QVERIFY(item.isRegistered());
        const QStringList lines = read(entryPath(folder.path())).split(u'\n');
        QCOMPARE(lines.filter(QRegularExpression(u"^Exec="_s)), QStringList("Exec="_L1 + exec));
        QCOMPARE(lines.filter(QRegularExpression(u"^TryExec="_s)), QStringList("TryExec="_L1 + tryExec));
    }

    void saysWhyItCannotWrite()
    {
        const QTemporaryDir root;
        // A file in the folder's place stops even the superuser.
        write(root.filePath(u"autostart"_s), {});
        XdgAutostartLoginItem item(root.filePath(u"autostart"_s), executable);
        const auto noFolder = item.registerItem();
        QVERIFY(noFolder);
        QVERIFY2(noFolder->contains(root.filePath(u"autostart"_s)), qUtf8Printable(*noFolder));
        QVERIFY(!item.isRegistered());

        const QTemporaryDir folder;
        QVERIFY(QDir().mkpath(entryPath(folder.path()) + "/occupied"_L1));
        XdgAutostartLoginItem blocked(folder.path(), executable);
        const auto notWritten = blocked.registerItem();
        QVERIFY(notWritten);
        QVERIFY2(notWritten->contains(u"lässt sich nicht schreiben: "_s), qUtf8Printable(*notWritten));
        const auto notDeleted = blocked.unregisterItem();
        QVERIFY(notDeleted);
        QVERIFY2(notDeleted->contains(u"lässt sich nicht löschen: "_s), qUtf8Printable(*notDeleted));
    }
};

RANDBLATT_TEST_MAIN(XdgAutostartLoginItemTest, QCoreApplication)
#include "tst_xdgautostartloginitem.moc"
