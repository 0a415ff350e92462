#include "modules/notes/NoteScripts.h"
#include "platform/html/HtmlText.h"
#include "support/TestEnvironment.h"

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class NoteScriptsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheScripts_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("expected");
        QTest::newRow("folders") << notescripts::listFolders()
                                 << u"tell application \"Notes\"\n"
                                    "    tell account 1\n"
                                    "        set out to \"\"\n"
                                    "        repeat with f in folders\n"
                                    "            set out to out & (name of f) & \"<¶>\"\n"
                                    "        end repeat\n"
                                    "        return out\n"
                                    "    end tell\n"
                                    "end tell"_s;
        QTest::newRow("all notes")
            << notescripts::listNotes(std::nullopt, 80)
            << u"tell application \"Notes\"\n"
               "    tell account 1\n"
               "        set out to \"\"\n"
               "        set cnt to 0\n"
               "        repeat with n in notes\n"
               "            set out to out & (id of n) & \"<§>\" & (name of n) & \"<¶>\"\n"
               "            set cnt to cnt + 1\n"
               "            if cnt ≥ 80 then exit repeat\n"
               "        end repeat\n"
               "        return out\n"
               "    end tell\n"
               "end tell"_s;
        QTest::newRow("body") << notescripts::readBody(u"x-1"_s)
                              << u"tell application \"Notes\"\n"
                                 "    return body of note id \"x-1\"\n"
                                 "end tell"_s;
        QTest::newRow("create") << notescripts::createNote(u"a<b"_s, u"x & y\nz"_s)
                                << u"tell application \"Notes\"\n"
                                   "    tell account 1\n"
                                   "        make new note with properties {name:\"a<b\", "
                                   "body:\"<div><b>a&lt;b</b></div>x &amp; y<br>z\"}\n"
                                   "    end tell\n"
                                   "end tell"_s;
        QTest::newRow("create empty")
            << notescripts::createNote(u"T"_s, QString())
            << u"tell application \"Notes\"\n"
               "    tell account 1\n"
               "        make new note with properties {name:\"T\", body:\"<div><b>T</b></div>\"}\n"
               "    end tell\n"
               "end tell"_s;
        QTest::newRow("save")
            << notescripts::setBody(u"a\\\"b"_s, u"\"T\\"_s, u"&lt;\t"_s)
            << u"tell application \"Notes\"\n"
               "    set body of note id \"a\\\\\\\"b\" to \"<div><b>\\\"T\\\\</b></div>&amp;lt;\t\"\nend tell"_s;
        QTest::newRow("folder of") << notescripts::folderOfNote(u"x\"y"_s)
                                   << u"tell application \"Notes\"\n"
                                      "    return name of container of note id \"x\\\"y\"\n"
                                      "end tell"_s;
        QTest::newRow("move") << notescripts::moveNote(u"x"_s, u"a\"b"_s)
                              << u"tell application \"Notes\"\n"
                                 "    move note id \"x\" to folder \"a\\\"b\"\n"
                                 "end tell"_s;
        QTest::newRow("move to the default folder")
            << notescripts::moveNote(u"x"_s, std::nullopt)
            << u"tell application \"Notes\"\n"
               "    move note id \"x\" to default folder of account 1\n"
               "end tell"_s;
        QTest::newRow("delete") << notescripts::deleteNote(u"x"_s)
                                << u"tell application \"Notes\"\n"
                                   "    delete note id \"x\"\n"
                                   "end tell"_s;
    }

    void writesTheScripts()
    {
        QFETCH(QString, script);
        QFETCH(QString, expected);
        QCOMPARE(script, expected);
    }

    void escapesFolderNames()
    {
        const auto source = [](const QString &folder) {
            return notescripts::listNotes(folder, 80).split(u'\n').at(4).trimmed();
        };
        QCOMPARE(source(u"Ideen \"2025\""_s), u"repeat with n in notes of folder \"Ideen \\\"2025\\\"\""_s);
        QCOMPARE(source(u"a\\\"b"_s), u"repeat with n in notes of folder \"a\\\\\\\"b\""_s);
    }

    void readsLists_data()
    {
        QTest::addColumn<QString>("result");
        QTest::addColumn<QList<NoteSummary>>("notes");
        using List = QList<NoteSummary>;
        QTest::newRow("empty") << QString() << List{};
        QTest::newRow("two") << u"1<§>A<¶>2<§>B<¶>"_s << List{{u"1"_s, u"A"_s}, {u"2"_s, u"B"_s}};
        QTest::newRow("no last separator") << u"1<§>A"_s << List{{u"1"_s, u"A"_s}};
        QTest::newRow("empty name") << u"1<§><¶>"_s << List{{u"1"_s, QString()}};
        QTest::newRow("field separator in the name") << u"1<§>A<§>B<¶>"_s << List{{u"1"_s, u"A"_s}};
        QTest::newRow("record separator in the name")
            << u"1<§>A<¶>B<¶>2<§>C<¶>"_s << List{{u"1"_s, u"A"_s}, {u"2"_s, u"C"_s}};
    }

    void readsLists()
    {
        QFETCH(QString, result);
        QFETCH(QList<NoteSummary>, notes);
        QCOMPARE(notescripts::notes(result, 80), notes);
    }

    void readsNoMoreThanIsShown()
    {
        const QString row = u"1<§>A<§><§>B<¶>"_s;
        QCOMPARE(notescripts::notes(row.repeated(1'000'000), 80).size(), 80);
        QCOMPARE(notescripts::notes(u"1"_s + u"<§>A"_s.repeated(1'000'000), 80),
                 (QList<NoteSummary>{{u"1"_s, u"A"_s}}));
        QVERIFY(notescripts::folders(row.repeated(1'000'000)).size() < 10'000);
    }

    /// Saving what was opened must change nothing, so a text must come back as it was typed.
    void readsItsOwnTextsBack_data()
    {
        QTest::addColumn<QString>("text");
        for (const auto &text :
             {QString(), u"a"_s, u"\n"_s, u"a\n"_s, u"\n\na\n\n\nb\n\n"_s, u"  if (x) {\n\treturn;\n  }"_s,
              u"a & b &amp; &lt;br&gt; <br> </div> > \"q\""_s, u"a\u00A0b 😀"_s})
            QTest::addRow("%s", qPrintable(text)) << text;
    }

    void readsItsOwnTextsBack()
    {
        QFETCH(QString, text);
        const QString script = notescripts::createNote(QString(), text);
        const QString opening = u"<div><b></b></div>"_s;
        const qsizetype start = script.indexOf(opening) + opening.size();
        QString html = script.sliced(start, script.lastIndexOf(u"\"}"_s) - start);
        html.replace(u"\\\""_s, u"\""_s);
        QCOMPARE(htmlToPlainText(html), text);
    }
};

RANDBLATT_TEST_MAIN(NoteScriptsTest, QGuiApplication)
#include "tst_notescripts.moc"
