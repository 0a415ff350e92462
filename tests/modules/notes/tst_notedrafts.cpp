#include "NotesCard.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

/// What is typed into notes stays: through keys, other notes, the end of the panel and of the process.
class NoteDraftsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noKeyTurnsThePageOfAnEditor_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        const int control = Qt::ControlModifier;
        for (const QString &field : {u"bodyEditor"_s, u"titleField"_s, u"newBodyEditor"_s}) {
            QTest::addRow("%s →", qPrintable(field)) << field << int(Qt::Key_Right) << 0;
            QTest::addRow("%s Strg+→", qPrintable(field)) << field << int(Qt::Key_Right) << control;
            QTest::addRow("%s Strg+Bild↓", qPrintable(field)) << field << int(Qt::Key_PageDown) << control;
        }
    }

    void noKeyTurnsThePageOfAnEditor()
    {
        QFETCH(QString, field);
        QFETCH(int, key);
        QFETCH(int, modifiers);
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        if (field == u"bodyEditor"_s)
            card.open(u"A"_s);
        else
            card.click(u"composeButton"_s);
        QTRY_VERIFY(card.first(field) != nullptr);
        if (field == u"titleField"_s)
            card.view->type(u"Titel"_s);
        else
            card.typeInto(field, u"neu"_s);
        const QString focused = card.view->focused();
        for (int i = 0; i < 3; ++i)
            card.view->press(static_cast<Qt::Key>(key), static_cast<Qt::KeyboardModifiers>(modifiers));
        QCOMPARE(card.view->focused(), focused);
        QVERIFY(card.first(u"folderList"_s) == nullptr);
    }

    void draftsOutliveViewAndProcess_data()
    {
        QTest::addColumn<bool>("restarts");
        QTest::newRow("view") << false;
        QTest::newRow("process") << true;
    }

    void draftsOutliveViewAndProcess()
    {
        QFETCH(bool, restarts);
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        card.open(u"A"_s);
        card.typeInto(u"bodyEditor"_s, u" und neu"_s);
        const auto begin = [&] { restarts ? card.restart() : card.rebuildView(); };
        begin();
        QTRY_COMPARE(card.text(u"bodyEditor"_s), u"a und neu"_s);
        QCOMPARE(card.heading(), u"A"_s);

        card.click(u"backButton"_s);
        card.click(u"composeButton"_s);
        QTRY_COMPARE(card.view->focused(), u"titleField"_s);
        card.view->type(u"Titel"_s);
        card.typeInto(u"newBodyEditor"_s, u"Text"_s);
        begin();
        QTRY_COMPARE(card.heading(), u"Neue Notiz"_s);
        QTRY_COMPARE(card.view->texts(u"titleField"_s), QStringList(u"Titel"_s));
        QCOMPARE(card.text(u"newBodyEditor"_s), u"Text"_s);
    }

    void createsOneNoteHoweverOftenItIsAskedTo()
    {
        NotesCard card;
        card.show(NotesMode::apple);
        QTRY_VERIFY(!card.service->isLoading() && card.runner->scripts >= 2);
        card.click(u"composeButton"_s);
        QTRY_COMPARE(card.view->focused(), u"titleField"_s);
        card.view->type(u"Titel"_s);
        card.typeInto(u"newBodyEditor"_s, u"Text"_s);
        card.runner->waits = true;
        for (int i = 0; i < 3; ++i)
            card.view->press(Qt::Key_S, Qt::ControlModifier);
        card.view->type(u" seither"_s);
        card.runner->waits = false;
        card.runner->gate.release(1);
        QTRY_COMPARE(card.service->notes().size(), 1);
        QTRY_VERIFY(!card.service->isLoading());
        QCOMPARE(card.runner->creations, 1);
        QCOMPARE(card.stored(u"Titel"_s), u"Text"_s);
        // What was typed since stays, and alone.
        QTRY_COMPARE(card.text(u"newBodyEditor"_s), u" seither"_s);
    }

    void savesNothingUnchanged()
    {
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        card.open(u"A"_s);
        card.click(u"saveButton"_s);
        card.view->press(Qt::Key_S, Qt::ControlModifier);
        QTRY_COMPARE(card.view->texts(u"editState"_s), QStringList(u"Gespeichert"_s));
        // A change of another note comes after what would have been saved.
        card.add(u"B"_s);
        QCOMPARE(card.runner->saves, 0);
    }

    void keepsTheDraftsOfSeveralNotes()
    {
        NotesCard card;
        QVERIFY(QDir(card.folder.path()).mkpath(u"Ideen"_s));
        card.add(u"A"_s, u"a"_s);
        card.add(u"B"_s, u"b"_s);
        card.show(NotesMode::apple);
        card.open(u"A"_s);
        card.typeInto(u"bodyEditor"_s, u" eins"_s);
        card.click(u"backButton"_s);
        card.open(u"B"_s);
        card.typeInto(u"bodyEditor"_s, u" zwei"_s);
        card.view->press(Qt::Key_Escape);
        QTRY_COMPARE(card.view->seen(u"unsavedMark"_s).size(), 2);
        card.restart();
        QTRY_COMPARE(card.view->seen(u"unsavedMark"_s).size(), 2);
        // In another folder they stay in reach.
        card.service->setCurrentFolder(u"Ideen"_s);
        card.click(u"refreshButton"_s);
        QTRY_COMPARE(card.view->texts(u"unlistedRow"_s).size(), 2);
        QCOMPARE(card.service->notes().size(), 0);
        const qsizetype a = card.view->texts(u"unlistedRow"_s).indexOf(u"A"_s);
        card.view->click(card.view->seen(u"unlistedRow"_s).at(a));
        QTRY_COMPARE(card.text(u"bodyEditor"_s), u"a eins"_s);
        card.click(u"saveButton"_s);
        QTRY_COMPARE(card.view->texts(u"editState"_s), QStringList(u"Gespeichert"_s));
        card.service->setCurrentFolder({});
        card.click(u"refreshButton"_s);
        card.click(u"backButton"_s);
        QTRY_COMPARE(card.view->seen(u"unsavedMark"_s).size(), 1);
        QCOMPARE(card.stored(u"A"_s), u"a eins"_s);
        QCOMPARE(card.stored(u"B"_s), u"b"_s);
    }

    void tellsOfAnotherProgramsText_data()
    {
        QTest::addColumn<bool>("restarts");
        QTest::addColumn<bool>("takesOther");
        QTest::newRow("mine") << false << false;
        QTest::newRow("other") << false << true;
        QTest::newRow("mine, after a restart") << true << false;
    }

    void tellsOfAnotherProgramsText()
    {
        QFETCH(bool, restarts);
        QFETCH(bool, takesOther);
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        card.open(u"A"_s);
        card.typeInto(u"bodyEditor"_s, u" meins"_s);
        card.write(u"A"_s, u"anders"_s);
        if (restarts)
            card.restart();
        else
            card.click(u"saveButton"_s);
        QTRY_VERIFY(!card.view->texts(u"notice"_s).isEmpty());
        QCOMPARE(card.stored(u"A"_s), u"anders"_s);
        QCOMPARE(card.text(u"bodyEditor"_s), u"a meins"_s);
        UndoHistory *history = card.module->undoHistory();
        if (takesOther) {
            card.click(u"remedyButton"_s);
            QTRY_COMPARE(card.text(u"bodyEditor"_s), u"anders"_s);
            QVERIFY(history->undo());
            QTRY_COMPARE(card.text(u"bodyEditor"_s), u"a meins"_s);
            QCOMPARE(card.view->texts(u"editState"_s), QStringList(u"Nicht gespeichert"_s));
        } else {
            card.click(u"saveButton"_s);
            QTRY_COMPARE(card.stored(u"A"_s), u"a meins"_s);
            QTRY_COMPARE(history->offer(), u"Gespeichert"_s);
            QVERIFY(history->undo());
            QTRY_COMPARE(card.stored(u"A"_s), u"anders"_s);
        }
        QVERIFY(card.view->texts(u"notice"_s).isEmpty() || takesOther);
    }

    void takesSavingBack()
    {
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        card.open(u"A"_s);
        card.typeInto(u"bodyEditor"_s, u" neu"_s);
        card.click(u"saveButton"_s);
        UndoHistory *history = card.module->undoHistory();
        QTRY_COMPARE(history->offer(), u"Gespeichert"_s);
        card.click(u"backButton"_s);
        QVERIFY(history->undo());
        QTRY_COMPARE(card.stored(u"A"_s), u"a"_s);
        // Taking back is no change that could be taken back, but can be done again in the note.
        QVERIFY(!history->canUndo());
        QTRY_VERIFY(card.view->seen(u"unsavedMark"_s).isEmpty());
    }

    void bringsADeletedNoteBack()
    {
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        card.open(u"A"_s);
        card.typeInto(u"bodyEditor"_s, u" neu"_s);
        card.runner->waits = true;
        card.click(u"deleteButton"_s);
        card.click(u"deleteButton"_s);
        card.runner->waits = false;
        card.runner->gate.release(1);
        UndoHistory *history = card.module->undoHistory();
        QTRY_COMPARE(history->offer(), u"Notiz gelöscht"_s);
        QTRY_COMPARE(card.service->notes().size(), 0);
        QVERIFY(card.preferences.draft(u"notes.edit"_s).isEmpty());
        QVERIFY(history->undo());
        QTRY_COMPARE(card.service->notes().size(), 1);
        QCOMPARE(card.stored(u"A"_s), u"a"_s);
        // With what was not saved in it.
        QTRY_COMPARE(card.view->seen(u"unsavedMark"_s).size(), 1);
        card.open(u"A"_s);
        QCOMPARE(card.text(u"bodyEditor"_s), u"a neu"_s);
        QVERIFY(!history->canUndo());
    }

    void bringsDiscardedTextBack()
    {
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        card.open(u"A"_s);
        card.typeInto(u"bodyEditor"_s, u" neu"_s);
        card.click(u"discardButton"_s);
        QTRY_COMPARE(card.text(u"bodyEditor"_s), u"a"_s);
        card.click(u"backButton"_s);
        QVERIFY(card.module->undoHistory()->undo());
        card.open(u"A"_s);
        QTRY_COMPARE(card.text(u"bodyEditor"_s), u"a neu"_s);
        card.click(u"backButton"_s);

        card.click(u"composeButton"_s);
        QTRY_COMPARE(card.view->focused(), u"titleField"_s);
        card.view->type(u"Titel"_s);
        card.typeInto(u"newBodyEditor"_s, u"Text"_s);
        card.click(u"discardButton"_s);
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        QVERIFY(card.preferences.draft(u"notes.composer"_s).isEmpty());
        QVERIFY(card.module->undoHistory()->undo());
        QTRY_COMPARE(card.view->texts(u"titleField"_s), QStringList(u"Titel"_s));
        QCOMPARE(card.text(u"newBodyEditor"_s), u"Text"_s);
    }

    void keepsTheWordsOfANoteThatIsGone()
    {
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        card.open(u"A"_s);
        card.typeInto(u"bodyEditor"_s, u" neu"_s);
        bool gone = false;
        card.service->deleteNote(card.id(u"A"_s), NotesService::WriteCompletion([&](bool) { gone = true; }));
        QTRY_VERIFY(gone);
        card.restart();
        QTRY_COMPARE(card.text(u"bodyEditor"_s), u"a neu"_s);
        QTRY_VERIFY(card.view->texts(u"notice"_s).value(0).startsWith(u"(Konnte Notiz nicht laden: "_s));
        card.click(u"remedyButton"_s);
        QTRY_COMPARE(card.service->notes().size(), 1);
        QCOMPARE(card.stored(u"A"_s), u"a neu"_s);
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        QTRY_VERIFY(card.view->seen(u"unsavedMark"_s).isEmpty());
    }

    void anUnreadableTextIsNotWrittenByItself()
    {
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        QTRY_COMPARE(card.rows().size(), 1);
        QTRY_VERIFY(!card.service->isLoading());
        card.runner->failing = u"return body"_s;
        card.open(u"A"_s);
        QCOMPARE(card.text(u"bodyEditor"_s), u"(Konnte Notiz nicht laden: Kein Platz)"_s);
        card.click(u"saveButton"_s);
        card.typeInto(u"bodyEditor"_s, u" neu"_s);
        card.runner->failing.clear();
        card.click(u"saveButton"_s);
        // By now it can be read, and is not what the editor shows.
        QTRY_COMPARE(card.view->texts(u"notice"_s).size(), 1);
        QCOMPARE(card.runner->saves, 0);
        QCOMPARE(card.stored(u"A"_s), u"a"_s);
        card.click(u"saveButton"_s);
        QTRY_COMPARE(card.stored(u"A"_s), u"(Konnte Notiz nicht laden: Kein Platz) neu"_s);
        QTRY_VERIFY(card.module->undoHistory()->canUndo());
        QVERIFY(card.module->undoHistory()->undo());
        QTRY_COMPARE(card.stored(u"A"_s), u"a"_s);
    }
};

RANDBLATT_TEST_MAIN(NoteDraftsTest, QGuiApplication)
#include "tst_notedrafts.moc"
