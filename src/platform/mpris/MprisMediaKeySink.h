#pragma once

#include "platform/MediaKeySink.h"
#include "platform/mpris/MprisPlayers.h"

#include <QDBusConnection>

namespace randblatt {

/// Turns the press of a media key into play/pause, next or previous of the current MPRIS player.
class MprisMediaKeySink final : public MediaKeySink
{
public:
    /// Without a connection every event is dropped.
    explicit MprisMediaKeySink(const QDBusConnection &bus = QDBusConnection::sessionBus());

    void post(const MediaKeyEvent &event) override;

private:
    MprisPlayers m_players;
};

} // namespace randblatt
