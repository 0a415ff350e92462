#include "modules/todo/TodoStore.h"
#include "modules/todo/TodoTaskModel.h"
#include "settings/Preferences.h"
#include "support/TestEnvironment.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

using Role = TodoTaskModel::Role;

/// A model under observation.
struct Observed
{
    TodoTaskModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
    QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy reset{&model, &QAbstractItemModel::modelReset};

    Observed(const TodoStore &store, const TodoTaskModel::Groups &groups)
        : model(store, groups)
    {
    }

    [[nodiscard]] QStringList titles() const
    {
        QStringList titles;
        for (int row = 0; row < model.count(); ++row)
            titles.append(value(row, Role::title).toString());
        return titles;
    }
    [[nodiscard]] QVariant value(int row, Role role) const
    {
        return model.data(model.index(row), static_cast<int>(role));
    }
    /// How often rows were inserted, removed, moved and changed since the last call.
    [[nodiscard]] QList<qsizetype> takeCounts()
    {
        const QList<qsizetype> counts{inserted.count(), removed.count(), moved.count(), changed.count()};
        for (QSignalSpy *spy : {&inserted, &removed, &moved, &changed})
            spy->clear();
        return counts;
    }
};

/// A store with the model of the list and that of the column of the done tasks.
struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    TodoStore store{preferences};
    Observed list{store, {{TodoStatus::backlog, TodoStatus::doing}, {TodoStatus::done}}};
    Observed doneColumn{store, {{TodoStatus::done}}};

    explicit Fixture(const QStringList &titles)
    {
        for (const QString &title : titles)
            store.add(title);
        (void)list.takeCounts();
    }

    [[nodiscard]] QUuid id(int position) const { return store.items().at(position).id; }
};

} // namespace

class TodoTaskModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void announcesEachChangeAsWhatItIs()
    {
        Fixture f({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
        f.store.toggleDone(f.id(3));
        // At its end already: done, but not moved.
        QCOMPARE(f.list.takeCounts(), QList<qsizetype>({0, 0, 0, 1}));
        QCOMPARE(f.doneColumn.takeCounts(), QList<qsizetype>({1, 0, 0, 0}));
        f.store.toggleDone(f.id(1));
        QCOMPARE(f.list.takeCounts(), QList<qsizetype>({0, 0, 1, 1}));
        QCOMPARE(f.list.titles(), QStringList({u"a"_s, u"c"_s, u"b"_s, u"d"_s}));
        QCOMPARE(f.doneColumn.titles(), QStringList({u"b"_s, u"d"_s}));
        QCOMPARE(f.list.value(2, Role::group), 1);
        QCOMPARE(f.list.value(2, Role::done), true);
        QCOMPARE(f.list.value(2, Role::status), u"done"_s);
        QCOMPARE(f.list.value(2, Role::taskId), f.id(1));

        f.store.rename(f.id(0), u"A"_s);
        QCOMPARE(f.list.takeCounts(), QList<qsizetype>({0, 0, 0, 1}));
        f.store.add(u"e"_s);
        QCOMPARE(f.list.takeCounts(), QList<qsizetype>({1, 0, 0, 0}));
        QCOMPARE(f.list.titles(), QStringList({u"A"_s, u"c"_s, u"e"_s, u"b"_s, u"d"_s}));
        (void)f.doneColumn.takeCounts();
        f.store.removeDone();
        QCOMPARE(f.list.takeCounts(), QList<qsizetype>({0, 1, 0, 0}));
        QCOMPARE(f.doneColumn.takeCounts(), QList<qsizetype>({0, 1, 0, 0}));
        QCOMPARE(f.list.titles(), QStringList({u"A"_s, u"c"_s, u"e"_s}));
        f.store.setStatus(f.id(1), TodoStatus::doing);
        QCOMPARE(f.list.takeCounts(), QList<qsizetype>({0, 0, 0, 1}));
        QCOMPARE(f.list.titles(), QStringList({u"A"_s, u"c"_s, u"e"_s}));
    }

    void followsAnyCourseOfChanges()
    {
        Fixture f({});
        QRandomGenerator random(20251122);
        for (int step = 0; step < 600; ++step) {
            // Whatever is announced, an index that was remembered leads to its task or to none.
            QHash<QUuid, QPersistentModelIndex> remembered;
            for (int row = 0; row < f.list.model.count(); ++row)
                remembered.insert(f.list.value(row, Role::taskId).toUuid(), f.list.model.index(row));
            const auto size = static_cast<int>(f.store.items().size());
            const QUuid id = size > 0 ? f.id(random.bounded(size)) : QUuid::createUuid();
            const int choice = random.bounded(100);
            if (choice < 40)
                f.store.add(QString::number(step), rawValues<TodoStatus>.at(random.bounded(3)).value);
            else if (choice < 75)
                f.store.setStatus(id, rawValues<TodoStatus>.at(random.bounded(3)).value);
            else if (choice < 85)
                f.store.rename(id, QString::number(-step));
            else if (choice < 97)
                f.store.deleteItem(id);
            else
                f.store.removeDone();

            QStringList open;
            for (const TodoItem &item : f.store.items()) {
                if (item.status != TodoStatus::done)
                    open.append(item.title);
            }
            QStringList done;
            for (const TodoItem &item : f.store.items(TodoStatus::done))
                done.append(item.title);
            QCOMPARE(f.list.titles(), open + done);
            QCOMPARE(f.doneColumn.titles(), done);
            for (auto it = remembered.cbegin(); it != remembered.cend(); ++it) {
                if (it->isValid())
                    QCOMPARE(it->data(static_cast<int>(Role::taskId)).toUuid(), it.key());
            }
        }
        QCOMPARE(f.list.reset.count(), 0);
        QCOMPARE(f.doneColumn.reset.count(), 0);
    }
};

RANDBLATT_TEST_MAIN(TodoTaskModelTest, QCoreApplication)
#include "tst_todotaskmodel.moc"
