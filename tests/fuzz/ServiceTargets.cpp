#include "fuzz/Targets.h"
#include "modules/media/SpotifyParsing.h"
#include "platform/browser/BrowserAuthenticationSession.h"
#include "webplayer/Protocol.h"

#include <QUrl>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

bool isOfTheWeb(const QUrl &url)
{
    return url.isEmpty() || url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
}

QList<QJsonObject> lines(const QByteArray &bytes, qsizetype piece)
{
    QList<QJsonObject> lines;
    LineReader reader;
    for (qsizetype at = 0; at < bytes.size(); at += piece)
        reader.add(bytes.mid(at, piece), [&lines](const QJsonObject &line) { lines.append(line); });
    return lines;
}

} // namespace

void fuzzAnswers(const QByteArray &bytes)
{
    if (const auto page = parsePlaylists(bytes)) {
        require(page->records.size() <= page->entries, "no more playlists than entries");
        for (const SpotifyPlaylist &playlist : page->records)
            require(!playlist.id.isEmpty() && isOfTheWeb(playlist.imageURL),
                    "a playlist has an id, and its picture comes from the web");
    }
    if (const auto page = parseTracks(bytes)) {
        require(page->records.size() <= page->entries, "no more tracks than entries");
        for (const SpotifyTrack &track : page->records)
            require(track.index <= track.place && track.place < page->entries, "a track has its place");
    }
    if (const auto playing = parseNowPlaying(bytes))
        require(isOfTheWeb(playing->albumArtURL), "a cover comes from the web");
    (void)parseDevice(bytes);
    (void)parseUserID(bytes);
}

void fuzzHelperLines(const QByteArray &bytes)
{
    constexpr qsizetype small = 7;
    require(lines(bytes, bytes.size() + 1) == lines(bytes, small), "how a line comes in makes no difference");
}

void fuzzRedirects(const QByteArray &bytes)
{
    BrowserAuthenticationSession session([](const QUrl &) { return true; });
    int ends = 0;
    const QUrl redirect(u"randblatt://callback"_s);
    session.start(QUrl(u"https://accounts.example/authorize"_s), redirect,
                  [&ends](const WebAuthenticationResult &) { ++ends; });
    const QUrl url(QString::fromUtf8(bytes));
    const bool isTaken = session.openCallback(url);
    require(ends == (isTaken ? 1 : 0), "the sign-in ends with its redirect");
    require(!isTaken || (url.scheme() == redirect.scheme() && url.host() == redirect.host()),
            "only the redirect that is waited for is taken");
    require(!session.openCallback(url) || !isTaken, "no redirect is taken twice");
}

} // namespace randblatt
