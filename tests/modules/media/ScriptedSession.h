#pragma once

#include "platform/WebAuthenticationSession.h"

#include <utility>

namespace randblatt {

/// A sign-in in the browser that the test ends.
class ScriptedSession : public WebAuthenticationSession
{
public:
    QUrl url;
    QString scheme;
    int cancelled = 0;

    void start(const QUrl &startUrl, const QString &callbackScheme, Completion completion) override
    {
        url = startUrl;
        scheme = callbackScheme;
        m_completion = std::move(completion);
    }
    void cancel() override
    {
        if (m_completion)
            ++cancelled;
        end({.callback = {}, .error = QStringLiteral("Abgebrochen.")});
    }
    void end(const WebAuthenticationResult &result)
    {
        if (const auto completion = std::exchange(m_completion, {}))
            completion(result);
    }
    void redirect(const QString &callback) { end({.callback = QUrl(callback), .error = {}}); }

private:
    Completion m_completion;
};

} // namespace randblatt
