#pragma once

#include "modules/media/ScriptedSession.h"
#include "modules/media/SpotifyModule.h"
#include "platform/MediaKeySink.h"
#include "settings/AppSettings.h"
#include "settings/Preferences.h"
#include "support/CardView.h"
#include "support/Fakes.h"
#include "support/SpotifyServer.h"

#include <QNetworkReply>
#include <QSignalSpy>

namespace randblatt {

/// The media module over the stand-in server, with the service as media source.
struct MediaFixture
{
    struct SilentSink : MediaKeySink
    {
        void postMediaKey(MediaKey) override {}
    };

    explicit MediaFixture(bool isSignedIn = true, const QString &helper = {})
    {
        settings.setMediaSource(MediaSource::spotify);
        if (isSignedIn) {
            preferences.setValue(QStringLiteral("sp_access"), QStringLiteral("access-0"));
            preferences.setValue(QStringLiteral("sp_refresh"), server.refreshToken);
            preferences.setValue(QStringLiteral("sp_expiry"), 1e12);
            server.accessTokens = {QStringLiteral("access-0")};
        }
        m_helper = helper;
        restart();
    }

    /// Makes the module anew, as a new process does.
    void restart()
    {
        module = std::make_unique<SpotifyModule>(
            SpotifyModule::Environment{settings, preferences, sink, session, server.hosts(), m_helper});
    }

    /// Follows the redirect of the browser's sign-in, as a user who agrees to everything does.
    void agreeToSignIn()
    {
        QNetworkRequest request(session.url);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        const std::unique_ptr<QNetworkReply> reply(network.get(request));
        QSignalSpy(reply.get(), &QNetworkReply::finished).wait();
        session.redirect(reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl().toString());
    }

    static QJsonObject playing(const QString &name, const QString &imageURL)
    {
        const QJsonObject artist{{QStringLiteral("name"), QStringLiteral("Die Sonntagsfahrer")}};
        const QJsonObject image{{QStringLiteral("url"), imageURL}};
        const QJsonObject album{{QStringLiteral("images"), QJsonArray{image}}};
        return {{QStringLiteral("is_playing"), true},
                {QStringLiteral("item"), QJsonObject{{QStringLiteral("name"), name},
                                                     {QStringLiteral("artists"), QJsonArray{artist}},
                                                     {QStringLiteral("album"), album}}}};
    }

    SpotifyServer server;
    Preferences preferences{Preferences::inMemory()};
    FakeLoginItem loginItem;
    AppSettings settings{preferences, loginItem};
    ScriptedSession session;
    SilentSink sink;
    QNetworkAccessManager network;
    std::unique_ptr<SpotifyModule> module;

private:
    QString m_helper;
};

} // namespace randblatt
