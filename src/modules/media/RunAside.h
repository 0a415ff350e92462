#pragma once

#include "platform/ExceptionText.h"

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <type_traits>

namespace randblatt {

/// Runs `work` on another thread, so that no frame waits for it, and gives `done` the result on the thread of
/// `context`, unless that is gone by then. Where `work` throws, the result is an empty one, and the log says
/// why.
template <typename Work, typename Done>
void runAside(QObject *context, Work work, Done done)
{
    using Result = std::invoke_result_t<Work>;
    auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    promise->future().then(context, [done](const Result &result) { done(result); });
    QThreadPool::globalInstance()->start([promise, work] {
        try {
            promise->addResult(work());
        } catch (...) {
            qWarning("Auftrag abgebrochen: %ls", qUtf16Printable(currentExceptionText()));
            promise->addResult(Result());
        }
        promise->finish();
    });
}

} // namespace randblatt
