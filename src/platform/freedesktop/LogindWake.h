#pragma once

#include "platform/SystemWake.h"

#include <QDBusConnection>

namespace randblatt {

/// Hears of the machine's waking from the login manager (org.freedesktop.login1, signal PrepareForSleep).
class LogindWake : public SystemWake
{
    Q_OBJECT

public:
    /// `bus` is the system bus; one that is not connected never tells anything.
    explicit LogindWake(QDBusConnection bus, QObject *parent = nullptr);

private Q_SLOTS:
    void prepareForSleep(bool sleeps);
};

} // namespace randblatt
