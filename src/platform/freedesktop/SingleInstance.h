#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QUrl>

#include <memory>

namespace randblatt {

/// Sees to it that one instance runs per session, and lets others talk to it: the first owns the bus name
/// com.randblatt.Quillbar and answers org.freedesktop.Application (Desktop Entry Specification, "D-Bus
/// Activation") at /com/randblatt/Quillbar.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(const QDBusConnection &bus, QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Claims the name; to be called before any window is made. Where another instance has it, that one is
    /// told to open `urls`, or without any to show itself, and the result is false: the caller ends. Without
    /// a session bus, and where it refuses the name, the caller runs, unreachable. May take seconds if the
    /// other instance does not answer.
    [[nodiscard]] bool acquire(const QList<QUrl> &urls);

Q_SIGNALS:
    /// Somebody wants to see the application.
    void activated();
    void opened(const QList<QUrl> &urls);
    void actionActivated(const QString &name);

private:
    /// Whether there was an instance to forward to.
    [[nodiscard]] bool forward(const QList<QUrl> &urls) const;

    QDBusConnection m_bus;
    bool m_owner = false;
};

} // namespace randblatt
