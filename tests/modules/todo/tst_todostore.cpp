#include "modules/todo/TodoStore.h"
#include "settings/Preferences.h"
#include "support/TestEnvironment.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

constexpr auto firstId = "6B29FC40-CA47-1067-B31D-00DD010662DA";
constexpr auto secondId = "DEADBEEF-0000-4000-8000-00000000CAFE";

/// JSON written with single quotes.
QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}

QByteArray task(const char *id, const char *title, const char *status, qint64 order)
{
    return json(QByteArray("{'id':'") + id + "','title':'" + title + "','status':'" + status +
                "','createdAt':1,'order':" + QByteArray::number(order) + '}');
}

const auto keptKey = u"todoItems.v1.unlesbar-2025-11-06T094937"_s;

double testClock()
{
    return 784111777.5;
}

struct Fixture
{
    Preferences preferences{Preferences::inMemory()};
    std::unique_ptr<TodoStore> store;

    explicit Fixture(const QByteArray &json = {})
    {
        if (!json.isNull())
            preferences.setValue(TodoStore::key(), json);
        store = std::make_unique<TodoStore>(preferences, testClock);
    }

    [[nodiscard]] QByteArray stored() const
    {
        return preferences.get<QByteArray>(TodoStore::key()).value_or("nichts");
    }
    [[nodiscard]] QStringList titles(TodoStatus status) const
    {
        QStringList titles;
        for (const TodoItem &item : store->items(status))
            titles.append(item.title);
        return titles;
    }
    [[nodiscard]] QUuid id(int position) const { return store->items().at(position).id; }
    /// Whether the operation stores the tasks, also where they stay the same.
    template <typename Operation>
    [[nodiscard]] bool saves(Operation operation)
    {
        preferences.setValue(TodoStore::key(), QByteArray("ungespeichert"));
        operation();
        return stored() != "ungespeichert";
    }
};

} // namespace

class TodoStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storesTheTasksAsJson()
    {
        Fixture f;
        QCOMPARE(f.stored(), QByteArray("nichts"));
        f.store->add(u"  1/2 \"Müsli\"\\\t\u0001🥣\n"_s);
        const QByteArray id = f.id(0).toByteArray(QUuid::WithoutBraces).toUpper();
        const QByteArray title = "'1\\/2 \\'Müsli\\'\\\\\\t\\u0001🥣'";
        const QByteArray first = json("{'id':'" + id + "','title':" + title +
                                      ",'status':'backlog','createdAt':784111777.5,'order':1}");
        QCOMPARE(f.stored(), '[' + first + ']');

        f.store->add(u"Zweite"_s, TodoStatus::doing);
        QVERIFY(f.stored().startsWith(QByteArray('[' + first + ",{")));
        const TodoStore reloaded(f.preferences);
        QCOMPARE(reloaded.items(), f.store->items());
    }

    void readsEveryFormOfTheFiveMembers()
    {
        const QByteArray text =
            json("[ { 'order': 7, 'createdAt': 784111777.123456, 'color': 'rot', 'status': 'doing', "
                 "'title': '', 'id': '6b29fc40-ca47-1067-b31d-00dd010662da' }, ") +
            task("00000000-0000-0000-0000-000000000000", "n", "done", -3) + ']';
        Fixture f(text);
        const QUuid id = QUuid::fromString(QLatin1StringView(firstId));
        const QList<TodoItem> expected{{id, u""_s, TodoStatus::doing, 784111777.123456, 7},
                                       {QUuid(), u"n"_s, TodoStatus::done, 1.0, -3}};
        QCOMPARE(f.store->items(), expected);
        QCOMPARE(f.stored(), text);
        f.store->save();
        QVERIFY(f.stored().startsWith(json("[{'id':'6B29FC40-CA47-1067-B31D-00DD010662DA'")));
        QVERIFY(f.stored().contains(json("'createdAt':784111777.123456,'order':7}")));
        QCOMPARE(TodoStore(f.preferences).items(), expected);
    }

    void keepsUndecodableDataBeforeTheNextSave_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("none") << QByteArray();
        const QByteArray good = task(firstId, "gut", "backlog", 1);
        const auto altered = [&](const char *from, const char *to) -> QByteArray {
            return '[' + good + ',' + QByteArray(good).replace(json(from), json(to)) + ']';
        };
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("cut off") << QByteArray('[' + good);
        QTest::newRow("no array") << good;
        QTest::newRow("no object") << QByteArray('[' + good + ",3]");
        QTest::newRow("unknown status") << altered("backlog", "later");
        QTest::newRow("no order") << altered(",'order':1", "");
        QTest::newRow("fractional order") << altered("'order':1", "'order':1.5");
        QTest::newRow("order beyond 64 bits") << altered("'order':1", "'order':9223372036854775808");
        QTest::newRow("order as text") << altered("'order':1", "'order':'1'");
        QTest::newRow("date as text") << altered("'createdAt':1", "'createdAt':'2025-11-06'");
        QTest::newRow("title is a number") << altered("'gut'", "5");
        QTest::newRow("id in braces") << altered(firstId, "{6B29FC40-CA47-1067-B31D-00DD010662DA}");
        QTest::newRow("id too short") << altered(firstId, "6B29FC40");
    }

    void keepsUndecodableDataBeforeTheNextSave()
    {
        QFETCH(QByteArray, stored);
        Fixture f(stored);
        const auto kept = [&](const QString &copy = {}) {
            return f.preferences.get<QByteArray>(keptKey + copy);
        };
        QVERIFY(f.store->items().isEmpty());
        QCOMPARE(f.stored(), stored.isNull() ? "nichts" : stored);
        QVERIFY(!kept());
        if (!stored.isNull())
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression(u"Aufgaben unlesbar.*„"_s + keptKey + u"“"_s));
        f.store->add(u"neu"_s);
        f.store->add(u"noch eine"_s);
        QCOMPARE(TodoStore(f.preferences).items().size(), 2);
        QCOMPARE(kept().has_value(), !stored.isNull());
        QCOMPARE(kept().value_or(QByteArray()), stored);
        QVERIFY(!kept(u"-2"_s));

        // What is kept already stays, also within one second.
        f.preferences.setValue(TodoStore::key(), u"ein Text"_s);
        f.store = std::make_unique<TodoStore>(f.preferences, testClock);
        f.store->removeDone();
        QCOMPARE(kept().value_or(QByteArray()), stored);
        QCOMPARE(f.preferences.get<QString>(keptKey + (stored.isNull() ? u""_s : u"-2"_s)), u"ein Text"_s);
        QCOMPARE(f.stored(), "[]");
    }

    void overwritesNothingThatItCannotKeep()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"preferences.sqlite"_s);
        Preferences(path).setValue(TodoStore::key(), QByteArray("unlesbar"));
        {
            // Another program holds the file, until the store is about to end.
            Preferences preferences(path);
            TodoStore store(preferences, testClock);
            sqlite3 *other = nullptr;
            QCOMPARE(sqlite3_open(path.toUtf8(), &other), SQLITE_OK);
            QCOMPARE(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
            store.add(u"neu"_s);
            QCOMPARE(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
            sqlite3_close(other);
            QCOMPARE(Preferences(path).get<QByteArray>(TodoStore::key()), QByteArray("unlesbar"));
        }
        const Preferences preferences(path);
        QCOMPARE(preferences.get<QByteArray>(keptKey), QByteArray("unlesbar"));
        QVERIFY(preferences.get<QByteArray>(TodoStore::key())->contains("neu"));
    }

    void ordersByCreationInEveryStatus()
    {
        const Fixture f;
        f.store->add(u"a"_s);
        f.store->add(u"b"_s, TodoStatus::doing);
        f.store->add(u"c"_s);
        f.store->add(u"d"_s);
        f.store->setStatus(f.id(3), TodoStatus::done);
        f.store->setStatus(f.id(0), TodoStatus::done);
        QCOMPARE(f.titles(TodoStatus::done), QStringList({u"a"_s, u"d"_s}));
        f.store->deleteItem(f.id(3));
        f.store->add(u"e"_s);
        QCOMPARE(f.store->items().last().order, 4);
        QCOMPARE(f.titles(TodoStatus::backlog), QStringList({u"c"_s, u"e"_s}));
    }

    void keepsArrayOrderWhereTheOrderIsEqual()
    {
        const auto largest = std::numeric_limits<qint64>::max();
        const Fixture f('[' + task(firstId, "x", "doing", largest) + ',' +
                        task(secondId, "y", "doing", largest) + ',' + task(secondId, "w", "doing", 2) + ']');
        QCOMPARE(f.titles(TodoStatus::doing), QStringList({u"w"_s, u"x"_s, u"y"_s}));
        // There is no larger order than the largest.
        f.store->add(u"z"_s, TodoStatus::doing);
        QCOMPARE(f.titles(TodoStatus::doing), QStringList({u"w"_s, u"x"_s, u"y"_s, u"z"_s}));
    }

    void savesAsTheOperationsPromise()
    {
        Fixture f('[' + task(firstId, "x", "doing", 1) + ']');
        const QUuid known = f.id(0);
        const QUuid unknown = QUuid::createUuid();
        QVERIFY(!f.saves([&] { f.store->add(u"   "_s); }));
        QVERIFY(!f.saves([&] { f.store->rename(known, u" \n\t"_s); }));
        QVERIFY(!f.saves([&] { f.store->rename(unknown, u"neu"_s); }));
        QVERIFY(!f.saves([&] { f.store->setStatus(unknown, TodoStatus::done); }));
        QVERIFY(!f.saves([&] { f.store->setStatusName(known, u"later"_s); }));
        QVERIFY(!f.saves([&] { f.store->toggleDone(unknown); }));
        QVERIFY(f.saves([&] { f.store->setStatus(known, TodoStatus::doing); }));
        QVERIFY(f.saves([&] { f.store->rename(known, u"x"_s); }));
        QVERIFY(f.saves([&] { f.store->removeDone(); }));
        QVERIFY(f.saves([&] { f.store->deleteItem(unknown); }));
        QCOMPARE(f.titles(TodoStatus::doing), QStringList(u"x"_s));
    }

    void changesAndAnnouncesWhatItIsTold()
    {
        const Fixture f('[' + task(firstId, "x", "doing", 1) + ',' + task(secondId, "y", "backlog", 2) + ',' +
                        task(firstId, "zwilling", "done", 3) + ']');
        QSignalSpy changed(f.store.get(), &TodoStore::itemChanged);
        QSignalSpy removed(f.store.get(), &TodoStore::itemsRemoved);
        const QUuid twins = f.id(0);
        f.store->rename(twins, u" neu "_s);
        f.store->rename(twins, u"neu"_s);
        QCOMPARE(f.store->items().at(0).title, u"neu"_s);
        QCOMPARE(f.store->items().at(2).title, u"zwilling"_s);
        // Back from done, a task that was in progress is open.
        f.store->toggleDone(twins);
        QCOMPARE(f.store->items().at(0).status, TodoStatus::done);
        f.store->toggleDone(twins);
        QCOMPARE(f.store->items().at(0).status, TodoStatus::backlog);
        QCOMPARE(changed.count(), 3);

        f.store->deleteItem(f.id(2));
        QCOMPARE(removed.takeFirst().at(0).value<QList<int>>(), QList<int>({0, 2}));
        f.store->setStatusName(f.id(0), u"done"_s);
        f.store->removeDone();
        QCOMPARE(removed.takeFirst().at(0).value<QList<int>>(), QList<int>({0}));
        QCOMPARE(f.stored(), QByteArray("[]"));
    }

    void tellsTheTimeSinceTheReferenceDate()
    {
        Preferences preferences(Preferences::inMemory());
        TodoStore store(preferences);
        const QDateTime reference(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
        const auto before = static_cast<double>(reference.msecsTo(QDateTime::currentDateTimeUtc())) / 1000.0;
        store.add(u"jetzt"_s);
        const auto after = static_cast<double>(reference.msecsTo(QDateTime::currentDateTimeUtc())) / 1000.0;
        QVERIFY(store.items().first().createdAt >= before - 0.001);
        QVERIFY(store.items().first().createdAt <= after + 0.001);
    }
};

RANDBLATT_TEST_MAIN(TodoStoreTest, QCoreApplication)
#include "tst_todostore.moc"
