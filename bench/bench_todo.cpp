// How long a change of one of many tasks takes until it is on disk and in the models of the list and the
// board. Each figure is the time of one change; p50 and p99 are over all changes of a run, in microseconds.

#include "modules/todo/TodoActions.h"
#include "modules/todo/TodoColumn.h"
#include "settings/Preferences.h"
#include "settings/UndoHistory.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

/// The JSON of `count` tasks, a third in each status.
QByteArray tasks(qsizetype count)
{
    QList<QByteArray> encoded;
    for (qsizetype i = 0; i < count; ++i) {
        const QString title = u"Aufgabe Nummer %1 mit einem Titel von gewöhnlicher Länge"_s.arg(i);
        const TodoStatus status = rawValues<TodoStatus>.at(static_cast<size_t>(i) % 3).value;
        encoded.append(
            encodeItem({QUuid::createUuid(), title, status, 784111777.123 + static_cast<double>(i), i + 1}));
    }
    return joinItems(encoded);
}

/// A store of tasks on a real file, the models over it, and the actions that give changes their ways back.
struct Fixture
{
    QTemporaryDir folder;
    Preferences preferences{folder.filePath(u"preferences.sqlite"_s)};
    std::unique_ptr<TodoStore> store;
    std::vector<std::unique_ptr<TodoTaskModel>> models;
    UndoHistory history;
    std::unique_ptr<TodoActions> actions;

    explicit Fixture(qsizetype count)
    {
        preferences.setValue(TodoStore::key(), tasks(count));
        store = std::make_unique<TodoStore>(preferences);
        models.push_back(std::make_unique<TodoTaskModel>(
            *store, TodoTaskModel::Groups{{TodoStatus::backlog, TodoStatus::doing}, {TodoStatus::done}}));
        for (const TodoStatusCase &status : rawValues<TodoStatus>)
            models.push_back(std::make_unique<TodoTaskModel>(*store, TodoTaskModel::Groups{{status.value}}));
        actions = std::make_unique<TodoActions>(*store, history, preferences);
    }
};

/// Repeats `change`, which gets the fixture and the number of the repetition.
template <typename Change>
void measure(benchmark::State &state, Change change)
{
    Fixture fixture(state.range(0));
    std::vector<double> microseconds;
    qsizetype repetition = 0;
    for ([[maybe_unused]] auto iteration : state) {
        const auto begin = std::chrono::steady_clock::now();
        change(fixture, repetition++);
        const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - begin;
        microseconds.push_back(taken.count());
    }
    std::sort(microseconds.begin(), microseconds.end());
    const auto percentile = [&](double part) {
        return microseconds.at(static_cast<size_t>(part * static_cast<double>(microseconds.size() - 1)));
    };
    state.counters["p50_us"] = percentile(0.5);
    state.counters["p99_us"] = percentile(0.99);
    state.counters["max_us"] = microseconds.back();
}

QUuid taskAt(const Fixture &fixture, qsizetype repetition)
{
    const QList<TodoItem> &items = fixture.store->items();
    return items.at(repetition * 997 % items.size()).id;
}

void addTask(benchmark::State &state)
{
    measure(state, [](Fixture &fixture, qsizetype) {
        fixture.actions->newTitle()->setText(u"Noch eine Aufgabe mit einem Titel"_s);
        fixture.actions->add();
    });
}

void toggleTask(benchmark::State &state)
{
    measure(state, [](Fixture &fixture, qsizetype repetition) {
        fixture.actions->toggleDone(taskAt(fixture, repetition));
    });
}

void renameTask(benchmark::State &state)
{
    measure(state, [](Fixture &fixture, qsizetype repetition) {
        fixture.actions->beginEdit(taskAt(fixture, repetition));
        fixture.actions->setEditText(u"Umbenannt zum %1. Mal"_s.arg(repetition));
        fixture.actions->commitEdit();
    });
}

void deleteTask(benchmark::State &state)
{
    measure(state, [](Fixture &fixture, qsizetype repetition) {
        fixture.actions->deleteTask(taskAt(fixture, repetition));
    });
}

/// Every other change is the undoing of the one before.
void deleteAndUndo(benchmark::State &state)
{
    measure(state, [](Fixture &fixture, qsizetype repetition) {
        if (repetition % 2 == 0)
            fixture.actions->deleteTask(taskAt(fixture, repetition));
        else
            fixture.history.undo();
    });
}

void loadTasks(benchmark::State &state)
{
    Preferences preferences(Preferences::inMemory());
    preferences.setValue(TodoStore::key(), tasks(state.range(0)));
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(TodoStore(preferences).items().size());
}

} // namespace

BENCHMARK(addTask)->Arg(20)->Arg(10'000)->Iterations(300)->Unit(benchmark::kMicrosecond);
BENCHMARK(toggleTask)->Arg(20)->Arg(10'000)->Iterations(300)->Unit(benchmark::kMicrosecond);
BENCHMARK(renameTask)->Arg(20)->Arg(10'000)->Iterations(300)->Unit(benchmark::kMicrosecond);
BENCHMARK(deleteTask)->Arg(10'000)->Iterations(300)->Unit(benchmark::kMicrosecond);
BENCHMARK(deleteAndUndo)->Arg(10'000)->Iterations(300)->Unit(benchmark::kMicrosecond);
BENCHMARK(loadTasks)->Arg(10'000)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
