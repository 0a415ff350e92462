#pragma once

#include <QByteArray>
#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QThreadPool>

#include <memory>

namespace randblatt {

/// Parses `json` with `parse` on another thread, so that no frame waits for it, and gives `done` the result
/// on the thread of `context`, unless that is gone by then.
template <typename Result, typename Done>
void parseAside(QObject *context, const QByteArray &json, Result (*parse)(const QByteArray &), Done done)
{
    auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    promise->future().then(context, [done](const Result &result) { done(result); });
    QThreadPool::globalInstance()->start([promise, json, parse] {
        promise->addResult(parse(json));
        promise->finish();
    });
}

} // namespace randblatt
