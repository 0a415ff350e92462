#pragma once

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <type_traits>

namespace randblatt {

/// Runs `work` on another thread, so that no frame waits for it, and gives `done` the result on the thread of
/// `context`, unless that is gone by then.
template <typename Work, typename Done>
void runAside(QObject *context, Work work, Done done)
{
    using Result = std::invoke_result_t<Work>;
    auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    promise->future().then(context, [done](const Result &result) { done(result); });
    QThreadPool::globalInstance()->start([promise, work] {
        promise->addResult(work());
        promise->finish();
    });
}

} // namespace randblatt
