// How long the music service's answers take to parse: playlists as the service sends them, 50 to a page, and
// tracks, 100 to a page. The application does this on another thread than the one that draws.

#include "modules/media/SpotifyParsing.h"
#include "modules/media/SpotifyTrackModel.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>

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

} // namespace

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
