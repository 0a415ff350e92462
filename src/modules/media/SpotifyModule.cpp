#include "modules/media/SpotifyModule.h"

#include "modules/media/MediaKeys.h"
#include "settings/AppSettings.h"
#include "theme/ThemeConfig.h"

namespace randblatt {

using namespace Qt::StringLiterals;

SpotifyModule::SpotifyModule(const Environment &environment, QObject *parent)
    : SidebarModule(parent)
    , m_settings(environment.settings)
    , m_mediaKeys(new MediaKeys(environment.mediaKeySink, this))
    , m_auth(new SpotifyAuth(environment.preferences, environment.settings, environment.authenticationSession,
                             m_network, environment.hosts, {}, this))
    , m_webPlayer(new SpotifyWebPlayer(
          environment.webPlayerHelper, environment.hosts.sdk,
          [auth = m_auth](QObject *context, const SpotifyWebPlayer::TokenCompletion &completion) {
              auth->validAccessToken(context, completion);
          },
          this))
    , m_service(new SpotifyService(*m_auth, m_network, environment.hosts.api, this))
    , m_covers(new CoverCache(m_network, CoverCache::defaultFolder(), 32'000'000, this))
{
    connect(m_webPlayer, &SpotifyWebPlayer::deviceIDPublished, m_service,
            [this] { m_service->setDeviceID(m_webPlayer->deviceID()); });
    connect(m_webPlayer, &SpotifyWebPlayer::isReadyChanged, m_service,
            [this] { m_service->setDeviceReady(m_webPlayer->isReady()); });
    connect(&m_settings, &AppSettings::mediaSourceChanged, this, &SpotifyModule::update);
    connect(m_auth, &SpotifyAuth::isAuthorizedChanged, this, [this] {
        if (!m_auth->isAuthorized())
            m_service->reset();
        update();
    });
    // A sign-in while the player is shown brought new permissions.
    connect(m_auth, &SpotifyAuth::signedIn, this, [this] {
        if (m_isActive)
            begin();
    });
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
             {u"settings"_s, QVariant::fromValue(&m_settings)},
             {u"mediaKeys"_s, QVariant::fromValue(m_mediaKeys)},
             {u"auth"_s, QVariant::fromValue(m_auth)},
             {u"service"_s, QVariant::fromValue(m_service)},
             {u"covers"_s, QVariant::fromValue(m_covers)},
             {u"accent"_s, moduleAccentColor(id())}}};
}

ViewDescription SpotifyModule::makeQuickMenu() const
{
    return {QUrl(u"qrc:/qt/qml/Randblatt/Media/SpotifyQuickMenu.qml"_s),
            {{u"auth"_s, QVariant::fromValue(m_auth)}, {u"webPlayer"_s, QVariant::fromValue(m_webPlayer)}}};
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
    const bool isActive =
        !m_views.isEmpty() && m_settings.mediaSource() == MediaSource::spotify && m_auth->isAuthorized();
    if (m_isActive == isActive)
        return;
    m_isActive = isActive;
    if (isActive)
        begin();
    else
        m_service->stopPolling();
}

void SpotifyModule::begin()
{
    m_webPlayer->start();
    m_service->startPolling();
    m_service->loadPlaylists();
    m_service->loadUserID();
}

} // namespace randblatt
