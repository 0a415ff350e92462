#pragma once

#include "platform/MediaKeySink.h"
#include "platform/mpris/MprisPlayers.h"

#include <QDBusConnection>

namespace randblatt {

/// Turns media keys into PlayPause, Next and Previous of the current MPRIS player.
class MprisMediaKeySink final : public MediaKeySink
{
public:
    /// Without a connection every key is dropped.
    explicit MprisMediaKeySink(const QDBusConnection &bus = QDBusConnection::sessionBus());

    void postMediaKey(MediaKey key) override;

private:
    MprisPlayers m_players;
};

} // namespace randblatt
