#include "TodoCard.h"
#include "support/TestEnvironment.h"

#include <QGuiApplication>
#include <QWheelEvent>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// The to-do card with its board.
struct Board : TodoCard
{
    explicit Board(const QList<Task> &tasks, const QSize &size = QSize(392, 360))
        : TodoCard(tasks, TodoViewMode::kanban, size)
    {
    }

    /// The label of the column that fills the view; none between two.
    [[nodiscard]] QString column() const
    {
        for (const QQuickItem *column : seen(u"kanbanColumn"_s)) {
            if (qAbs(column->mapToScene({}).x()) < 0.5 && column->width() == view->window().width())
                return column->findChild<QQuickItem *>(u"columnLabel"_s)->property("text").toString();
        }
        return {};
    }
    [[nodiscard]] bool menuIsOpen() const { return !seen(u"menuItem-delete"_s).isEmpty(); }
};

} // namespace

class KanbanTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsThreeEmptyColumns()
    {
        Board board({});
        for (const QString &label : {u"Offen"_s, u"In Arbeit"_s, u"Erledigt"_s}) {
            QTRY_COMPARE(board.column(), label);
            QCOMPARE(board.texts(u"columnCount"_s), QStringList(u"0"_s));
            QCOMPARE(board.texts(u"emptyColumn"_s), QStringList(u"Keine Aufgaben"_s));
            board.view->click(board.seen(u"nextColumn"_s).first());
        }
        // At either end the dimmed half of the sign leads nowhere.
        QCOMPARE(board.column(), u"Erledigt"_s);
        board.view->click(board.seen(u"previousColumn"_s).first());
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
    }

    void movesCardsByMouse()
    {
        Board board({{u"alt"_s}, {u"mittel"_s, TodoStatus::done}, {u"jung"_s, TodoStatus::done}});
        board.view->click(board.seen(u"cardMenuButton"_s).first());
        QTRY_VERIFY(board.menuIsOpen());
        board.view->click(board.seen(u"menuItem-backlog"_s).first());
        QTRY_VERIFY(!board.menuIsOpen());
        QCOMPARE(board.texts(u"kanbanCard"_s), QStringList(u"alt"_s));

        board.view->click(board.seen(u"cardMenuButton"_s).first());
        QTRY_VERIFY(board.menuIsOpen());
        board.view->click(board.seen(u"menuItem-done"_s).first());
        QTRY_VERIFY(!board.menuIsOpen());
        QCOMPARE(board.titles(TodoStatus::done), QStringList({u"alt"_s, u"mittel"_s, u"jung"_s}));
        QTRY_COMPARE(board.texts(u"emptyColumn"_s).size(), 1);
        QCOMPARE(board.texts(u"columnCount"_s), QStringList(u"0"_s));
        QCOMPARE(board.column(), u"Offen"_s);
        board.view->click(board.seen(u"nextColumn"_s).first());
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
        board.view->click(board.seen(u"nextColumn"_s).first());
        QTRY_COMPARE(board.column(), u"Erledigt"_s);
        QCOMPARE(board.texts(u"kanbanCard"_s), QStringList({u"alt"_s, u"mittel"_s, u"jung"_s}));
    }

    void deletesTheLastCardOfAColumn()
    {
        Board board({{u"a"_s}});
        board.view->click(board.seen(u"cardMenuButton"_s).first());
        QTRY_VERIFY(board.menuIsOpen());
        board.view->click(board.seen(u"menuItem-delete"_s).first());
        QTRY_COMPARE(board.texts(u"columnCount"_s), QStringList(u"0"_s));
        QVERIFY(board.store->items().isEmpty());
        QCOMPARE(board.texts(u"emptyColumn"_s).size(), 1);
    }

    void worksByKeyboardAlone()
    {
        Board board({{u"a"_s}, {u"b"_s}, {u"c"_s}, {u"x"_s, TodoStatus::doing}});
        const auto current = [&] {
            const QQuickItem *card = board.view->window().activeFocusItem();
            return card == nullptr ? QString() : card->property("title").toString();
        };
        board.view->click(board.view->find(u"addField"_s));
        QStringList stops;
        for (int stop = 0; stop < 3; ++stop) {
            board.view->press(Qt::Key_Tab);
            stops.append(board.focused());
        }
        QCOMPARE(stops, QStringList({u"kanbanCard"_s, u"cardMenuButton"_s, u"nextColumn"_s}));
        board.view->press(Qt::Key_Backtab, Qt::ShiftModifier);
        board.view->press(Qt::Key_Backtab, Qt::ShiftModifier);
        board.view->press(Qt::Key_Down);
        QCOMPARE(current(), u"b"_s);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Menu}) {
            board.view->press(key);
            QTRY_VERIFY(board.menuIsOpen());
            board.view->press(Qt::Key_Escape);
            QTRY_VERIFY(!board.menuIsOpen());
            QTRY_COMPARE(current(), u"b"_s);
        }
        board.view->press(Qt::Key_Return);
        QTRY_VERIFY(board.menuIsOpen());
        board.view->press(Qt::Key_Down);
        board.view->press(Qt::Key_Return);
        QCOMPARE(board.titles(TodoStatus::doing), QStringList({u"b"_s, u"x"_s}));
        QTRY_COMPARE(current(), u"c"_s);
        board.view->press(Qt::Key_Delete);
        QCOMPARE(board.titles(TodoStatus::backlog), QStringList(u"a"_s));
        QCOMPARE(current(), u"a"_s);
        board.view->press(Qt::Key_Right);
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
        board.view->press(Qt::Key_Home);
        QCOMPARE(current(), u"b"_s);
        board.view->press(Qt::Key_Right);
        QTRY_COMPARE(board.column(), u"Erledigt"_s);
        QCOMPARE(board.focused(), u"previousColumn"_s);
        board.view->press(Qt::Key_Return);
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
    }

    void turnsPagesAndStaysThere()
    {
        Board board({{u"a"_s}, {u"x"_s, TodoStatus::doing}});
        QVERIFY(!board.seen(u"previousColumn"_s).first()->isEnabled());
        board.view->click(board.view->find(u"addField"_s));
        board.view->press(Qt::Key_PageDown, Qt::ControlModifier);
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
        QCOMPARE(board.focused(), u"addField"_s);
        board.view->type(u"neu"_s);
        board.view->press(Qt::Key_Return);
        board.store->setStatus(board.store->items().first().id, TodoStatus::doing);
        QTRY_COMPARE(board.texts(u"kanbanCard"_s), QStringList({u"a"_s, u"x"_s}));
        QCOMPARE(board.column(), u"In Arbeit"_s);
        QCOMPARE(board.titles(TodoStatus::backlog), QStringList(u"neu"_s));
        board.view->window().resize(500, 400);
        QTRY_COMPARE(board.view->root()->width(), 500.0);
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
        board.view->press(Qt::Key_PageUp, Qt::ControlModifier);
        board.view->press(Qt::Key_PageUp, Qt::ControlModifier);
        QTRY_COMPARE(board.column(), u"Offen"_s);
    }

    void turnsPagesByWheel()
    {
        Board board({{u"a"_s}});
        const QPointF place = board.view->centre(board.seen(u"kanbanCard"_s).first());
        const auto wheel = [&](const QPoint &angle) {
            QWheelEvent event(place, board.view->window().mapToGlobal(place), {}, angle, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&board.view->window(), &event);
        };
        const QQuickItem *pages = board.view->find(u"kanbanPages"_s);
        // One swipe on a touchpad is one page, however far it goes.
        for (int event = 0; event < 20; ++event)
            wheel({-30, 0});
        QCOMPARE(pages->property("currentIndex"), 1);
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
        wheel({0, -120});
        QCOMPARE(pages->property("currentIndex"), 1);
        wheel({120, 0});
        QTRY_COMPARE(board.column(), u"Offen"_s);
    }

    void doesOneThingPerKey()
    {
        const QList<TodoCard::Task> tasks{{u"a"_s}, {u"b"_s, TodoStatus::doing}, {u"c"_s, TodoStatus::doing}};
        Board board(tasks);
        board.view->click(board.view->find(u"addField"_s));
        board.view->press(Qt::Key_PageDown, Qt::ControlModifier);
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
        board.view->click(board.seen(u"kanbanCard"_s).first());
        // The menu that the key opens has no use for the rest of it.
        board.view->hold(Qt::Key_Return);
        QTRY_VERIFY(board.menuIsOpen());
        QCOMPARE(board.titles(TodoStatus::doing), QStringList({u"b"_s, u"c"_s}));
        board.view->press(Qt::Key_Down);
        board.view->press(Qt::Key_Down);
        board.view->hold(Qt::Key_Return);
        QTRY_VERIFY(!board.menuIsOpen());
        QCOMPARE(board.titles(TodoStatus::doing), QStringList(u"c"_s));
        QCOMPARE(board.titles(TodoStatus::done), QStringList(u"b"_s));
        QTRY_COMPARE(board.focused(), u"kanbanCard"_s);
        board.store->add(u"d"_s, TodoStatus::doing);
        board.view->hold(Qt::Key_Delete);
        QCOMPARE(board.titles(TodoStatus::doing), QStringList(u"d"_s));
    }

    void turnsToWhatIsBack()
    {
        Board board({{u"a"_s}, {u"b"_s}});
        board.view->click(board.seen(u"kanbanCard"_s).last());
        board.view->press(Qt::Key_Delete);
        board.view->press(Qt::Key_PageDown, Qt::ControlModifier);
        QTRY_COMPARE(board.column(), u"In Arbeit"_s);
        board.module.undoHistory()->undo();
        QTRY_COMPARE(board.column(), u"Offen"_s);
        QCOMPARE(board.texts(u"kanbanCard"_s), QStringList({u"a"_s, u"b"_s}));
        QTRY_COMPARE(board.focused(), u"kanbanCard"_s);
        QCOMPARE(board.view->window().activeFocusItem()->property("title"), u"b"_s);
    }

    void keepsTheMenuInTheWindow()
    {
        Board board(QList<TodoCard::Task>(30, {QString(200, u'W')}), {272, 400});
        const auto buttons = board.seen(u"cardMenuButton"_s);
        const auto *lowest = *std::find_if(buttons.crbegin(), buttons.crend(), [](const QQuickItem *button) {
            return ViewTest::centre(button).y() < 400;
        });
        board.view->click(lowest);
        QTRY_VERIFY(board.menuIsOpen());
        const QRectF window(QPointF(), QSizeF(board.view->window().size()));
        for (const auto &name : {u"menuItem-backlog"_s, u"menuItem-delete"_s}) {
            const QQuickItem *entry = board.seen(name).first();
            QVERIFY(window.contains(entry->mapRectToScene(entry->boundingRect())));
        }
        for (const QQuickItem *card : board.seen(u"kanbanCard"_s))
            QVERIFY(card->height() < 100);
    }
};

RANDBLATT_TEST_MAIN(KanbanTest, QGuiApplication)
#include "tst_kanban.moc"
