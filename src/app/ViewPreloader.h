#pragma once

#include <QQmlComponent>
#include <QUrl>

#include <memory>
#include <vector>

class QQmlEngine;

namespace randblatt {

/// Lets the engine's other thread read the views' documents while this one sets up the rest of the program.
class ViewPreloader
{
public:
    /// Sets the engine up for the application's views and begins with the sidebar's. The engine is borrowed.
    explicit ViewPreloader(QQmlEngine &engine);

    void preload(const QUrl &source);
    /// Waits until the modules that the sidebar imports are there. What is left to do for its documents then
    /// needs this thread no more, which may be busy for a while.
    void finishImports();

private:
    QQmlEngine &m_engine;
    std::vector<std::unique_ptr<QQmlComponent>> m_components;
};

} // namespace randblatt
