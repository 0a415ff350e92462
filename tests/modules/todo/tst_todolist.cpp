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
