#include "NotesCard.h"
#include "support/TestEnvironment.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

class NotesViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsEveryKeystrokeOfThePad()
    {
        NotesCard card;
        card.show(NotesMode::scratch);
        QCOMPARE(card.view->texts(u"placeholder"_s), QStringList(u"Schreib hier rein …"_s));
        card.view->click(card.area(u"scratchPad"_s));
        card.view->type(u" "_s);
        QVERIFY(card.view->seen(u"placeholder"_s).isEmpty());
        QString typed = u" "_s;
        for (const QChar character : u"Äpfel"_s) {
            card.view->type(character);
            typed += character;
            QCOMPARE(card.preferences.get<QString>(u"notesScratch"_s), typed);
        }
        card.view->press(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(card.settings.notesScratch() != typed);
        QTest::keySequence(&card.view->window(), QKeySequence::Redo);
        QCOMPARE(card.settings.notesScratch(), typed);

        // From elsewhere: the place in the text stays.
        card.view->press(Qt::Key_Home);
        card.settings.setNotesScratch(typed + u" und Birnen"_s);
        QCOMPARE(card.text(u"scratchPad"_s), typed + u" und Birnen"_s);
        QCOMPARE(card.area(u"scratchPad"_s)->property("cursorPosition").toInt(), 0);
    }

    void hidesThePlaceholderWhileComposingByInputMethod()
    {
        NotesCard card;
        card.show(NotesMode::scratch);
        card.view->click(card.area(u"scratchPad"_s));
        QInputMethodEvent composing(u"に"_s, {});
        QCoreApplication::sendEvent(card.area(u"scratchPad"_s), &composing);
        QTRY_VERIFY(card.view->seen(u"placeholder"_s).isEmpty());
        QCOMPARE(card.settings.notesScratch(), QString());
        QInputMethodEvent done;
        done.setCommitString(u"日"_s);
        QCoreApplication::sendEvent(card.area(u"scratchPad"_s), &done);
        QCOMPARE(card.settings.notesScratch(), u"日"_s);
    }

    void switchesModesByTheQuickMenu()
    {
        NotesCard card;
        card.settings.setNotesScratch(u"bleibt"_s);
        card.show(NotesMode::scratch);
        card.click(u"appleChoice"_s);
        QCOMPARE(card.settings.notesMode(), NotesMode::apple);
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        QVERIFY(card.area(u"scratchPad"_s) == nullptr);
        QTRY_COMPARE(card.view->texts(u"statusMessage"_s), QStringList(u"Keine Notizen gefunden"_s));
        const int scripts = card.runner->scripts;
        card.click(u"scratchChoice"_s);
        QTRY_COMPARE(card.text(u"scratchPad"_s), u"bleibt"_s);
        card.click(u"appleChoice"_s);
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        // Nothing was loaded again.
        QTest::qWait(50);
        QCOMPARE(card.runner->scripts, scripts);
    }

    void opensEditsAndSavesANote()
    {
        NotesCard card;
        card.add(u"Einkauf"_s, u"Brot\nMilch"_s);
        card.show(NotesMode::apple);
        QTRY_COMPARE(card.rows(), QStringList(u"Einkauf"_s));
        card.open(0);
        QCOMPARE(card.heading(), u"Einkauf"_s);
        QCOMPARE(card.text(u"bodyEditor"_s), u"Brot\nMilch"_s);
        card.view->click(card.area(u"bodyEditor"_s));
        card.view->press(Qt::Key_End, Qt::ControlModifier);
        card.view->type(u" <3"_s);
        card.click(u"saveButton"_s);
        QTRY_COMPARE(card.stored(u"Einkauf"_s), u"Brot\nMilch <3"_s);
        QCOMPARE(card.heading(), u"Einkauf"_s);
        card.click(u"backButton"_s);
        QTRY_COMPARE(card.rows(), QStringList(u"Einkauf"_s));
    }

    void leavesByKeyToTheNotesRow()
    {
        NotesCard card;
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        card.open(0);
        card.view->click(card.area(u"bodyEditor"_s));
        card.view->type(u"neu "_s);
        card.view->press(Qt::Key_S, Qt::ControlModifier);
        QTRY_COMPARE(card.stored(u"A"_s), card.text(u"bodyEditor"_s));
        card.view->press(Qt::Key_Escape);
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        // The keyboard is in the list again, at the note's row.
        QTRY_COMPARE(card.view->focused(), u"noteRow"_s);
    }

    void showsNoNotesTextInAnother()
    {
        NotesCard card;
        card.add(u"A"_s, u"Text von A"_s);
        card.add(u"B"_s, u"Text von B"_s);
        card.show(NotesMode::apple);
        QTRY_COMPARE(card.rows().size(), 2);
        QTRY_VERIFY(!card.service->isLoading());
        const qsizetype a = card.rows().indexOf(u"A"_s);
        card.runner->waits = true;
        card.view->click(card.view->seen(u"noteRow"_s).at(a));
        QTRY_COMPARE(card.view->seen(u"loadingBody"_s).size(), 1);
        // An empty text is not to take the place of the one that is on its way.
        QVERIFY(!card.first(u"saveButton"_s)->isEnabled());
        card.click(u"backButton"_s);
        card.view->click(card.view->seen(u"noteRow"_s).at(1 - a));
        card.runner->gate.release(1);
        QTest::qWait(50);
        QVERIFY(card.area(u"bodyEditor"_s) == nullptr);
        card.runner->waits = false;
        card.runner->gate.release(1);
        QTRY_COMPARE(card.text(u"bodyEditor"_s), u"Text von B"_s);
    }

    void deletesTheOpenNote()
    {
        NotesCard card;
        card.add(u"A"_s);
        card.show(NotesMode::apple);
        QTRY_COMPARE(card.rows().size(), 1);
        card.open(0);
        card.runner->failing = u"delete note"_s;
        card.click(u"deleteButton"_s);
        QTRY_COMPARE(card.view->texts(u"statusMessage"_s),
                     QStringList(u"Konnte Notiz nicht löschen: Kein Platz"_s));
        QVERIFY(card.area(u"bodyEditor"_s) != nullptr);
        card.runner->failing.clear();
        card.click(u"deleteButton"_s);
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        QTRY_COMPARE(card.view->texts(u"statusMessage"_s), QStringList(u"Keine Notizen gefunden"_s));
        QCOMPARE(card.view->find(u"notesList"_s)->property("count").toInt(), 0);
    }

    void composesNotes()
    {
        NotesCard card;
        card.show(NotesMode::apple);
        card.click(u"composeButton"_s);
        QTRY_COMPARE(card.heading(), u"Neue Notiz"_s);
        QTRY_COMPARE(card.view->focused(), u"titleField"_s);
        card.view->type(u"   "_s);
        QVERIFY(!card.first(u"createButton"_s)->isEnabled());
        card.view->press(Qt::Key_S, Qt::ControlModifier);
        card.view->type(u"x"_s);
        QVERIFY(card.first(u"createButton"_s)->isEnabled());
        card.view->press(Qt::Key_Return);
        card.view->type(u"Text"_s);

        // What was typed outlasts the composer, and a failure.
        card.view->press(Qt::Key_Escape);
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        card.click(u"composeButton"_s);
        QTRY_COMPARE(card.text(u"newBodyEditor"_s), u"Text"_s);
        card.runner->failing = u"make new note"_s;
        card.click(u"createButton"_s);
        QTRY_COMPARE(card.view->texts(u"statusMessage"_s),
                     QStringList(u"Konnte Notiz nicht erstellen: Kein Platz"_s));
        QCOMPARE(card.view->texts(u"titleField"_s), QStringList(u"   x"_s));
        card.runner->failing.clear();
        card.click(u"createButton"_s);
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        QTRY_COMPARE(card.rows(), QStringList(u"   x"_s));
        // Where the list begins, with no gap left by the row of the note that was not there yet.
        const auto top = [](const QQuickItem *item) { return item->mapToScene({}).y(); };
        QTRY_VERIFY(top(card.first(u"noteRow"_s)) < top(card.first(u"folderName"_s)) + 30);
        QCOMPARE(card.stored(u"   x"_s), u"Text"_s);
        card.click(u"composeButton"_s);
        QTRY_COMPARE(card.view->texts(u"titleField"_s), QStringList(QString()));
        QCOMPARE(card.text(u"newBodyEditor"_s), QString());
    }

    void listsOneFolder()
    {
        NotesCard card;
        QVERIFY(QDir(card.folder.path()).mkpath(u"Ideen"_s));
        card.add(u"A"_s, u"a"_s);
        card.show(NotesMode::apple);
        QTRY_COMPARE(card.rows(), QStringList(u"A"_s));
        QCOMPARE(card.view->texts(u"folderName"_s), QStringList(u"Alle Notizen"_s));
        card.open(0);
        card.click(u"swipeHint"_s);
        QTRY_COMPARE(card.view->texts(u"folderRow"_s), (QStringList{u"Notizen"_s, u"Ideen"_s}));
        QTRY_COMPARE(ViewTest::centre(card.first(u"folderRow"_s)).x(), 392 / 2);
        QVERIFY(card.first(u"allNotesRow"_s)->property("isChosen").toBool());
        card.view->click(card.view->seen(u"folderRow"_s).at(1));
        QTRY_COMPARE(card.view->texts(u"folderName"_s), QStringList(u"Ideen"_s));
        QTRY_COMPARE(card.heading(), u"Notizen"_s);
        QTRY_COMPARE(card.view->texts(u"statusMessage"_s), QStringList(u"Keine Notizen gefunden"_s));
    }

    void turnsPages_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"drag", "keys", "wheel"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }

    void turnsPages()
    {
        QFETCH(QString, way);
        NotesCard card;
        card.add(u"A"_s);
        card.show(NotesMode::apple);
        QTRY_COMPARE(card.rows().size(), 1);
        const QQuickItem *pages = card.view->find(u"notesPages"_s);
        const auto turn = [&](int step) {
            if (way == u"keys"_s) {
                QVERIFY(QMetaObject::invokeMethod(card.view->find(u"notesPages"_s), "forceActiveFocus"));
                card.view->press(step > 0 ? Qt::Key_Right : Qt::Key_Left);
            } else if (way == u"wheel"_s) {
                const QPointF place(196, 150);
                QWheelEvent event(place, place, {}, {-120 * step, 0}, {}, {}, Qt::NoScrollPhase, false);
                QCoreApplication::sendEvent(&card.view->window(), &event);
            } else {
                const QPoint start(196 + step * 120, 200);
                QTest::mousePress(&card.view->window(), Qt::LeftButton, {}, start);
                for (int moved = 20; moved <= 240; moved += 20)
                    QTest::mouseMove(&card.view->window(), start - QPoint(step * moved, 0), 10);
                QTest::mouseRelease(&card.view->window(), Qt::LeftButton, {}, start - QPoint(step * 240, 0));
            }
        };
        turn(1);
        QTRY_COMPARE(pages->property("contentX").toReal() - pages->property("originX").toReal(), 392);
        QVERIFY(card.view->seen(u"noteRow"_s).isEmpty());
        QTest::qWait(200);
        turn(-1);
        QTRY_COMPARE(pages->property("contentX").toReal() - pages->property("originX").toReal(), 0);
    }
};

RANDBLATT_TEST_MAIN(NotesViewTest, QGuiApplication)
#include "tst_notesview.moc"
