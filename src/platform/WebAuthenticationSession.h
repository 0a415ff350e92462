#pragma once

#include <QString>
#include <QUrl>

#include <functional>

namespace randblatt {

/// How a sign-in in the browser ended: with the URL that the service redirected to, with a message in German
/// for the user, or with neither, where the application itself has cancelled it.
struct WebAuthenticationResult
{
    QUrl callback;
    QString error;
};

/// Signs the user in on a web page that in the end redirects to a URL of the application's own scheme.
class WebAuthenticationSession
{
public:
    using Completion = std::function<void(const WebAuthenticationResult &)>;

    WebAuthenticationSession() = default;
    virtual ~WebAuthenticationSession() = default;
    WebAuthenticationSession(const WebAuthenticationSession &) = delete;
    WebAuthenticationSession &operator=(const WebAuthenticationSession &) = delete;

    /// Shows the page at `url`, in a browser that keeps the user's logins, and waits for `redirect`, which
    /// comes with a query. `completion` is called once, possibly before start() returns. A sign-in that is
    /// still waiting is cancelled first.
    virtual void start(const QUrl &url, const QUrl &redirect, Completion completion) = 0;
    /// Shows the page of the sign-in that is waiting once more; whether there is one.
    virtual bool showAgain() = 0;
    /// Ends the waiting sign-in, if there is one.
    virtual void cancel() = 0;
};

} // namespace randblatt
