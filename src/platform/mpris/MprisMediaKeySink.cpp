#include "platform/mpris/MprisMediaKeySink.h"

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

// The system-defined event of an auxiliary control button.
constexpr int systemDefined = 14;
constexpr int auxiliaryControlButton = 8;
constexpr std::int64_t stateMask = 0xff00;
constexpr std::int64_t keyDown = 0x0a00;

QString methodOf(std::int64_t keyCode)
{
    switch (keyCode) {
    case 16:
        return u"PlayPause"_s;
    case 17:
        return u"Next"_s;
    case 18:
        return u"Previous"_s;
    default:
        return {};
    }
}

} // namespace

MprisMediaKeySink::MprisMediaKeySink(const QDBusConnection &bus)
    : m_players(bus)
{
}

void MprisMediaKeySink::post(const MediaKeyEvent &event)
{
    if (event.type != systemDefined || event.subtype != auxiliaryControlButton ||
        (event.data1 & stateMask) != keyDown)
        return;
    if (const QString method = methodOf((event.data1 >> 16) & 0xffff); !method.isEmpty())
        m_players.command(method);
}

} // namespace randblatt
