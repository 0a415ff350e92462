#include "platform/freedesktop/XdgAutostartLoginItem.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace randblatt;
using namespace Qt::StringLiterals;

class XdgAutostartLoginItemTest : public QObject
{
    Q_OBJECT

private:
    static constexpr auto executable = "/usr/bin/quillbar"_L1;

    /// The user's configuration folder while a test runs.
    std::unique_ptr<QTemporaryDir> m_config;

    QString folder() const { return m_config->filePath(u"autostart"_s); }
    QString entryPath() const { return folder() + "/com.randblatt.Quillbar.desktop"_L1; }

    static QString read(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    static void write(const QString &path, const QString &text)
    {
        QFile file(path);
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QVERIFY(file.open(QFile::WriteOnly));
        QVERIFY(file.write(text.toUtf8()) >= 0);
    }

private Q_SLOTS:
    void init()
    {
        m_config = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", m_config->path().toLocal8Bit());
    }

    void registersAndUnregisters()
    {
        XdgAutostartLoginItem item(executable);
        QVERIFY(!item.isRegistered());
        QCOMPARE(item.unregisterItem(), std::nullopt);

        QCOMPARE(item.registerItem(), std::nullopt);
        QVERIFY(item.isRegistered());
        const QStringList lines = read(entryPath()).split(u'\n');
        QCOMPARE(lines.first(), u"[Desktop Entry]"_s);
        for (const auto &line : {u"Type=Application"_s, u"Name=Quillbar"_s, uR"(Exec="/usr/bin/quillbar")"_s,
                                 u"TryExec=/usr/bin/quillbar"_s})
            QVERIFY2(lines.contains(line), qUtf8Printable(line));
        QCOMPARE(QDir(folder()).entryList(QDir::Files).size(), 1);

        QCOMPARE(item.unregisterItem(), std::nullopt);
        QVERIFY(!item.hasEntry());
        QVERIFY(!QFile::exists(entryPath()));
    }

    void doesNotCountWhatStartsNothingOrSomethingElse_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isEntry");
        const QString ours = uR"(Exec="/usr/bin/quillbar")"_s;
        const QString entry = "[Desktop Entry]\n"_L1 + ours + u'\n';
        QTest::newRow("hidden") << entry + "Hidden=true\n"_L1 << false;
        QTest::newRow("switched off") << entry + "X-GNOME-Autostart-enabled=false\n"_L1 << false;
        QTest::newRow("foreign") << u"[Desktop Entry]\nExec=/opt/old/quillbar\n"_s << true;
        QTest::newRow("without Exec") << u"[Desktop Entry]\nType=Application\n"_s << true;
        QTest::newRow("in another group")
            << "[Desktop Entry]\nExec=/opt/old/quillbar\n[Desktop Action a]\n"_L1 + ours << true;
        QTest::newRow("commented out") << "[Desktop Entry]\n#"_L1 + ours << true;
        QTest::newRow("empty") << QString() << true;
    }

    void doesNotCountWhatStartsNothingOrSomethingElse()
    {
        QFETCH(QString, text);
        QFETCH(bool, isEntry);
        write(entryPath(), text);
        XdgAutostartLoginItem item(executable);
        QVERIFY(!item.isRegistered());
        QCOMPARE(item.hasEntry(), isEntry);
        // Registering replaces it.
        QCOMPARE(item.registerItem(), std::nullopt);
        QVERIFY(item.isRegistered());
    }

    void toleratesWhatOthersAdd()
    {
        write(entryPath(), uR"(# by hand
[Desktop Entry]
Hidden=false
Exec = "/usr/bin/quillbar"
X-GNOME-Autostart-enabled=true
[Other]
Hidden=true
)"_s);
        QVERIFY(XdgAutostartLoginItem(executable).isRegistered());
    }

    void quotesThePath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("exec");
        QTest::addColumn<QString>("tryExec");
        QTest::newRow("space") << u"/opt/my apps/quillbar"_s << uR"("/opt/my apps/quillbar")"_s
                               << u"/opt/my apps/quillbar"_s;
        QTest::newRow("field code") << u"/opt/100%/quillbar"_s << uR"("/opt/100%%/quillbar")"_s
                                    << u"/opt/100%/quillbar"_s;
        QTest::newRow("dollar") << u"/opt/$a/quillbar"_s << uR"("/opt/\\$a/quillbar")"_s
                                << u"/opt/$a/quillbar"_s;
        QTest::newRow("quote") << uR"(/opt/"a"/quillbar)"_s << uR"("/opt/\\"a\\"/quillbar")"_s
                               << uR"(/opt/"a"/quillbar)"_s;
        QTest::newRow("backslash") << uR"(/opt/a\b/quillbar)"_s << uR"("/opt/a\\\\b/quillbar")"_s
                                   << uR"(/opt/a\\b/quillbar)"_s;
        QTest::newRow("backtick") << u"/opt/`id`/quillbar"_s << uR"("/opt/\\`id\\`/quillbar")"_s
                                  << u"/opt/`id`/quillbar"_s;
        QTest::newRow("line breaks and tab")
            << u"/opt/a\nHidden=true\r\tb/quillbar"_s << uR"("/opt/a\nHidden=true\r\tb/quillbar")"_s
            << uR"(/opt/a\nHidden=true\r\tb/quillbar)"_s;
        QTest::newRow("umlaut") << u"/home/jörg/quillbar"_s << uR"("/home/jörg/quillbar")"_s
                                << u"/home/jörg/quillbar"_s;
    }

    void quotesThePath()
    {
        QFETCH(QString, path);
        QFETCH(QString, exec);
        QFETCH(QString, tryExec);
        XdgAutostartLoginItem item(path);
        QCOMPARE(item.registerItem(), std::nullopt);
        QVERIFY(item.isRegistered());
        const QStringList lines = read(entryPath()).split(u'\n');
        QCOMPARE(lines.filter(QRegularExpression(u"^Exec="_s)), QStringList("Exec="_L1 + exec));
        QCOMPARE(lines.filter(QRegularExpression(u"^TryExec="_s)), QStringList("TryExec="_L1 + tryExec));
    }

    void saysWhyItCannotWrite()
    {
        const QString unspeakable = u"/opt/a\x1b[2Jb/quillbar"_s;
        const auto noEscape = XdgAutostartLoginItem(unspeakable).registerItem();
        QVERIFY(noEscape);
        QVERIFY2(noEscape->contains(unspeakable), qUtf8Printable(*noEscape));
        QVERIFY(!QFile::exists(entryPath()));

        XdgAutostartLoginItem item(executable);
        // What is in the way stops even the superuser: a file in the folder's place …
        write(folder(), {});
        const auto noFolder = item.registerItem();
        QVERIFY(noFolder);
        QVERIFY2(noFolder->contains(folder()), qUtf8Printable(*noFolder));
        QVERIFY(!item.isRegistered());

        // … and a folder in the file's.
        QVERIFY(QFile::remove(folder()));
        QVERIFY(QDir().mkpath(entryPath() + "/occupied"_L1));
        const auto notWritten = item.registerItem();
        QVERIFY(notWritten);
        QVERIFY2(notWritten->contains(u"lässt sich nicht schreiben: "_s), qUtf8Printable(*notWritten));
        const auto notRemoved = item.unregisterItem();
        QVERIFY(notRemoved);
        QVERIFY2(notRemoved->contains(u"lässt sich nicht entfernen: "_s), qUtf8Printable(*notRemoved));
    }
};

RANDBLATT_TEST_MAIN(XdgAutostartLoginItemTest, QCoreApplication)
#include "tst_xdgautostartloginitem.moc"
