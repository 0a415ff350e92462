#include "modules/todo/TodoActions.h"
#include "modules/todo/TodoTaskModel.h"
#include "settings/UndoHistory.h"
#include "support/TestEnvironment.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

QUuid uuid(int number)
{
    return QUuid(static_cast<uint>(number), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}

/// A store of five tasks, two of them done, the last two with one id; over it the actions and the list's
/// rows.
struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    const QList<TodoItem> items{{uuid(1), u"Milch"_s, TodoStatus::backlog, 1.5, 1},
                                {uuid(2), u"Brot"_s, TodoStatus::done, 2.5, 4},
                                {uuid(3), u" Eier "_s, TodoStatus::doing, 3.5, 2},
                                {uuid(4), u"Salz"_s, TodoStatus::done, 4.5, 4},
                                {uuid(4), u"Zwilling"_s, TodoStatus::backlog, 5.5, 3}};
    std::unique_ptr<TodoStore> store = makeStore();
    UndoHistory history;
    std::unique_ptr<TodoActions> actions = std::make_unique<TodoActions>(*store, history, preferences);
    TodoTaskModel rows{*store, {{TodoStatus::backlog, TodoStatus::doing}, {TodoStatus::done}}};
    TodoTaskModel doneRows{*store, {{TodoStatus::done}}};
    QAbstractItemModelTester tester{&rows, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QAbstractItemModelTester doneTester{&doneRows, QAbstractItemModelTester::FailureReportingMode::QtTest};

    std::unique_ptr<TodoStore> makeStore()
    {
        QList<QByteArray> encoded;
        for (const TodoItem &item : items)
            encoded.append(encodeItem(item));
        preferences.setValue(TodoStore::key(), joinItems(encoded));
        return std::make_unique<TodoStore>(preferences);
    }
    /// As a start after the end of the program would find them.
    void restart()
    {
        actions.reset();
        actions = std::make_unique<TodoActions>(*store, history, preferences);
    }
    [[nodiscard]] QString title(int number) const { return store->find(uuid(number))->title; }
    [[nodiscard]] static QStringList titles(const TodoTaskModel &model)
    {
        QStringList titles;
        for (int row = 0; row < model.count(); ++row)
            titles.append(
                model.data(model.index(row), static_cast<int>(TodoTaskModel::Role::title)).toString());
        return titles;
    }
    /// Whether the rows and what is stored are those of the store.
    [[nodiscard]] bool agrees() const
    {
        TodoTaskModel fresh(*store, {{TodoStatus::backlog, TodoStatus::doing}, {TodoStatus::done}});
        TodoTaskModel freshDone(*store, {{TodoStatus::done}});
        return titles(rows) == titles(fresh) && titles(doneRows) == titles(freshDone) &&
               TodoStore(const_cast<Preferences &>(preferences)).items() == store->items();
    }
};

using Change = std::function<void(TodoActions &)>;

} // namespace

Q_DECLARE_METATYPE(Change)

class TodoActionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesEveryChangeBack_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("offer");
        const auto edited = [](int number, const QString &text) -> Change {
            return [=](TodoActions &actions) {
                actions.beginEdit(uuid(number));
                actions.setEditText(text);
                actions.commitEdit();
            };
        };
        QTest::newRow("deletion of the first")
            << Change([](TodoActions &a) { a.deleteTask(uuid(1)); }) << u"Gelöscht: „Milch“"_s;
        QTest::newRow("deletion in the middle")
            << Change([](TodoActions &a) { a.deleteTask(uuid(3)); }) << u"Gelöscht: „Eier“"_s;
        QTest::newRow("deletion of twins")
            << Change([](TodoActions &a) { a.deleteTask(uuid(4)); }) << u"Gelöscht: „Salz“"_s;
        QTest::newRow("deletion of the done")
            << Change([](TodoActions &a) { a.removeDone(); }) << u"2 Aufgaben gelöscht"_s;
        QTest::newRow("renaming") << edited(1, u" Hafermilch "_s) << u"Umbenannt: „Hafermilch“"_s;
        QTest::newRow("renaming of a title with blanks")
            << edited(3, u"Zehn Eier"_s) << u"Umbenannt: „Zehn Eier“"_s;
        QTest::newRow("renaming to a long title")
            << edited(1, QString(300, u'x')) << u"Umbenannt: „%1…“"_s.arg(QString(79, u'x'));
        QTest::newRow("renaming to the same") << edited(1, u"Milch "_s) << u""_s;
        QTest::newRow("renaming to nothing") << edited(1, u" "_s) << u""_s;
        QTest::newRow("finishing") << Change([](TodoActions &a) { a.toggleDone(uuid(3)); })
                                   << u"Erledigt: „Eier“"_s;
        QTest::newRow("reopening") << Change([](TodoActions &a) { a.toggleDone(uuid(2)); })
                                   << u"Wieder offen: „Brot“"_s;
        QTest::newRow("moving") << Change([](TodoActions &a) { a.setStatusName(uuid(1), u"doing"_s); })
                                << u"In Arbeit: „Milch“"_s;
        QTest::newRow("moving back") << Change([](TodoActions &a) { a.setStatusName(uuid(3), u"backlog"_s); })
                                     << u"Offen: „Eier“"_s;
        QTest::newRow("staying") << Change([](TodoActions &a) { a.setStatusName(uuid(1), u"backlog"_s); })
                                 << u""_s;
        QTest::newRow("nobody") << Change([](TodoActions &a) { a.deleteTask(uuid(9)); }) << u""_s;
    }

    void takesEveryChangeBack()
    {
        QFETCH(Change, change);
        QFETCH(QString, offer);
        Fixture f;
        QSignalSpy returned(f.actions.get(), &TodoActions::returned);
        QSignalSpy reset(&f.rows, &QAbstractItemModel::modelReset);
        change(*f.actions);
        QCOMPARE(f.history.offer(), offer);
        QCOMPARE(f.store->items() != f.items, !offer.isEmpty());
        QCOMPARE(f.history.undo(), !offer.isEmpty());
        QCOMPARE(f.store->items(), f.items);
        QCOMPARE(returned.count(), offer.isEmpty() ? 0 : 1);
        QVERIFY(f.agrees());
        QCOMPARE(reset.count(), 0);
    }

    void takesAnyCourseOfChangesBack()
    {
        for (quint32 seed = 1; seed <= 20; ++seed) {
            Fixture f;
            QRandomGenerator random(seed);
            struct Step
            {
                QList<TodoItem> before;
                qsizetype added;
            };
            QList<Step> steps;
            QList<TodoItem> added;
            const auto undo = [&] {
                const Step step = steps.takeLast();
                QVERIFY(f.history.undo());
                QVERIFY2(f.store->items() == step.before + added.mid(step.added),
                         qPrintable(u"Saat %1"_s.arg(seed)));
            };
            for (int move = 0; move < 60; ++move) {
                const QList<TodoItem> before = f.store->items();
                const QUuid id =
                    before.isEmpty() ? QUuid() : before.at(random.bounded(int(before.size()))).id;
                const int choice = random.bounded(10);
                if (choice < 2) {
                    f.actions->newTitle()->setText(QString::number(move));
                    f.actions->add();
                    added.append(f.store->items().last());
                    continue;
                }
                if (choice < 4)
                    f.actions->deleteTask(id);
                else if (choice < 6)
                    f.actions->setStatusName(id, rawValues<TodoStatus>.at(random.bounded(3)).name);
                else if (choice < 7)
                    f.actions->removeDone();
                else if (choice < 8 && !steps.isEmpty())
                    undo();
                else if (choice >= 8) {
                    f.actions->beginEdit(id);
                    f.actions->setEditText(QString::number(-move));
                    f.actions->commitEdit();
                }
                if ((choice < 7 || choice >= 8) && f.store->items() != before)
                    steps.append({before, added.size()});
                QVERIFY2(f.agrees(), qPrintable(u"Saat %1"_s.arg(seed)));
            }
            while (!steps.isEmpty())
                undo();
            QVERIFY(!f.history.canUndo());
            QVERIFY(f.agrees());
        }
    }

    void leavesAloneWhatHasChangedSince()
    {
        Fixture f;
        f.actions->beginEdit(uuid(1));
        f.actions->setEditText(u"Hafermilch"_s);
        f.actions->commitEdit();
        f.store->rename(uuid(1), u"Kakao"_s);
        f.history.undo();
        QCOMPARE(f.title(1), u"Kakao"_s);
        f.actions->toggleDone(uuid(1));
        f.store->setStatus(uuid(1), TodoStatus::doing);
        f.history.undo();
        QCOMPARE(f.store->find(uuid(1))->status, TodoStatus::doing);
        f.actions->deleteTask(uuid(4));
        for (int number = 1; number < 4; ++number)
            f.store->deleteItem(uuid(number));
        f.history.undo();
        QCOMPARE(f.store->items(), f.items.mid(3));
        QVERIFY(f.agrees());
    }

    void keepsWhatIsBeingTyped()
    {
        Fixture f;
        f.actions->newTitle()->setText(u"Neu"_s);
        f.actions->beginEdit(uuid(1));
        QCOMPARE(f.actions->editText(), u"Milch"_s);
        f.actions->setEditText(u"Hafer"_s);
        f.restart();
        QCOMPARE(f.actions->newTitle()->text(), u"Neu"_s);
        QCOMPARE(f.actions->editedTask(), uuid(1));
        QCOMPARE(f.actions->editText(), u"Hafer"_s);
        QCOMPARE(f.store->items(), f.items);

        f.actions->beginEdit(uuid(2));
        QCOMPARE(f.title(1), u"Hafer"_s);
        QCOMPARE(f.actions->editText(), u"Brot"_s);
        f.actions->commitEdit();
        f.actions->add();
        QCOMPARE(f.store->items().last().title, u"Neu"_s);
        f.restart();
        QVERIFY(f.actions->editedTask().isNull());
        QVERIFY(f.actions->newTitle()->isEmpty());
    }

    void takesADroppedTextUpAgain_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("offered");
        QTest::newRow("changed") << u"Hafermilch "_s << true;
        QTest::newRow("untouched") << u"Milch"_s << false;
        QTest::newRow("emptied") << u" "_s << false;
    }

    void takesADroppedTextUpAgain()
    {
        QFETCH(QString, text);
        QFETCH(bool, offered);
        Fixture f;
        f.actions->beginEdit(uuid(1));
        f.actions->setEditText(text);
        f.actions->dropEdit();
        QVERIFY(f.actions->editedTask().isNull());
        QCOMPARE(f.store->items(), f.items);
        QCOMPARE(f.history.offer(), offered ? u"Änderung verworfen"_s : u""_s);
        // Another one that is open then is not lost for it.
        f.actions->beginEdit(uuid(2));
        f.actions->setEditText(u"Toast"_s);
        QCOMPARE(f.history.undo(), offered);
        QCOMPARE(f.actions->editedTask(), uuid(offered ? 1 : 2));
        QCOMPARE(f.actions->editText(), offered ? text : u"Toast"_s);
        QCOMPARE(f.title(2), offered ? u"Toast"_s : u"Brot"_s);
    }

    void keepsTheTextOfATaskThatGoes()
    {
        Fixture f;
        // Deleted from here, it comes back with its task.
        f.actions->beginEdit(uuid(1));
        f.actions->setEditText(u"Hafermilch"_s);
        f.actions->deleteTask(uuid(1));
        QVERIFY(f.actions->editedTask().isNull());
        f.history.undo();
        QCOMPARE(f.title(1), u"Hafermilch"_s);
        f.history.undo();
        QCOMPARE(f.store->items(), f.items);
        // Gone otherwise, it goes to the field for new ones, after what is there.
        f.actions->beginEdit(uuid(1));
        f.actions->setEditText(u"Hafermilch"_s);
        f.store->deleteItem(uuid(1));
        QVERIFY(f.actions->editedTask().isNull());
        QCOMPARE(f.actions->newTitle()->text(), u"Hafermilch"_s);
        f.actions->beginEdit(uuid(2));
        f.actions->setEditText(u"Toast"_s);
        f.actions.reset();
        f.store->deleteItem(uuid(2));
        f.restart();
        QCOMPARE(f.actions->newTitle()->text(), u"Hafermilch Toast"_s);
        QVERIFY(f.actions->editedTask().isNull());
    }
};

RANDBLATT_TEST_MAIN(TodoActionsTest, QCoreApplication)
#include "tst_todoactions.moc"
