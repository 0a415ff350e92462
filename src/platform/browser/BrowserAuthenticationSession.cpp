#include "platform/browser/BrowserAuthenticationSession.h"

#include <QDesktopServices>

#include <utility>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

/// Whether scheme, host and path are those of `redirect`. Browsers may give an empty path a slash.
bool isRedirect(const QUrl &url, const QUrl &redirect)
{
    const auto pathOf = [](const QUrl &of) { return of.path().isEmpty() ? u"/"_s : of.path(); };
    return url.scheme() == redirect.scheme() && url.authority() == redirect.authority() &&
           pathOf(url) == pathOf(redirect);
}

} // namespace

BrowserAuthenticationSession::BrowserAuthenticationSession(UrlOpener openUrl)
    : m_openUrl(openUrl ? std::move(openUrl) : UrlOpener(&QDesktopServices::openUrl))
{
}

void BrowserAuthenticationSession::start(const QUrl &url, const QUrl &redirect, Completion completion)
{
    cancel();
    m_waiting = Waiting{url, redirect, std::move(completion)};
    open(url);
}

bool BrowserAuthenticationSession::showAgain()
{
    if (!m_waiting)
        return false;
    open(QUrl(m_waiting->page));
    return true;
}

void BrowserAuthenticationSession::open(const QUrl &page)
{
    if (!m_openUrl(page))
        finish({.callback = {}, .error = u"Der Browser konnte nicht geöffnet werden."_s});
}

void BrowserAuthenticationSession::cancel()
{
    finish({});
}

bool BrowserAuthenticationSession::openCallback(const QUrl &url)
{
    if (!m_waiting || !isRedirect(url, m_waiting->redirect))
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
