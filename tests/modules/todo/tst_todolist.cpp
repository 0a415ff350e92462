#include "TodoCard.h"
#include "support/TestEnvironment.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;
using namespace randblatt;

class TodoListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsWhatIsTyped()
    {
        TodoCard card({});
        QCOMPARE(card.seen(u"emptyState"_s).size(), 1);
        QQuickItem *field = card.view->find(u"addField"_s);
        card.view->click(field);
        for (const QString &text : {u" Brot kaufen "_s, u"  "_s, u""_s, u"Wäsche"_s}) {
            card.view->type(text);
            card.view->press(Qt::Key_Return);
            QCOMPARE(field->property("text"), u""_s);
        }
        QCOMPARE(card.titles(TodoStatus::backlog), QStringList({u"Brot kaufen"_s, u"Wäsche"_s}));
        QTRY_COMPARE(card.texts(u"rowTitle"_s), QStringList({u"Brot kaufen"_s, u"Wäsche"_s}));
        QVERIFY(card.seen(u"emptyState"_s).isEmpty());
    }

    void showsANewTaskThatLiesBelow()
    {
        TodoCard card(QList<TodoCard::Task>(40, {u"Aufgabe"_s}));
        card.view->click(card.view->find(u"addField"_s));
        card.view->type(u"Neueste"_s);
        card.view->press(Qt::Key_Return);
        QTRY_COMPARE(card.texts(u"rowTitle"_s).last(), u"Neueste"_s);
        const QQuickItem *list = card.view->find(u"todoList"_s);
        const QQuickItem *row = card.seen(u"rowTitle"_s).last();
        QVERIFY(list->mapRectToScene(list->boundingRect()).contains(card.view->centre(row)));
    }

    void finishesAndReopensTasks()
    {
        TodoCard card({{u"a"_s}, {u"b"_s, TodoStatus::doing}, {u"c"_s, TodoStatus::done}});
        QCOMPARE(card.seen(u"doneHeader"_s).size(), 1);
        card.view->click(card.seen(u"statusButton"_s).at(1));
        QTRY_COMPARE(card.texts(u"rowTitle"_s), QStringList({u"a"_s, u"b"_s, u"c"_s}));
        QCOMPARE(card.titles(TodoStatus::done), QStringList({u"b"_s, u"c"_s}));
        // The header has moved up, above the task that is done now.
        QTRY_VERIFY(card.view->centre(card.seen(u"doneHeader"_s).first()).y() <
                    card.view->centre(card.seen(u"rowTitle"_s).at(1)).y());
        QCOMPARE(card.seen(u"doneHeader"_s).size(), 1);

        card.view->click(card.seen(u"statusButton"_s).at(1));
        QCOMPARE(card.titles(TodoStatus::backlog), QStringList({u"a"_s, u"b"_s}));
        card.view->click(card.seen(u"statusButton"_s).first());
        QTRY_COMPARE(card.texts(u"rowTitle"_s), QStringList({u"b"_s, u"a"_s, u"c"_s}));

        card.view->click(card.seen(u"clearButton"_s).first());
        QTRY_COMPARE(card.texts(u"rowTitle"_s), QStringList(u"b"_s));
        QVERIFY(card.seen(u"doneHeader"_s).isEmpty());
        QVERIFY(card.titles(TodoStatus::done).isEmpty());
    }

    void showsOnlyDoneTasksUnderTheirHeader()
    {
        TodoCard card({{u"a"_s, TodoStatus::done}});
        QVERIFY(card.seen(u"emptyState"_s).isEmpty());
        QCOMPARE(card.texts(u"doneHeader"_s), QStringList(u"Erledigt"_s));
        card.view->click(card.seen(u"clearButton"_s).first());
        QTRY_COMPARE(card.seen(u"emptyState"_s).size(), 1);
    }

    void renames_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("title");
        QTest::newRow("Return renames") << u"neu"_s << int(Qt::Key_Return) << u"neu"_s;
        QTest::newRow("Escape does not") << u"neu"_s << int(Qt::Key_Escape) << u"alt"_s;
        QTest::newRow("blanks do not") << u"  "_s << int(Qt::Key_Return) << u"alt"_s;
        QTest::newRow("leaving by Tab does") << u"neu"_s << int(Qt::Key_Tab) << u"neu"_s;
        QTest::newRow("leaving by click does") << u"neu"_s << 0 << u"neu"_s;
    }

    void renames()
    {
        QFETCH(QString, typed);
        QFETCH(int, key);
        QFETCH(QString, title);
        TodoCard card({{u"davor"_s}, {u"alt"_s}});
        card.view->doubleClick(card.seen(u"rowTitle"_s).at(1));
        QTRY_COMPARE(card.focused(), u"rowEditor"_s);
        QCOMPARE(card.seen(u"rowEditor"_s).first()->property("text"), u"alt"_s);
        card.view->type(typed);
        if (key != 0)
            card.view->press(Qt::Key(key));
        else
            card.view->click(card.view->find(u"addField"_s));
        QTRY_VERIFY(card.seen(u"rowEditor"_s).isEmpty());
        QTRY_COMPARE(card.texts(u"rowTitle"_s), QStringList({u"davor"_s, title}));
        QCOMPARE(card.titles(TodoStatus::backlog), QStringList({u"davor"_s, title}));
        if (key == Qt::Key_Return || key == Qt::Key_Escape)
            QCOMPARE(card.focused(), u"todoRow"_s);
    }

    void worksByKeyboardAlone()
    {
        TodoCard card({{u"a"_s}, {u"b"_s}, {u"c"_s}, {u"d"_s, TodoStatus::done}});
        const auto current = [&] {
            const QQuickItem *row = card.view->window().activeFocusItem();
            return row == nullptr ? QString() : row->property("title").toString();
        };
        card.view->click(card.view->find(u"addField"_s));
        QStringList stops;
        for (int stop = 0; stop < 3; ++stop) {
            card.view->press(Qt::Key_Tab);
            stops.append(card.focused());
        }
        QCOMPARE(stops, QStringList({u"todoRow"_s, u"statusButton"_s, u"deleteButton"_s}));
        card.view->press(Qt::Key_Backtab, Qt::ShiftModifier);
        card.view->press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(current(), u"a"_s);
        card.view->press(Qt::Key_Down);
        QCOMPARE(current(), u"b"_s);
        card.view->press(Qt::Key_Space);
        QCOMPARE(card.titles(TodoStatus::done), QStringList({u"b"_s, u"d"_s}));
        // The place stays, not the task: the next one is at hand.
        QCOMPARE(current(), u"c"_s);
        card.view->press(Qt::Key_F2);
        QTRY_COMPARE(card.focused(), u"rowEditor"_s);
        card.view->type(u"C"_s);
        card.view->press(Qt::Key_Return);
        QCOMPARE(current(), u"C"_s);
        card.view->press(Qt::Key_Delete);
        QCOMPARE(card.titles(TodoStatus::backlog), QStringList(u"a"_s));
        QCOMPARE(current(), u"b"_s);
        card.view->press(Qt::Key_End);
        card.view->press(Qt::Key_Delete);
        QCOMPARE(current(), u"b"_s);
        card.view->press(Qt::Key_Home);
        QCOMPARE(current(), u"a"_s);
    }

    void doesOneThingPerPress_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<int>("key");
        QTest::addColumn<QStringList>("open");
        QTest::addColumn<QStringList>("done");
        const QStringList rest{u"b"_s, u"c"_s};
        QTest::newRow("Delete held") << u"todoRow"_s << int(Qt::Key_Delete) << rest << QStringList();
        QTest::newRow("Space held") << u"todoRow"_s << int(Qt::Key_Space) << rest << QStringList(u"a"_s);
        QTest::newRow("Space held on the check mark")
            << u"statusButton"_s << int(Qt::Key_Space) << rest << QStringList(u"a"_s);
        QTest::newRow("Return held on the bin")
            << u"deleteButton"_s << int(Qt::Key_Return) << rest << QStringList();
        QTest::newRow("double click on the bin") << u"deleteButton"_s << 0 << rest << QStringList();
        QTest::newRow("double click on the check mark")
            << u"statusButton"_s << 0 << rest << QStringList(u"a"_s);
    }

    void doesOneThingPerPress()
    {
        QFETCH(QString, where);
        QFETCH(int, key);
        QFETCH(QStringList, open);
        QFETCH(QStringList, done);
        TodoCard card({{u"a"_s}, {u"b"_s}, {u"c"_s}});
        QQuickItem *item = card.seen(where).first();
        const auto hover = [&] {
            card.view->moveTo(card.view->find(u"addField"_s));
            card.view->moveTo(card.seen(where).first());
        };
        hover();
        QTRY_VERIFY(item->isEnabled());
        const QPoint place = card.view->centre(item);
        if (key != 0) {
            item->forceActiveFocus(Qt::TabFocusReason);
            card.view->hold(Qt::Key(key));
        } else {
            card.view->clickAt(place, 1000);
            // A person sees the rows where they have moved to before the second click.
            QTRY_COMPARE(card.texts(u"rowTitle"_s), open + done);
            QTRY_VERIFY(card.seen(u"todoRow"_s)
                            .first()
                            ->contains(card.seen(u"todoRow"_s).first()->mapFromScene(place)));
            hover();
            QTRY_VERIFY(card.seen(where).first()->isEnabled());
            card.view->clickAt(place, 1200);
        }
        QCOMPARE(card.titles(TodoStatus::backlog), open);
        QCOMPARE(card.titles(TodoStatus::done), done);
    }

    void addsOneTaskForAHeldReturn()
    {
        TodoCard card({});
        card.view->click(card.view->find(u"addField"_s));
        card.view->type(u"a"_s);
        card.view->hold(Qt::Key_Return, 5, u"\r"_s);
        QCOMPARE(card.titles(TodoStatus::backlog), QStringList(u"a"_s));
        // The way back leads to what was done last, not to the submitted text.
        const QQuickItem *field = card.view->find(u"addField"_s);
        QVERIFY(!field->property("canUndo").toBool());
        // What was typed and taken away again is the field's own affair.
        card.view->type(u"bc"_s);
        card.view->press(Qt::Key_A, Qt::ControlModifier);
        card.view->press(Qt::Key_Backspace);
        QCOMPARE(card.preferences.draft(u"todo.add"_s), QJsonObject());
        card.view->press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field->property("text"), u"bc"_s);
        QCOMPARE(card.preferences.draft(u"todo.add"_s).value("text"_L1), u"bc"_s);
    }

    void goesOnWithItsDraftsInANewView_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("in sight") << 1;
        QTest::newRow("far below") << 35;
    }

    void goesOnWithItsDraftsInANewView()
    {
        QFETCH(int, row);
        TodoCard card(QList<TodoCard::Task>(40, {u"alt"_s}));
        const QUuid id = card.store->items().at(row).id;
        card.view->click(card.view->find(u"addField"_s));
        card.view->type(u"halb"_s);
        card.edit(row);
        card.view->type(u"neu"_s);
        card.show({300, 200});
        QCOMPARE(card.view->find(u"addField"_s)->property("text"), u"halb"_s);
        QTRY_COMPARE(card.seen(u"rowEditor"_s).size(), 1);
        QQuickItem *editor = card.seen(u"rowEditor"_s).first();
        QCOMPARE(editor->property("text"), u"neu"_s);
        QVERIFY(card.isInSight(editor));
        // What is typed while nothing has the keyboard goes on there.
        const auto *content = card.view->find(u"content"_s)->property("item").value<QQuickItem *>();
        QCOMPARE(content->property("typingTarget").value<QQuickItem *>(), editor);
        editor->forceActiveFocus();
        card.view->type(u"!"_s);
        card.view->press(Qt::Key_Return);
        QCOMPARE(card.store->find(id)->title, u"neu!"_s);

        card.settings.setTodoViewMode(TodoViewMode::kanban);
        QTRY_VERIFY(!card.seen(u"kanbanCard"_s).isEmpty());
        QCOMPARE(card.view->find(u"addField"_s)->property("text"), u"halb"_s);
    }

    void keepsEditingARowOutOfSight()
    {
        TodoCard card(QList<TodoCard::Task>(200, {u"alt"_s}));
        card.edit(1);
        card.view->type(u"neu"_s);
        QQuickItem *list = card.view->find(u"todoList"_s);
        QMetaObject::invokeMethod(list, "positionViewAtEnd");
        QTRY_VERIFY(!card.isInSight(card.seen(u"todoRow"_s).first()));
        QCOMPARE(card.store->items().at(1).title, u"alt"_s);
        // Whatever the view does with the row, typing goes on in it, and is seen.
        card.view->type(u"er"_s);
        QTRY_VERIFY(!card.seen(u"rowEditor"_s).isEmpty() &&
                    card.isInSight(card.seen(u"rowEditor"_s).first()));
        card.view->press(Qt::Key_Return);
        QCOMPARE(card.store->items().at(1).title, u"neuer"_s);
    }

    void staysOpenWhereTheWindowIsLeft()
    {
        TodoCard card({{u"alt"_s}, {u"b"_s}});
        card.edit(0);
        card.view->type(u"neu"_s);
        QQuickView other;
        other.show();
        other.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QCoreApplication::processEvents();
        QCOMPARE(card.store->items().first().title, u"alt"_s);
        card.view->window().requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&card.view->window()));
        QTRY_COMPARE(card.focused(), u"rowEditor"_s);
        card.view->type(u"er"_s);
        // Another row is opened: this one is done with.
        card.view->doubleClick(card.seen(u"rowTitle"_s).last());
        QTRY_COMPARE(card.seen(u"rowEditor"_s).size(), 1);
        QCOMPARE(card.store->items().first().title, u"neuer"_s);
        QTRY_COMPARE(card.seen(u"rowEditor"_s).first()->property("text"), u"b"_s);
    }

    void showsWhatIsBack()
    {
        TodoCard card(QList<TodoCard::Task>(60, {u"alt"_s}));
        card.view->click(card.seen(u"rowTitle"_s).first());
        const QUuid id = card.store->items().first().id;
        card.view->press(Qt::Key_Delete);
        card.view->press(Qt::Key_End);
        card.module.undoHistory()->undo();
        const auto current = [&] {
            const QQuickItem *row = card.view->window().activeFocusItem();
            return row == nullptr ? QUuid() : row->property("taskId").toUuid();
        };
        QTRY_COMPARE(current(), id);
        QVERIFY(card.isInSight(card.view->window().activeFocusItem()));

        card.view->press(Qt::Key_F2);
        card.view->type(u"neu"_s);
        card.view->press(Qt::Key_Escape);
        QTRY_VERIFY(card.seen(u"rowEditor"_s).isEmpty());
        card.view->press(Qt::Key_End);
        card.module.undoHistory()->undo();
        QTRY_COMPARE(card.focused(), u"rowEditor"_s);
        QVERIFY(card.isInSight(card.view->window().activeFocusItem()));
        card.view->type(u"er"_s);
        QCOMPARE(card.seen(u"rowEditor"_s).first()->property("text"), u"neuer"_s);
    }

    void deletesTheRowUnderThePointer()
    {
        TodoCard card({{u"a"_s}, {u"b"_s}, {u"c"_s}});
        const QQuickItem *button = card.seen(u"deleteButton"_s).at(1);
        QCOMPARE(button->opacity(), 0.0);
        const qreal width = card.seen(u"rowTitle"_s).at(1)->width();
        card.view->moveTo(card.seen(u"rowTitle"_s).at(1));
        QTRY_COMPARE(button->opacity(), 1.0);
        QCOMPARE(card.seen(u"rowTitle"_s).at(1)->width(), width);
        card.view->click(button);
        QTRY_COMPARE(card.texts(u"rowTitle"_s), QStringList({u"a"_s, u"c"_s}));
    }

    void leavesRightClicksToTheCard()
    {
        TodoCard card({{u"a"_s}});
        card.view->click(card.seen(u"rowTitle"_s).first(), Qt::RightButton);
        card.view->click(card.seen(u"statusButton"_s).first(), Qt::RightButton);
        QCOMPARE(card.view->root()->property("rightClicks"), 2);
    }

    void changesItsFormInTheQuickMenu()
    {
        TodoCard card({{u"a"_s}});
        card.view->click(card.view->find(u"addField"_s));
        card.view->type(u"halb"_s);
        card.view->click(card.view->find(u"kanbanChoice"_s));
        QCOMPARE(card.preferences.get<QString>(u"todoViewMode"_s), u"kanban"_s);
        QCOMPARE(card.seen(u"kanbanCard"_s).size(), 1);
        QVERIFY(card.seen(u"todoRow"_s).isEmpty());
        QVERIFY(card.view->find(u"kanbanChoice"_s)->property("checked").toBool());
        card.view->click(card.view->find(u"listChoice"_s));
        QCOMPARE(card.seen(u"todoRow"_s).size(), 1);
        QCOMPARE(card.view->find(u"addField"_s)->property("text"), u"halb"_s);
    }

    void keepsControlsApartAtEverySize_data()
    {
        QTest::addColumn<double>("textScale");
        QTest::addColumn<QSize>("size");
        for (const double scale : {0.7, 1.0, 1.6}) {
            for (const QSize &size : {QSize(272, 100), QSize(272, 700), QSize(692, 360)})
                QTest::addRow("%gx, %d x %d", scale, size.width(), size.height()) << scale << size;
        }
    }

    void keepsControlsApartAtEverySize()
    {
        QFETCH(double, textScale);
        QFETCH(QSize, size);
        TodoCard card({{QString(200, u'W')}, {u"kurz"_s}, {u"قائمة المهام الأسبوعية 🎂"_s}},
                      TodoViewMode::list, size, textScale);
        const auto place = [](const QQuickItem *item) { return item->mapRectToScene(item->boundingRect()); };
        for (const QQuickItem *row : card.seen(u"todoRow"_s)) {
            const auto part = [&](const QString &name) { return row->findChild<QQuickItem *>(name); };
            for (const auto &name : {u"statusButton"_s, u"deleteButton"_s}) {
                const QRectF button = place(part(name));
                QVERIFY(button.width() >= 24 && button.height() >= 24);
                QVERIFY(place(row).adjusted(14, 0, -14, 0).contains(button));
            }
            const QQuickItem *title = part(u"rowTitle"_s);
            QVERIFY(place(title).right() <= place(part(u"deleteButton"_s)).left());
            QVERIFY(title->property("contentWidth").toReal() <= title->width());
            QVERIFY(title->property("lineCount").toInt() <= 3);
            QVERIFY(title->property("contentHeight").toReal() <= row->height());
        }
        QVERIFY(!card.seen(u"todoRow"_s).isEmpty());
    }

    void makesOnlyTheRowsInSight()
    {
        TodoCard card(QList<TodoCard::Task>(2000, {u"Aufgabe"_s}));
        QVERIFY(card.seen(u"todoRow"_s).size() < 60);
    }
};

RANDBLATT_TEST_MAIN(TodoListTest, QGuiApplication)
#include "tst_todolist.moc"
