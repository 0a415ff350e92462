// How long the music service's answers take to parse: playlists as the service sends them, 50 to a page, and
// tracks, 100 to a page. The application does this on another thread than the one that draws.

#include "modules/media/HttpReply.h"
#include "modules/media/RunAside.h"
#include "modules/media/SpotifyParsing.h"
#include "modules/media/SpotifyTrackModel.h"
#include "support/HttpServer.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

QByteArray page(const QJsonObject &entry, int entries)
{
    QJsonArray items;
    for (int i = 0; i < entries; ++i)
        items.append(entry);
    return QJsonDocument(QJsonObject{{u"items"_s, items}}).toJson(QJsonDocument::Compact);
}

void parsePlaylistPages(benchmark::State &state)
{
    const QJsonObject owner{{u"id"_s, u"someone"_s}, {u"display_name"_s, u"Jemand"_s}};
    const QJsonObject image{{u"url"_s, u"https://images.example/ab67616d0000b273"_s}, {u"height"_s, 640}};
    const QByteArray json = page({{u"id"_s, u"37i9dQZF1DX4sWSpwq3LiO"_s},
                                  {u"name"_s, u"Morgenkaffee"_s},
                                  {u"description"_s, QString(300, u'x')},
                                  {u"uri"_s, u"spotify:playlist:37i9dQZF1DX4sWSpwq3LiO"_s},
                                  {u"tracks"_s, QJsonObject{{u"total"_s, 42}}},
                                  {u"images"_s, QJsonArray{image, image, image}},
                                  {u"owner"_s, owner}},
                                 50);
    for ([[maybe_unused]] auto iteration : state) {
        for (int first = 0; first < state.range(0); first += 50)
            benchmark::DoNotOptimize(parsePlaylists(json));
    }
}

void parseTrackPages(benchmark::State &state)
{
    const QJsonObject artist{{u"name"_s, u"Die Sonntagsfahrer"_s}};
    const QByteArray json = page({{u"track"_s, QJsonObject{{u"id"_s, u"11dFghVXANMlKmJXsNCbNl"_s},
                                                           {u"uri"_s, u"spotify:track:11dFghVXANMlKm"_s},
                                                           {u"name"_s, u"Nachtzug"_s},
                                                           {u"artists"_s, QJsonArray{artist, artist}}}}},
                                 100);
    for ([[maybe_unused]] auto iteration : state) {
        for (int first = 0; first < state.range(0); first += 100)
            benchmark::DoNotOptimize(parseTracks(json));
    }
}

/// What is left to the thread that draws: one page into the model of the list.
void appendTrackPage(benchmark::State &state)
{
    const QList<SpotifyTrack> tracks(100, {u"id"_s, u"Nachtzug"_s, u"Die Sonntagsfahrer"_s, u"uri"_s, 0, 0});
    SpotifyTrackModel model;
    for ([[maybe_unused]] auto iteration : state) {
        if (model.count() >= 10'000)
            model.clear();
        model.append(tracks);
    }
}

double threadMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// The longest time, in milliseconds, that the thread that draws works between two chances of drawing, while
/// 10 MB come in and are parsed. Its own time: on a busy machine it waits longer.
void holdUpByLargeAnswer(benchmark::State &state)
{
    QThread thread;
    QObject inThread;
    inThread.moveToThread(&thread);
    thread.start();
    const QByteArray body =
        R"({"is_playing":true,"item":{"name":"Nachtzug"},"rest":")" + QByteArray(10'000'000, 'x') + "\"}";
    HttpServer *server = nullptr;
    QMetaObject::invokeMethod(
        &inThread,
        [&] { server = new HttpServer([&](const HttpRequest &) { return HttpResponse{.body = body}; }); },
        Qt::BlockingQueuedConnection);
    QNetworkAccessManager network;
    double longest = 0;
    for ([[maybe_unused]] auto iteration : state) {
        QEventLoop loop;
        double since = threadMilliseconds();
        QTimer frames;
        QObject::connect(&frames, &QTimer::timeout, &loop, [&] {
            const double now = threadMilliseconds();
            longest = std::max(longest, now - since);
            since = now;
        });
        frames.start(1);
        sendHttp(network, "GET", QNetworkRequest(server->url(u"/"_s)), {}, 32'000'000, &loop,
                 [&](const HttpReply &reply) {
                     runAside(
                         &loop, [json = reply.body] { return parseNowPlaying(json); },
                         [&](const auto &playing) {
                             if (!playing)
                                 state.SkipWithError("not understood");
                             loop.quit();
                         });
                 });
        loop.exec();
    }
    QMetaObject::invokeMethod(
        &inThread, [&] { delete server; }, Qt::BlockingQueuedConnection);
    thread.quit();
    thread.wait();
    state.counters["longest_ms"] = longest;
}

} // namespace

BENCHMARK(holdUpByLargeAnswer)->Unit(benchmark::kMillisecond);
BENCHMARK(parsePlaylistPages)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(parseTrackPages)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(appendTrackPage)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
