#include "modules/media/MediaFixture.h"
#include "settings/ModuleRegistry.h"
#include "sidebar/SidebarModel.h"
#include "sidebar/SidebarUIState.h"
#include "support/TestEnvironment.h"
#include "ui/controls/SymbolProvider.h"

#include <QApplication>
#include <QBuffer>
#include <QLinearGradient>
#include <QPainter>
#include <QTest>

// Saves a picture of the media card in each of its states to the folder that is named: quillbar-media-gallery
// FOLDER.

using namespace Qt::StringLiterals;
using namespace randblatt;

namespace {

QByteArray cover()
{
    QImage image(300, 300, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, 300, 300);
    gradient.setColorAt(0, QColor(0xff, 0x5f, 0x9e));
    gradient.setColorAt(1, QColor(0x4a, 0x3a, 0xff));
    painter.fillRect(image.rect(), gradient);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

/// The media module's card in a sidebar of its own, over a plain wallpaper.
class Card
{
public:
    Card(MediaFixture &fixture, double height, const QColor &wallpaper)
        : m_settings(fixture.settings)
    {
        std::vector<std::unique_ptr<SidebarModule>> modules;
        modules.push_back(std::move(fixture.module));
        m_settings.setHeight(height, u"spotify"_s);
        m_registry = std::make_unique<ModuleRegistry>(m_settings, std::move(modules));
        m_model = std::make_unique<SidebarModel>(m_settings, *m_registry);
        m_view = std::make_unique<ViewTest>(QUrl(u"qrc:/qt/qml/Randblatt/Sidebar/SidebarView.qml"_s),
                                            QVariantMap{{u"model"_s, QVariant::fromValue(m_model.get())},
                                                        {u"settings"_s, QVariant::fromValue(&m_settings)},
                                                        {u"uiState"_s, QVariant::fromValue(&m_uiState)}},
                                            QSize(420, static_cast<int>(height) + 40));
        m_view->window().setColor(wallpaper);
    }

    ViewTest &view() { return *m_view; }
    [[nodiscard]] SpotifyModule &module() const
    {
        return *qobject_cast<SpotifyModule *>(m_registry->module(u"spotify"_s));
    }
    void press(const QString &objectName)
    {
        QTest::qWait(400);
        const auto found = m_view->findAll(objectName);
        if (found.isEmpty())
            qFatal("Nicht zu sehen: %ls", qUtf16Printable(objectName));
        m_view->click(found.first());
    }
    void save(const QString &name)
    {
        QTest::qWait(600);
        m_view->window().grabWindow().save(QApplication::arguments().at(1) + u'/' + name + ".png"_L1);
    }

private:
    AppSettings &m_settings;
    SidebarUIState m_uiState;
    std::unique_ptr<ModuleRegistry> m_registry;
    std::unique_ptr<SidebarModel> m_model;
    std::unique_ptr<ViewTest> m_view;
};

void fill(SpotifyServer &server)
{
    server.image = cover();
    QJsonObject coffee = SpotifyServer::playlist(u"mine"_s, u"Morgenkaffee"_s, 42);
    coffee.insert(u"images"_s, QJsonArray{QJsonObject{{u"url"_s, server.url(u"/image/1"_s).toString()}}});
    server.playlists = {
        coffee,
        SpotifyServer::playlist(u"other"_s, u"Regentage – leise Lieder für lange Abende"_s, 128, u"other"_s),
        SpotifyServer::playlist(u"third"_s, u"Unterwegs"_s, 7),
        SpotifyServer::playlist(u"fourth"_s, u"Küche"_s, 63)};
    server.playlistTracks = {{u"mine"_s, SpotifyServer::tracks(42)}, {u"other"_s, SpotifyServer::tracks(42)}};
    server.nowPlaying = MediaFixture::playing(u"Nachtzug"_s, server.url(u"/image/2"_s).toString());
}

/// What the card says when something fails, with a track and without, in a low card and in the usual one.
void takeFailures(const QColor &wallpaper, const QString &suffix)
{
    const QString poll = u"GET /v1/me/player/currently-playing"_s;
    const HttpResponse broken{.status = 500, .body = "{}"};
    const HttpResponse pause{.status = 429, .headers = {{"Retry-After", "7200"}}};
    for (const double height : {160.0, 300.0}) {
        const QString name = height < 200 ? u"-low"_s + suffix : suffix;
        {
            MediaFixture f;
            f.server.loseNetwork();
            Card card(f, height, wallpaper);
            card.save(u"offline"_s + name);
        }
        // In a low card no row is in sight.
        if (height > 200) {
            MediaFixture f;
            fill(f.server);
            f.server.fault(u"GET /v1/playlists/mine/tracks"_s, broken, 9);
            Card card(f, height, wallpaper);
            QTest::qWait(300);
            f.server.fault(u"POST /v1/me/player/next"_s, broken);
            card.module().service()->setDeviceID(u"own"_s);
            card.press(u"playlistRow"_s);
            QTest::qWait(300);
            card.save(u"tracks-broken"_s + name);
            f.server.fault(poll, pause);
            card.module().service()->refreshNowPlaying();
            card.save(u"pause"_s + name);
        }
        {
            MediaFixture f;
            fill(f.server);
            Card card(f, height, wallpaper);
            card.press(u"newPlaylistButton"_s);
            card.view().type(u"Sommer"_s);
            f.server.fault(u"POST /v1/users/me/playlists"_s, pause);
            card.press(u"createButton"_s);
            card.save(u"prompt-failed"_s + name);
        }
        if (height > 200) {
            MediaFixture f;
            fill(f.server);
            Card card(f, height, wallpaper);
            card.press(u"playlistRow"_s);
            card.press(u"removeButton"_s);
            card.save(u"removed"_s + name);
            f.server.loseNetwork();
            card.press(u"undoButton"_s);
            card.save(u"not-put-back"_s + name);
        }
        {
            MediaFixture f;
            f.server.nowPlaying =
                QJsonObject{{u"is_playing"_s, true}, {u"currently_playing_type"_s, u"ad"_s}};
            Card card(f, height, wallpaper);
            card.save(u"advertisement"_s + name);
        }
        {
            MediaFixture f;
            f.preferences.setValue(u"sp_expiry"_s, 0.0);
            f.server.refreshToken = u"another"_s;
            Card card(f, height, wallpaper);
            card.save(u"refused"_s + name);
        }
        {
            // A helper that cannot be confined.
            QTemporaryDir folder;
            QFile helper(folder.filePath(u"helper"_s));
            if (!helper.open(QFile::WriteOnly))
                qFatal("Nicht zu schreiben: %ls", qUtf16Printable(helper.fileName()));
            helper.write("#!/bin/sh\necho '{\"type\":\"noSandbox\",\"isRoot\":false}'\n");
            helper.close();
            helper.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
            MediaFixture f(true, helper.fileName());
            fill(f.server);
            Card card(f, height, wallpaper);
            QTest::qWait(300);
            QTest::mouseClick(&card.view().window(), Qt::RightButton, {}, QPoint(60, 60));
            card.save(u"no-sandbox"_s + name);
        }
    }
}

void takePictures(const QColor &wallpaper, const QString &suffix)
{
    {
        MediaFixture f(false);
        f.settings.setMediaSource(MediaSource::system);
        Card card(f, 200, wallpaper);
        card.save(u"system"_s + suffix);
        f.settings.setMediaSource(MediaSource::spotify);
        card.press(u"signInButton"_s);
        f.session.redirect(u"randblatt://callback"_s);
        card.save(u"sign-in"_s + suffix);
    }
    {
        MediaFixture f;
        fill(f.server);
        Card card(f, 300, wallpaper);
        card.save(u"compact"_s + suffix);
        card.press(u"formButton"_s);
        card.save(u"large"_s + suffix);
        card.press(u"newPlaylistButton"_s);
        card.view().type(u"Sommer"_s);
        card.save(u"prompt"_s + suffix);
        card.press(u"cancelButton"_s);
        card.press(u"formButton"_s);
        card.press(u"playlistRow"_s);
        card.save(u"tracks-own"_s + suffix);
        card.press(u"backButton"_s);
        QTest::qWait(400);
        card.view().click(card.view().findAll(u"playlistRow"_s).at(1));
        card.save(u"tracks-other"_s + suffix);
        card.press(u"nextButton"_s);
        card.save(u"no-device"_s + suffix);
    }
    {
        MediaFixture f;
        f.server.fault(u"GET /v1/me/playlists"_s, {.status = 403, .body = "{}"});
        Card card(f, 240, wallpaper);
        card.save(u"reauth"_s + suffix);
    }
    takeFailures(wallpaper, suffix);
    {
        MediaFixture f;
        fill(f.server);
        Card card(f, 240, wallpaper);
        QTest::qWait(300);
        QTest::mouseClick(&card.view().window(), Qt::RightButton, {}, QPoint(60, 60));
        card.save(u"quick-menu"_s + suffix);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const TestEnvironment environment;
    // Sub-pixel text needs to know what lies behind it, which a translucent window does not.
    qputenv("QSG_DISTANCEFIELD_ANTIALIASING", "gray");
    const QApplication application(argc, argv);
    if (QApplication::arguments().size() != 2)
        qFatal("Aufruf: quillbar-media-gallery ORDNER");
    takePictures(QColor(0x4a, 0x6f, 0xb5), {});
    takePictures(Qt::white, u"-on-white"_s);
}
