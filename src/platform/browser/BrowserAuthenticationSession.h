#pragma once

#include "platform/WebAuthenticationSession.h"

#include <optional>

namespace randblatt {

/// Signs in with the user's browser. The redirect comes back through the desktop's handler of the
/// application's URL scheme, which hands it to the running instance: openCallback().
class BrowserAuthenticationSession final : public WebAuthenticationSession
{
public:
    /// Opens a URL in the browser; whether that worked.
    using UrlOpener = std::function<bool(const QUrl &)>;

    /// `openUrl` is for tests; by default it is the desktop's way to open a URL.
    explicit BrowserAuthenticationSession(UrlOpener openUrl = {});

    void start(const QUrl &url, const QUrl &redirect, Completion completion) override;
    bool showAgain() override;
    void cancel() override;
    /// Ends the waiting sign-in with `url`, if it is the redirect that is waited for. Whether it did: other
    /// URLs, and the second redirect of one sign-in, are left to the caller.
    bool openCallback(const QUrl &url);

private:
    struct Waiting
    {
        QUrl page;
        QUrl redirect;
        Completion completion;
    };

    void open(const QUrl &page);
    void finish(const WebAuthenticationResult &result);

    UrlOpener m_openUrl;
    std::optional<Waiting> m_waiting;
};

} // namespace randblatt
