#include "NotesCard.h"
#include "support/TestEnvironment.h"

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
        QTest::qWait(50);
        QCOMPARE(card.runner->saves, 0);
    }
};

RANDBLATT_TEST_MAIN(NoteDraftsTest, QGuiApplication)
#include "tst_notedrafts.moc"
