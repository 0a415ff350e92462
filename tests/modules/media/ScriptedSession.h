#pragma once

#include "platform/WebAuthenticationSession.h"

#include <utility>

namespace randblatt {

/// A sign-in in the browser that the test ends.
class ScriptedSession : public WebAuthenticationSession
{
public:
    QUrl url;
    QUrl expected;
    int shown = 0;

    void start(const QUrl &startUrl, const QUrl &redirect, Completion completion) override
    {
        cancel();
        url = startUrl;
        expected = redirect;
        shown = 1;
        m_completion = std::move(completion);
    }
    bool showAgain() override
    {
        if (m_completion)
            ++shown;
        return bool(m_completion);
    }
    void cancel() override { end({}); }
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
