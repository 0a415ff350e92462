#include "platform/mpris/MprisMediaKeySink.h"

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

QString methodOf(MediaKey key)
{
    switch (key) {
    case MediaKey::next:
        return u"Next"_s;
    case MediaKey::previous:
        return u"Previous"_s;
    case MediaKey::play:
        break;
    }
    return u"PlayPause"_s;
}

} // namespace

MprisMediaKeySink::MprisMediaKeySink(const QDBusConnection &bus)
    : m_players(bus)
{
}

void MprisMediaKeySink::postMediaKey(MediaKey key)
{
    m_players.command(methodOf(key));
}

} // namespace randblatt
