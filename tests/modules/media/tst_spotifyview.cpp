#include "modules/media/MediaFixture.h"
#include "support/TestEnvironment.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

QByteArray png(const QColor &color)
{
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(color);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

/// The text of the first visible item with this name; "–" without one.
QString text(const ViewTest &view, const QString &objectName)
{
    const auto found = view.findAll(objectName);
    return found.isEmpty() ? u"–"_s : found.first()->property("text").toString();
}

/// The titles of the rows in sight, without rows that the list keeps for later use.
QStringList rowTitles(const ViewTest &view)
{
    const auto lists = view.findAll(u"trackList"_s) + view.findAll(u"playlistList"_s);
    QStringList titles;
    if (lists.isEmpty())
        return titles;
    if (!view.findAll(u"likedRow"_s).isEmpty())
        titles.append(view.find(u"likedRow"_s)->property("title").toString());
    for (int row = 0; row < lists.first()->property("count").toInt(); ++row) {
        QQuickItem *item = nullptr;
        QMetaObject::invokeMethod(lists.first(), "itemAtIndex", Q_RETURN_ARG(QQuickItem *, item),
                                  Q_ARG(int, row));
        if (item != nullptr)
            titles.append(item->property("title").toString());
    }
    return titles;
}

const QSize cardSize(392, 300);

} // namespace

class TestSpotifyView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signsInAndPlays()
    {
        MediaFixture f(false);
        f.server.playlists = {SpotifyServer::playlist(u"a"_s, u"Morgenkaffee"_s, 42)};
        CardView view(*f.module, cardSize);
        QCOMPARE(text(view, u"signInError"_s), u"–"_s);
        view.click(view.find(u"signInButton"_s));
        f.session.redirect(u"randblatt://callback?error=access_denied"_s);
        QCOMPARE(text(view, u"signInError"_s), u"Keine Autorisierung erhalten."_s);
        view.click(view.find(u"signInButton"_s));
        f.agreeToSignIn();
        QTRY_COMPARE(rowTitles(view), (QStringList{u"Lieblingssongs"_s, u"Morgenkaffee"_s}));
        QCOMPARE(f.server.count(u"GET /v1/me/playlists"_s), 1);
        QTRY_COMPARE(f.server.count(u"GET /v1/me"_s), 1);
        QCOMPARE(f.server.violations, QStringList());
        f.module->auth()->signOut();
        QTRY_VERIFY(view.find(u"signInButton"_s) != nullptr);
        QVERIFY(f.module->service()->playlists()->count() == 0);
    }

    void neverAsksForASignInWithTheSystemsMediaControl()
    {
        MediaFixture f(true);
        f.settings.setMediaSource(MediaSource::system);
        CardView view(*f.module, cardSize);
        QTest::qWait(50);
        QVERIFY(view.find(u"signInButton"_s) == nullptr);
        QCOMPARE(f.server.requests.size(), 0);
        f.settings.setMediaSource(MediaSource::spotify);
        QTRY_COMPARE(f.server.count(u"GET /v1/me/player/currently-playing"_s), 1);
    }

    void pollsOnlyWhileItIsOnScreen()
    {
        MediaFixture f;
        CardView view(*f.module, cardSize);
        const QString poll = u"GET /v1/me/player/currently-playing"_s;
        QTRY_COMPARE(f.server.count(poll), 1);
        view.window().hide();
        QTest::qWait(4500);
        QCOMPARE(f.server.count(poll), 1);
        view.window().show();
        QTRY_COMPARE(f.server.count(poll), 2);
    }

    void showsWhatIsPlayingInBothForms()
    {
        MediaFixture f;
        f.server.image = png(Qt::red);
        const QString title = u"\u202Eגדול\u202C \"<b>Nachtzug</b>\""_s;
        f.server.nowPlaying = MediaFixture::playing(title, f.server.url(u"/image/1"_s).toString());
        CardView view(*f.module, cardSize);
        QTRY_COMPARE(text(view, u"trackName"_s), title);
        QCOMPARE(text(view, u"artistName"_s), u"Die Sonntagsfahrer"_s);
        const QQuickItem *cover = view.find(u"cover"_s);
        QCOMPARE(cover->size(), QSizeF(34, 34));
        view.click(view.find(u"formButton"_s));
        QCOMPARE(cover->size(), QSizeF(110, 110));
        QTRY_COMPARE(view.window().grabWindow().pixelColor(ViewTest::centre(cover)), QColor(Qt::red));
        QCOMPARE(f.server.count(u"GET /image/1"_s), 1);

        QCOMPARE(view.find(u"playPauseButton"_s)->property("symbol").toString(), u"pause.fill"_s);
        f.module->service()->setDeviceID(u"own"_s);
        view.click(view.find(u"playPauseButton"_s));
        QTRY_COMPARE(f.server.count(u"PUT /v1/me/player/pause"_s), 1);
        view.click(view.find(u"nextButton"_s));
        view.click(view.find(u"previousButton"_s));
        QTRY_COMPARE(f.server.count(u"POST /v1/me/player/next"_s), 1);
        QTRY_COMPARE(f.server.count(u"POST /v1/me/player/previous"_s), 1);
        QCOMPARE(f.server.violations, QStringList());
    }

    void opensPlaylistsAndRemovesTracks()
    {
        MediaFixture f;
        f.server.playlists = {SpotifyServer::playlist(u"mine"_s, u"Meine"_s, 3),
                              SpotifyServer::playlist(u"other"_s, u"Fremde"_s, 2, u"other"_s)};
        f.server.playlistTracks = {{u"mine"_s, SpotifyServer::tracks(3)},
                                   {u"other"_s, SpotifyServer::tracks(2)}};
        f.server.savedTracks = SpotifyServer::tracks(1);
        CardView view(*f.module, cardSize);
        f.module->service()->setDeviceID(u"own"_s);
        QTRY_COMPARE(view.findAll(u"playlistRow"_s).size(), 2);
        QCOMPARE(view.findAll(u"rowSubtitle"_s).at(0)->property("text").toString(), u"Gespeicherte Titel"_s);
        QCOMPARE(view.findAll(u"rowSubtitle"_s).at(1)->property("text").toString(), u"3 Titel"_s);

        view.click(view.findAll(u"playlistRow"_s).at(1));
        QTRY_COMPARE(view.findAll(u"trackRow"_s).size(), 2);
        QCOMPARE(view.findAll(u"removeButton"_s).size(), 0);
        view.click(view.find(u"backButton"_s));
        view.click(view.findAll(u"playlistRow"_s).at(0));
        QTRY_COMPARE(view.findAll(u"removeButton"_s).size(), 3);
        QCOMPARE(text(view, u"playlistName"_s), u"Meine"_s);
        view.click(view.findAll(u"removeButton"_s).at(1));
        QTRY_COMPARE(rowTitles(view), (QStringList{u"Titel 0"_s, u"Titel 2"_s}));
        QCOMPARE(f.server.count(u"PUT /v1/me/player/play"_s), 0);

        view.click(view.findAll(u"rowTitle"_s).at(1));
        QTRY_COMPARE(f.server.count(u"PUT /v1/me/player/play"_s), 1);
        view.click(view.find(u"playAllButton"_s));
        QTRY_COMPARE(f.server.count(u"PUT /v1/me/player/play"_s), 2);
        view.click(view.find(u"backButton"_s));
        view.click(view.find(u"likedRow"_s));
        QTRY_COMPARE(rowTitles(view), QStringList(u"Titel 0"_s));
        QCOMPARE(f.server.violations, QStringList());
    }

    void leavesRightClicksToTheCard()
    {
        MediaFixture f;
        f.server.playlists = {SpotifyServer::playlist(u"mine"_s, u"Meine"_s, 1)};
        CardView view(*f.module, cardSize);
        f.module->service()->setDeviceID(u"own"_s);
        QTRY_COMPARE(view.findAll(u"playlistRow"_s).size(), 1);
        view.click(view.find(u"playPauseButton"_s), Qt::RightButton);
        view.click(view.findAll(u"playlistRow"_s).at(0), Qt::RightButton);
        QVERIFY(view.findAll(u"backButton"_s).isEmpty());
        view.click(view.findAll(u"playlistRow"_s).at(0));
        QTRY_COMPARE(f.server.count(u"GET /v1/playlists/mine/tracks"_s), 1);
        QCOMPARE(f.server.count(u"PUT /v1/me/player/play"_s), 0);
    }

    void worksWithTheKeyboard()
    {
        MediaFixture f;
        f.server.playlists = {SpotifyServer::playlist(u"mine"_s, u"Meine"_s, 2)};
        f.server.playlistTracks = {{u"mine"_s, SpotifyServer::tracks(2)}};
        CardView view(*f.module, cardSize);
        f.module->service()->setDeviceID(u"own"_s);
        QTRY_COMPARE(view.findAll(u"playlistRow"_s).size(), 1);
        view.find(u"playlistList"_s)->forceActiveFocus(Qt::TabFocusReason);
        view.press(Qt::Key_Return);
        QTRY_COMPARE(view.findAll(u"removeButton"_s).size(), 2);
        view.find(u"trackList"_s)->forceActiveFocus(Qt::TabFocusReason);
        view.press(Qt::Key_Down);
        view.press(Qt::Key_Delete);
        QTRY_COMPARE(rowTitles(view), QStringList(u"Titel 0"_s));
        view.press(Qt::Key_Escape);
        QVERIFY(view.findAll(u"trackRow"_s).isEmpty());
        view.find(u"newPlaylistButton"_s)->forceActiveFocus(Qt::TabFocusReason);
        view.press(Qt::Key_Return);
        QTRY_VERIFY(view.find(u"nameField"_s) != nullptr);
        view.type(u"  "_s);
        QVERIFY(!view.find(u"createButton"_s)->isEnabled());
        view.type(u"Neu"_s);
        view.press(Qt::Key_Return);
        QTRY_COMPARE(rowTitles(view), (QStringList{u"Lieblingssongs"_s, u"Neu"_s, u"Meine"_s}));
        QVERIFY(view.find(u"nameField"_s) == nullptr);
        view.click(view.find(u"newPlaylistButton"_s));
        view.press(Qt::Key_Escape);
        QTRY_VERIFY(view.find(u"nameField"_s) == nullptr);
        QCOMPARE(f.server.count(u"POST /v1/users/me/playlists"_s), 1);
        QCOMPARE(f.server.violations, QStringList());
    }

    void keepsTheNameOfANewPlaylist()
    {
        MediaFixture f;
        {
            CardView view(*f.module, cardSize);
            QTRY_COMPARE(view.findAll(u"newPlaylistButton"_s).size(), 1);
            view.click(view.find(u"newPlaylistButton"_s));
            QTRY_VERIFY(view.find(u"nameField"_s) != nullptr);
            view.type(u"Somm"_s);
        }
        // The panel is made anew, and then the process.
        {
            CardView view(*f.module, cardSize);
            QCOMPARE(text(view, u"nameField"_s), u"Somm"_s);
        }
        f.restart();
        CardView view(*f.module, cardSize);
        QCOMPARE(text(view, u"nameField"_s), u"Somm"_s);
        // What is put off is not thrown away either.
        view.click(view.find(u"cancelButton"_s));
        QTRY_VERIFY(view.find(u"nameField"_s) == nullptr);
        view.click(view.find(u"newPlaylistButton"_s));
        QCOMPARE(text(view, u"nameField"_s), u"Somm"_s);
        f.server.fault(u"POST /v1/users/me/playlists"_s,
                       {.status = 429, .headers = {{"Retry-After", "7200"}}});
        view.press(Qt::Key_Return);
        QTRY_VERIFY(text(view, u"createFailure"_s).startsWith(u"Spotify bittet um eine Pause bis "_s));
        QVERIFY(text(view, u"createFailure"_s).endsWith(u"Die Playlist ist nicht erstellt."_s));
        QCOMPARE(text(view, u"nameField"_s), u"Somm"_s);
        QVERIFY(!view.find(u"createButton"_s)->isEnabled());
        // A further try would not even be sent.
        view.press(Qt::Key_Return);
        QCOMPARE(f.server.count(u"POST /v1/users/me/playlists"_s), 1);
        view.click(view.find(u"cancelButton"_s));
        for (const auto &button : {u"previousButton"_s, u"playPauseButton"_s, u"nextButton"_s})
            QVERIFY(!view.find(button)->isEnabled());
    }

    void createsOnePlaylistOnly_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"Return twice", "Return held", "double click"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }
    void createsOnePlaylistOnly()
    {
        QFETCH(QString, how);
        MediaFixture f;
        CardView view(*f.module, cardSize);
        QTRY_COMPARE(f.server.count(u"GET /v1/me"_s), 1);
        view.click(view.find(u"newPlaylistButton"_s));
        view.type(u"Neu"_s);
        f.server.delay = 100;
        if (how == "Return twice"_L1) {
            view.press(Qt::Key_Return);
            view.press(Qt::Key_Return);
        } else if (how == "Return held"_L1) {
            view.hold(Qt::Key_Return);
        } else {
            view.doubleClick(view.find(u"createButton"_s));
        }
        QCOMPARE(view.find(u"createButton"_s)->property("text").toString(), u"Wird erstellt…"_s);
        QTRY_COMPARE(rowTitles(view), (QStringList{u"Lieblingssongs"_s, u"Neu"_s}));
        QCOMPARE(f.server.count(u"POST /v1/users/me/playlists"_s), 1);
        QVERIFY(view.findAll(u"nameField"_s).isEmpty());
        QCOMPARE(f.module->newPlaylist()->name(), QString());
    }

    void bringsRemovedTracksBack()
    {
        for (const bool isNew : {false, true}) {
            MediaFixture f;
            f.server.oldPathsClosed = isNew;
            f.server.playlists = {SpotifyServer::playlist(u"mine"_s, u"Meine"_s, 5)};
            // A track that is there twice, and an entry that is none.
            QJsonArray entries = SpotifyServer::tracks(4);
            entries.insert(1, QJsonObject{{u"track"_s, QJsonValue::Null}});
            entries.append(SpotifyServer::track(1));
            f.server.playlistTracks = {{u"mine"_s, entries}};
            CardView view(*f.module, cardSize);
            QTRY_COMPARE(view.findAll(u"playlistRow"_s).size(), 1);
            view.click(view.findAll(u"playlistRow"_s).first());
            QTRY_COMPARE(view.findAll(u"removeButton"_s).size(), 5);
            const QStringList before = rowTitles(view);
            // The second click of a double click is not meant for the row that moved up.
            view.doubleClick(view.findAll(u"removeButton"_s).at(1));
            QTRY_COMPARE(rowTitles(view), (QStringList{u"Titel 0"_s, u"Titel 2"_s, u"Titel 3"_s}));
            view.find(u"trackList"_s)->forceActiveFocus(Qt::TabFocusReason);
            view.press(Qt::Key_End);
            view.hold(Qt::Key_Delete);
            QTRY_COMPARE(rowTitles(view).size(), 2);
            UndoHistory *history = f.module->undoHistory();
            QCOMPARE(history->offer(), u"Titel entfernt"_s);
            QVERIFY(history->undo());
            QTRY_COMPARE(rowTitles(view).size(), 3);
            QVERIFY(history->undo());
            QTRY_COMPARE(rowTitles(view), before);
            QCOMPARE(f.server.playlistTracks.value(u"mine"_s), entries);
            QVERIFY(!history->canUndo());
            QCOMPARE(f.server.violations, QStringList());
        }
    }

    void saysWhyAListIsNotThere()
    {
        MediaFixture f;
        f.server.playlists = {SpotifyServer::playlist(u"mine"_s, u"Meine"_s, 2)};
        f.server.playlistTracks = {{u"mine"_s, SpotifyServer::tracks(2)}};
        f.server.fault(u"GET /v1/me/playlists"_s, {.status = 500, .body = "{}"}, 2);
        CardView view(*f.module, cardSize);
        QTRY_COMPARE(text(view, u"noticeText"_s),
                     u"Spotify hat gerade eine Störung. Die Playlists sind nicht geladen."_s);
        QVERIFY(view.findAll(u"noPlaylists"_s).isEmpty());
        QTRY_COMPARE(f.server.count(u"GET /v1/me/playlists"_s), 2);
        QTRY_VERIFY(view.find(u"noticeButton"_s)->isEnabled());
        view.click(view.find(u"noticeButton"_s));
        QTRY_COMPARE(view.findAll(u"playlistRow"_s).size(), 1);
        QVERIFY(view.findAll(u"noticeText"_s).isEmpty());
        f.server.fault(u"GET /v1/playlists/mine/tracks"_s, {.status = 500, .body = "{}"});
        view.click(view.findAll(u"playlistRow"_s).first());
        QTRY_COMPARE(text(view, u"noticeText"_s),
                     u"Spotify hat gerade eine Störung. Die Titel sind nicht geladen."_s);
        QVERIFY(view.findAll(u"loadingTracks"_s).isEmpty());
        view.click(view.find(u"noticeButton"_s));
        QTRY_COMPARE(rowTitles(view).size(), 2);
    }

    void forgetsTheDeviceWithTheAccount()
    {
        MediaFixture f;
        CardView view(*f.module, cardSize);
        f.module->service()->setDeviceID(u"old"_s);
        f.module->service()->setDeviceReady(true);
        f.module->auth()->signOut();
        QVERIFY(!f.module->service()->deviceID());
        QVERIFY(!f.module->service()->deviceReady());
        view.click(view.find(u"signInButton"_s));
        f.agreeToSignIn();
        QTRY_COMPARE(view.findAll(u"nextButton"_s).size(), 1);
        f.server.devices = {QJsonObject{{u"id"_s, u"phone"_s}}};
        view.click(view.find(u"nextButton"_s));
        QTRY_COMPARE(f.server.count(u"POST /v1/me/player/next"_s), 1);
        QCOMPARE(f.server.requestsOf(u"POST /v1/me/player/next"_s).first().query.toString(),
                 u"device_id=phone"_s);
        // The new title is not waited for until the next poll.
        const int polls = f.server.count(u"GET /v1/me/player/currently-playing"_s);
        QTRY_COMPARE_WITH_TIMEOUT(f.server.count(u"GET /v1/me/player/currently-playing"_s), polls + 1, 1500);
    }

    void asksForNewPermissions()
    {
        MediaFixture f;
        f.server.fault(u"GET /v1/me/playlists"_s, {.status = 403, .body = "{}"});
        CardView view(*f.module, cardSize);
        QTRY_COMPARE(view.findAll(u"reauthNotice"_s).size(), 1);
        QVERIFY(rowTitles(view).isEmpty());
        f.server.playlists = {SpotifyServer::playlist(u"a"_s, u"A"_s, 1)};
        view.click(view.find(u"noticeButton"_s));
        f.agreeToSignIn();
        QTRY_COMPARE(rowTitles(view), (QStringList{u"Lieblingssongs"_s, u"A"_s}));
    }

    void saysWhatIsMissing()
    {
        MediaFixture f;
        CardView view(*f.module, cardSize);
        QTRY_COMPARE(view.findAll(u"noPlaylists"_s).size(), 1);
        QTRY_COMPARE(text(view, u"idleMessage"_s), u"Verbinde Gerät…"_s);
        view.click(view.find(u"nextButton"_s));
        QTRY_COMPARE(text(view, u"idleMessage"_s),
                     u"Kein Gerät gefunden. Öffne die Spotify-App oder warte, bis „Randblatt“ bereit ist."_s);
    }

    void scrollsThroughManyTracks()
    {
        MediaFixture f;
        f.server.playlists = {SpotifyServer::playlist(u"mine"_s, u"Meine"_s, 10'000)};
        f.server.playlistTracks = {{u"mine"_s, SpotifyServer::tracks(10'000)}};
        CardView view(*f.module, cardSize);
        QTRY_COMPARE(view.findAll(u"playlistRow"_s).size(), 1);
        view.click(view.findAll(u"playlistRow"_s).first());
        QTRY_COMPARE_WITH_TIMEOUT(f.module->service()->tracks()->count(), 10'000, 60'000);
        QQuickItem *list = view.find(u"trackList"_s);
        QVERIFY(QMetaObject::invokeMethod(list, "positionViewAtEnd"));
        QTRY_COMPARE(rowTitles(view).last(), u"Titel 9999"_s);
        // Only the rows in sight exist.
        QVERIFY(view.findAll(u"trackRow"_s).size() < 30);
    }

    void itsQuickMenuSignsOut()
    {
        MediaFixture f;
        const ViewDescription menu = f.module->makeQuickMenu();
        ViewTest view(menu.source, menu.properties, QSize(260, 120));
        // Without the helper nothing is on its way.
        QCOMPARE(text(view, u"deviceText"_s), u"Kein eigenes Gerät"_s);
        QVERIFY(text(view, u"deviceProblem"_s).contains(u"quillbar-webplayer"_s));
        view.click(view.find(u"signOutButton"_s));
        QVERIFY(!f.module->auth()->isAuthorized());
        QVERIFY(view.findAll(u"signOutButton"_s).isEmpty());
    }
};

RANDBLATT_TEST_MAIN(TestSpotifyView, QGuiApplication)
#include "tst_spotifyview.moc"
