#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QUrl>

namespace randblatt {

/// Makes this process the application's only one in the session, and takes the requests of later processes
/// and of the desktop's launchers.
class SingleInstance final : public QObject
{
    Q_OBJECT

public:
    /// What a process was started for.
    struct Request
    {
        /// To be opened; if there are none, `action`; if that is empty too, the application comes forward.
        QList<QUrl> urls;
        QString action;
    };

    explicit SingleInstance(const QDBusConnection &sessionBus, QObject *parent = nullptr);

    /// Takes the application's name on the bus. Returns true if this process is to run: from then on the
    /// signals tell what others ask for, and `request` stays with the caller. Returns false if another
    /// process runs already: it was handed the request, and this one is to exit. Without a session bus every
    /// process runs. To be called before any window is made; may take seconds if the other process does not
    /// answer.
    [[nodiscard]] bool claim(const Request &request);

Q_SIGNALS:
    void activated();
    void opened(const QList<QUrl> &urls);
    void actionActivated(const QString &name);

private:
    /// Whether the running process took the request.
    [[nodiscard]] bool forward(const Request &request) const;

    QDBusConnection m_bus;
};

} // namespace randblatt
