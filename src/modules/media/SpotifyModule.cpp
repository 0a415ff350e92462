#include "modules/media/SpotifyModule.h"

#include "modules/media/MediaKeys.h"
#include "settings/AppSettings.h"
#include "theme/ThemeConfig.h"

namespace randblatt {

using namespace Qt::StringLiterals;

SpotifyModule::SpotifyModule(AppSettings &settings, MediaKeySink &mediaKeySink, QObject *parent)
    : SidebarModule(parent)
    , m_settings(settings)
    , m_mediaKeys(new MediaKeys(mediaKeySink, this))
{
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
            {{u"settings"_s, QVariant::fromValue(&m_settings)},
             {u"mediaKeys"_s, QVariant::fromValue(m_mediaKeys)},
             {u"accent"_s, moduleAccentColor(id())}}};
}

} // namespace randblatt
