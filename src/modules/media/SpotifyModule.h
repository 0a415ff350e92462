#pragma once

#include "modules/media/CoverCache.h"
#include "modules/media/SpotifyAuth.h"
#include "modules/media/SpotifyService.h"
#include "modules/media/SpotifyWebPlayer.h"
#include "settings/SidebarModule.h"

#include <QNetworkAccessManager>
#include <QSet>

namespace randblatt {

class MediaKeySink;
class MediaKeys;

/// The media card: the controls of whichever application plays, or the Spotify player. The player's services
/// rest until a view of the player is on the screen and the user is signed in.
class SpotifyModule : public SidebarModule
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Modules are made at start-up.")

public:
    /// What the module borrows; everything must outlive it.
    struct Environment
    {
        AppSettings &settings;
        Preferences &preferences;
        MediaKeySink &mediaKeySink;
        WebAuthenticationSession &authenticationSession;
        ServiceHosts hosts;
        /// The path of the web player's helper.
        QString webPlayerHelper;
    };

    explicit SpotifyModule(const Environment &environment, QObject *parent = nullptr);

    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString systemImage() const override;
    [[nodiscard]] ViewDescription makeView() const override;
    [[nodiscard]] ViewDescription makeQuickMenu() const override;

    /// A view of the module appeared on the screen or disappeared from it.
    Q_INVOKABLE void setOnScreen(QObject *view, bool onScreen);

    [[nodiscard]] SpotifyAuth *auth() const { return m_auth; }
    [[nodiscard]] SpotifyService *service() const { return m_service; }
    [[nodiscard]] SpotifyWebPlayer *webPlayer() const { return m_webPlayer; }

private:
    void update();
    void begin();

    AppSettings &m_settings;
    QNetworkAccessManager m_network;
    MediaKeys *m_mediaKeys;
    SpotifyAuth *m_auth;
    SpotifyWebPlayer *m_webPlayer;
    SpotifyService *m_service;
    CoverCache *m_covers;
    QSet<QObject *> m_views;
    bool m_isActive = false;
};

} // namespace randblatt
