// How long a scratch pad takes to open, up to its first frame, and how long a key that is typed in its middle
// takes until its text is in the editor and on disk: p50 and p99 over all keys of a run, in microseconds. The
// frames that show it are drawn between the keys and counted apart.

#include "modules/notes/NotesModule.h"
#include "platform/LoginItem.h"
#include "platform/ScriptRunner.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

class NoLoginItem : public LoginItem
{
public:
    [[nodiscard]] bool isRegistered() const override { return false; }
    std::optional<QString> registerItem() override { return {}; }
    std::optional<QString> unregisterItem() override { return {}; }
};

/// Texts that editors find easy and hard.
enum Shape { lines, oneLine, noBlanks };

QString textOf(Shape shape, qsizetype length)
{
    const QString line = u"Eine Zeile, wie man sie sich eben so notiert, mit etwas Text darin.\n"_s;
    QString text = line.repeated(length / line.size() + 1).first(length);
    if (shape == oneLine)
        text.replace(u'\n', u' ');
    if (shape == noBlanks)
        text.replace(u'\n', u'x').replace(u' ', u'x');
    return text;
}

/// The scratch pad in a window, with settings in a real file.
struct Pad
{
    QTemporaryDir folder;
    Preferences preferences{folder.filePath(u"preferences.sqlite"_s)};
    NoLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    NotesModule module{settings, preferences, nullptr};
    QQuickView window;

    explicit Pad(const QString &text)
    {
        settings.setNotesScratch(text);
        window.engine()->addImportPath(u"qrc:/qt/qml"_s);
        auto *look = new QQmlComponent(window.engine(), &window);
        look->setData("import Randblatt.Controls\nCardAppearance {}", {});
        QVariantMap properties = module.makeView().properties;
        properties.insert(u"appearance"_s, QVariant::fromValue(look->create()));
        window.setInitialProperties(properties);
        window.setResizeMode(QQuickView::SizeRootObjectToView);
        window.setSource(module.makeView().source);
        window.resize(392, 400);
        window.show();
        window.requestActivate();
        editor()->forceActiveFocus();
        editor()->setProperty("cursorPosition", static_cast<int>(text.size() / 2));
        window.grabWindow();
    }

    [[nodiscard]] QQuickItem *editor() const
    {
        auto *item = window.rootObject()->findChild<QQuickItem *>(u"textArea"_s);
        if (item == nullptr)
            qFatal("kein Editor");
        return item;
    }
};

void open(benchmark::State &state)
{
    const QString text = textOf(static_cast<Shape>(state.range(1)), state.range(0));
    for ([[maybe_unused]] auto iteration : state) {
        Pad pad(text);
        benchmark::DoNotOptimize(pad.editor());
    }
}

void typeKeys(benchmark::State &state)
{
    Pad pad(textOf(static_cast<Shape>(state.range(1)), state.range(0)));
    std::vector<double> keys;
    std::vector<double> frames;
    const auto timed = [](std::vector<double> &into, const auto &work) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - begin;
        into.push_back(taken.count());
    };
    // A long text is shown bit by bit.
    while (pad.editor()->property("length").toInt() < state.range(0))
        QCoreApplication::processEvents();
    pad.window.grabWindow();
    const qsizetype before = pad.settings.notesScratch().size();
    for ([[maybe_unused]] auto iteration : state) {
        const bool endsLine = keys.size() % 60 == 59;
        QKeyEvent press(QEvent::KeyPress, endsLine ? Qt::Key_Return : Qt::Key_X, Qt::NoModifier,
                        endsLine ? u"\r"_s : u"x"_s);
        timed(keys, [&] { QCoreApplication::sendEvent(&pad.window, &press); });
        timed(frames, [&] { pad.window.grabWindow(); });
        QCoreApplication::processEvents();
    }
    const auto stored = pad.preferences.get<QString>(u"notesScratch"_s);
    if (!stored || stored->size() != before + static_cast<qsizetype>(keys.size()))
        state.SkipWithError("nicht gespeichert");
    std::sort(keys.begin(), keys.end());
    std::sort(frames.begin(), frames.end());
    const auto percentile = [](const std::vector<double> &sorted, double part) {
        return sorted.at(static_cast<size_t>(part * static_cast<double>(sorted.size() - 1)));
    };
    state.counters["p50_us"] = percentile(keys, 0.5);
    state.counters["p99_us"] = percentile(keys, 0.99);
    state.counters["frame_p50_us"] = percentile(frames, 0.5);
    state.counters["frame_p99_us"] = percentile(frames, 0.99);
}

} // namespace

BENCHMARK(open)
    ->ArgNames({"length", "shape"})
    ->ArgsProduct({{1000, 100'000, 1'000'000}, {lines, oneLine, noBlanks}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(typeKeys)
    ->ArgNames({"length", "shape"})
    ->ArgsProduct({{1000, 100'000, 1'000'000}, {lines, oneLine, noBlanks}})
    ->Iterations(100)
    ->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
