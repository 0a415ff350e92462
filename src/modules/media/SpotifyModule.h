#pragma once

#include "modules/media/CoverCache.h"
#include "modules/media/NewPlaylist.h"
#include "modules/media/SpotifyAuth.h"
#include "modules/media/SpotifyService.h"
#include "modules/media/SpotifyWebPlayer.h"
#include "settings/SidebarModule.h"

#include <QSet>

#include <memory>

namespace randblatt {

class MediaKeySink;
class MediaKeys;

/// The media card: the controls of whichever application plays, or the Spotify player. The player's services
/// are made when one of them is first asked for, and rest until a view of the player is on the screen and the
/// user is signed in.
class SpotifyModule : public SidebarModule
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Modules are made at start-up.")
    Q_PROPERTY(randblatt::SpotifyAuth *auth READ auth CONSTANT FINAL)
    Q_PROPERTY(randblatt::SpotifyService *service READ service CONSTANT FINAL)
    Q_PROPERTY(randblatt::SpotifyWebPlayer *webPlayer READ webPlayer CONSTANT FINAL)
    Q_PROPERTY(randblatt::CoverCache *covers READ covers CONSTANT FINAL)
    Q_PROPERTY(randblatt::NewPlaylist *newPlaylist READ newPlaylist CONSTANT FINAL)

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

    explicit SpotifyModule(Environment environment, QObject *parent = nullptr);
    ~SpotifyModule() override;

    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString systemImage() const override;
    [[nodiscard]] ViewDescription makeView() const override;
    [[nodiscard]] ViewDescription makeQuickMenu() const override;

    /// A view of the module appeared on the screen or disappeared from it.
    Q_INVOKABLE void setOnScreen(QObject *view, bool onScreen);

    /// The module's; never null.
    [[nodiscard]] SpotifyAuth *auth();
    [[nodiscard]] SpotifyService *service();
    [[nodiscard]] SpotifyWebPlayer *webPlayer();
    [[nodiscard]] CoverCache *covers();
    [[nodiscard]] NewPlaylist *newPlaylist();

private:
    struct Player;

    [[nodiscard]] Player &player();
    void update();
    void begin();
    void signedOut();
    void offerUndo(const SpotifyRemoval &removal);

    Environment m_environment;
    MediaKeys *m_mediaKeys;
    std::unique_ptr<Player> m_player;
    QSet<QObject *> m_views;
    bool m_isActive = false;
};

} // namespace randblatt
