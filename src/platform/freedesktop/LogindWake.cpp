#include "platform/freedesktop/LogindWake.h"

namespace randblatt {

using namespace Qt::StringLiterals;

LogindWake::LogindWake(QDBusConnection bus, QObject *parent)
    : SystemWake(parent)
{
    bus.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this, SLOT(prepareForSleep(bool)));
}

void LogindWake::prepareForSleep(bool sleeps)
{
    if (!sleeps)
        Q_EMIT woke();
}

} // namespace randblatt
