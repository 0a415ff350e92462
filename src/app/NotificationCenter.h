#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace randblatt {

/// Asks for the settings window.
inline constexpr QLatin1StringView openSettingsNotification{"Randblatt.openSettings"};

/// Notifications within the process, by name: whoever posts one need not know who observes it.
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    [[nodiscard]] static NotificationCenter &defaultCenter();

    void post(const QString &name);
    /// Calls `action` on every post of `name` from now on, for as long as `context` lives.
    void addObserver(const QString &name, QObject *context, const std::function<void()> &action);

Q_SIGNALS:
    void posted(const QString &name);
};

} // namespace randblatt
