#include "platform/browser/BrowserAuthenticationSession.h"

#include <QDesktopServices>

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

BrowserAuthenticationSession::BrowserAuthenticationSession(UrlOpener openUrl)
    : m_openUrl(openUrl ? std::move(openUrl) : UrlOpener(&QDesktopServices::openUrl))
{
}

void BrowserAuthenticationSession::start(const QUrl &url, const QString &callbackScheme,
                                         Completion completion)
{
    cancel();
    m_waiting = Waiting{callbackScheme, std::move(completion)};
    if (!m_openUrl(url))
        finish({.callback = {}, .error = u"Der Browser konnte nicht geöffnet werden."_s});
}

void BrowserAuthenticationSession::cancel()
{
    finish({.callback = {}, .error = u"Die vorige Anmeldung wurde abgebrochen."_s});
}

bool BrowserAuthenticationSession::openCallback(const QUrl &url)
{
    if (!m_waiting || url.scheme() != m_waiting->scheme)
        return false;
    finish({.callback = url, .error = {}});
    return true;
}

void BrowserAuthenticationSession::finish(const WebAuthenticationResult &result)
{
    // Taken out first: the completion may start the next sign-in.
    if (const auto waiting = std::exchange(m_waiting, std::nullopt))
        waiting->completion(result);
}

} // namespace randblatt
