#include "modules/media/SpotifyModule.h"

#include "modules/media/MediaKeys.h"
#include "settings/AppSettings.h"
#include "theme/ThemeConfig.h"

#include <QNetworkAccessManager>

namespace randblatt {

using namespace Qt::StringLiterals;

/// The services of the Spotify player, in the order in which they depend on one another.
struct SpotifyModule::Player
{
    explicit Player(const Environment &environment)
        : auth(environment.preferences, environment.settings, environment.authenticationSession, network,
               environment.hosts)
        , webPlayer(environment.webPlayerHelper, environment.hosts.sdk,
                    [this](QObject *context, const SpotifyWebPlayer::TokenCompletion &completion) {
                        auth.validAccessToken(context, completion);
                    })
        , service(auth, network, environment.hosts.api)
        , covers(network, CoverCache::defaultFolder())
        , newPlaylist(environment.preferences, service)
    {
    }

    QNetworkAccessManager network;
    SpotifyAuth auth;
    SpotifyWebPlayer webPlayer;
    SpotifyService service;
    CoverCache covers;
    NewPlaylist newPlaylist;
};

SpotifyModule::SpotifyModule(Environment environment, QObject *parent)
    : SidebarModule(parent)
    , m_environment(std::move(environment))
    , m_mediaKeys(new MediaKeys(m_environment.mediaKeySink, this))
{
    connect(&m_environment.settings, &AppSettings::mediaSourceChanged, this, &SpotifyModule::update);
}

SpotifyModule::~SpotifyModule() = default;

SpotifyModule::Player &SpotifyModule::player()
{
    if (m_player)
        return *m_player;
    m_player = std::make_unique<Player>(m_environment);
    Player &made = *m_player;
    connect(&made.webPlayer, &SpotifyWebPlayer::deviceIDPublished, &made.service,
            [&made] { made.service.setDeviceID(made.webPlayer.deviceID()); });
    connect(&made.webPlayer, &SpotifyWebPlayer::isReadyChanged, &made.service,
            [&made] { made.service.setDeviceReady(made.webPlayer.isReady()); });
    connect(&made.auth, &SpotifyAuth::isAuthorizedChanged, this, [this, &made] {
        if (!made.auth.isAuthorized())
            signedOut();
        update();
    });
    connect(&made.service, &SpotifyService::tracksRemoved, this, &SpotifyModule::offerUndo);
    // A sign-in while the player is shown brought new permissions.
    connect(&made.auth, &SpotifyAuth::signedIn, this, [this] {
        if (m_isActive)
            begin();
    });
    return made;
}

void SpotifyModule::signedOut()
{
    webPlayer()->stop();
    service()->reset();
    newPlaylist()->reset();
}

void SpotifyModule::offerUndo(const SpotifyRemoval &removal)
{
    undoHistory()->push(u"Titel entfernt"_s, [this, removal] { service()->restoreTracks(removal); });
}

SpotifyAuth *SpotifyModule::auth()
{
    return &player().auth;
}

SpotifyService *SpotifyModule::service()
{
    return &player().service;
}

SpotifyWebPlayer *SpotifyModule::webPlayer()
{
    return &player().webPlayer;
}

CoverCache *SpotifyModule::covers()
{
    return &player().covers;
}

NewPlaylist *SpotifyModule::newPlaylist()
{
    return &player().newPlaylist;
}

QString SpotifyModule::id() const
{
    return u"spotify"_s;
}

QString SpotifyModule::title() const
{
    return u"Spotify"_s;
}

QString SpotifyModule::systemImage() const
{
    return u"music.note"_s;
}

ViewDescription SpotifyModule::makeView() const
{
    return {QUrl(u"qrc:/qt/qml/Randblatt/Media/SpotifyView.qml"_s),
            {{u"module"_s, QVariant::fromValue(this)},
             {u"settings"_s, QVariant::fromValue(&m_environment.settings)},
             {u"mediaKeys"_s, QVariant::fromValue(m_mediaKeys)},
             {u"accent"_s, moduleAccentColor(id())}}};
}

ViewDescription SpotifyModule::makeQuickMenu() const
{
    return {QUrl(u"qrc:/qt/qml/Randblatt/Media/SpotifyQuickMenu.qml"_s),
            {{u"module"_s, QVariant::fromValue(this)}}};
}

void SpotifyModule::setOnScreen(QObject *view, bool onScreen)
{
    if (onScreen)
        m_views.insert(view);
    else
        m_views.remove(view);
    update();
}

void SpotifyModule::update()
{
    // Asked for last: with the system's media control there is no player to be made.
    const bool isActive = !m_views.isEmpty() &&
                          m_environment.settings.mediaSource() == MediaSource::spotify &&
                          auth()->isAuthorized();
    if (m_isActive == isActive)
        return;
    m_isActive = isActive;
    if (isActive)
        begin();
    else
        service()->stopPolling();
    webPlayer()->setWatched(isActive);
}

void SpotifyModule::begin()
{
    webPlayer()->start();
    service()->startPolling();
    service()->loadPlaylists();
    service()->loadUserID();
}

} // namespace randblatt
