#pragma once

#include "settings/SidebarModule.h"

namespace randblatt {

class AppSettings;
class MediaKeySink;
class MediaKeys;

/// The media card: the controls of whichever application plays, or the Spotify player.
class SpotifyModule : public SidebarModule
{
    Q_OBJECT

public:
    /// `settings` and `mediaKeySink` are borrowed and must outlive the module.
    SpotifyModule(AppSettings &settings, MediaKeySink &mediaKeySink, QObject *parent = nullptr);

    [[nodiscard]] QString id() const override;
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString systemImage() const override;
    [[nodiscard]] ViewDescription makeView() const override;

private:
    AppSettings &m_settings;
    MediaKeys *m_mediaKeys;
};

} // namespace randblatt
