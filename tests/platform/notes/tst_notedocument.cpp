#include "platform/html/HtmlText.h"
#include "platform/notes/FolderNames.h"
#include "platform/notes/NoteDocument.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class NoteDocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsNameAndBody_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("body");
        QTest::newRow("plain") << u"Einkauf"_s << u"Milch<br>Brot"_s;
        QTest::newRow("empty") << u"Leer"_s << QString();
        QTest::newRow("markup in the name") << u"a<b & </title> \"c\" 'd' &amp;"_s << u"x"_s;
        QTest::newRow("separators and line feeds") << u"a<§>b<¶>\nc\r\n d "_s << u"\n\nx\n"_s;
        QTest::newRow("tags of a document") << u"n"_s << u"<body>a</body></html><title>t</title>"_s;
        QTest::newRow("emoji") << u"😀 ü"_s << u"😀 ü\u2028"_s;
    }

    void keepsNameAndBody()
    {
        QFETCH(QString, name);
        QFETCH(QString, body);
        const QByteArray file = NoteDocument{name, body}.toFile();
        const NoteDocument read = NoteDocument::fromFile(file);
        QCOMPARE(read.name, name);
        QCOMPARE(read.body, body);
        QCOMPARE(NoteDocument::nameFromHead(file.first(std::min<qsizetype>(file.size(), 500))), name);
        const NoteDocument renamed =
            NoteDocument::fromFile(NoteDocument::renamed(file, u"neu & <alt>"_s).value());
        QCOMPARE(renamed.name, u"neu & <alt>"_s);
        QCOMPARE(renamed.body, body);
    }

    void readsOtherProgramsFiles_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("body");
        QTest::newRow("fragment") << QByteArray("<p>Erste &uuml;</p><p>Zweite</p>") << u"Erste ü"_s
                                  << u"<p>Erste &uuml;</p><p>Zweite</p>"_s;
        QTest::newRow("attributes and case")
            << QByteArray("<HTML><HEAD><TITLE lang=de>T &amp; U</TITLE></HEAD>\r\n<BODY "
                          "class='x'>\r\ny\r\n</BODY></HTML>")
            << u"T & U"_s << u"y"_s;
        QTest::newRow("no body element")
            << QByteArray("<!DOCTYPE html><title>T</title><p>x</p>") << u"T"_s << u"<p>x</p>"_s;
        QTest::newRow("declared Latin-1")
            << QByteArray("<html><head><meta "
                          "charset=\"iso-8859-1\"><title>\xfc</title></head><body>\xdf</body></html>")
            << u"ü"_s << u"ß"_s;
        QTest::newRow("undeclared Latin-1") << QByteArray("<p>\xfc</p>") << u"ü"_s << u"<p>ü</p>"_s;
        QTest::newRow("byte order mark")
            << QByteArray("\xef\xbb\xbf<p>\xc3\xbc</p>") << u"ü"_s << u"<p>ü</p>"_s;
        QTest::newRow("title in the text only")
            << QByteArray("<body>a<title>b</title></body>") << u"a"_s << u"a<title>b</title>"_s;
        QTest::newRow("empty") << QByteArray() << u"Neue Notiz"_s << QString();
        QTest::newRow("cut off") << QByteArray("<html><head><title>Ab") << u"Ab"_s << u"<head><title>Ab"_s;
    }

    void readsOtherProgramsFiles()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, name);
        QFETCH(QString, body);
        const NoteDocument document = NoteDocument::fromFile(file);
        QCOMPARE(document.name, name);
        QCOMPARE(document.body, body);
    }

    void keepsBlanksThroughOtherProgramsChanges()
    {
        const QString typed = u"  if (x)<br>\t\treturn;  "_s;
        QByteArray file = NoteDocument{u"n"_s, typed}.toFile();
        QVERIFY(NoteDocument::isOwn(file));
        QCOMPARE(htmlToPlainText(NoteDocument::fromFile(file).body), u"  if (x)\n\t\treturn;  "_s);
        file.replace("</body>", "\n<p>neu</p>\n</body>");
        QVERIFY(!NoteDocument::isOwn(file));
        const QString body = NoteDocument::fromFile(file).body;
        QCOMPARE(htmlToPlainText(body), u"  if (x)\n\t\treturn;  \n\nneu"_s);
        // Going in circles adds nothing.
        QCOMPARE(NoteDocument::fromFile(NoteDocument{u"n"_s, body}.toFile()).body, body);
    }

    void keepsBytesItCannotWriteWhenRenaming()
    {
        const QByteArray latin1("<html><head><meta charset=\"iso-8859-1\"><title>\xfc</title></head></html>");
        QVERIFY(!NoteDocument::renamed(latin1, u"neu"_s));
    }

    void takesTheTitleOffABody()
    {
        const auto titled = NoteDocument::fromTitledBody(u"<div><b>a&lt;b<br>&amp;lt;</b></div>x &amp; y"_s);
        QVERIFY(titled);
        QCOMPARE(titled->name, u"a<b\n&lt;"_s);
        QCOMPARE(titled->body, u"x &amp; y"_s);
        QVERIFY(!NoteDocument::fromTitledBody(u"<div>a</div>"_s));
        QVERIFY(!NoteDocument::fromTitledBody(u"<div><b>a</b>"_s));
    }

    void writesFolderNamesReversibly_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("directory");
        const auto add = [](const QString &folder, const QString &directory) {
            QTest::newRow(qPrintable(folder)) << folder << directory;
        };
        add(u"Ideen \"2025\""_s, u"Ideen \"2025\""_s);
        add(u"Größe"_s, u"Größe"_s);
        add(u"a/b"_s, u"a%2fb"_s);
        add(u".."_s, u"%2e%2e"_s);
        add(u".versteckt. "_s, u"%2eversteckt.%20"_s);
        add(u"100 %"_s, u"100 %25"_s);
        add(u"%2f"_s, u"%252f"_s);
        add(u"a\\b\nc"_s, u"a%5cb%0ac"_s);
        add(QString(u'\0'), u"%00"_s);
    }

    void writesFolderNamesReversibly()
    {
        QFETCH(QString, folder);
        QFETCH(QString, directory);
        QCOMPARE(foldernames::directoryName(folder), directory);
        QCOMPARE(foldernames::folderName(directory), folder);
    }

    void callsForeignDirectoriesAsTheyAre()
    {
        for (const auto &name : {u"50% Rabatt"_s, u"a%41"_s, u"a%2Fb"_s, u"%"_s})
            QCOMPARE(foldernames::folderName(name), name);
    }

    void refusesFolderNamesWithoutADirectory()
    {
        QVERIFY(foldernames::directoryName(QString()).isEmpty());
        QVERIFY(foldernames::directoryName(QString(300, u'x')).isEmpty());
        QVERIFY(foldernames::directoryName(QString(QChar(0xd800))).isEmpty());
    }
};

RANDBLATT_TEST_MAIN(NoteDocumentTest, QCoreApplication)
#include "tst_notedocument.moc"
