#pragma once

#include <QList>
#include <QString>

#include <cstdint>
#include <optional>

namespace randblatt {

/// What is known of one media player.
struct PlayerState
{
    QString service;
    bool isPlaying = false;
    /// Grows with every start and end of playback of any player; 0 for one that never played.
    std::uint64_t lastPlayed = 0;
    /// It did not answer when it was last asked.
    bool isHung = false;
};

/// The index of the player that media keys act on: the one named `current` while it plays, else the first
/// that plays, else the one that played last, else the first; of players that hang only where there are no
/// others. None without players.
[[nodiscard]] std::optional<qsizetype> choosePlayer(const QList<PlayerState> &players,
                                                    const QString &current);

} // namespace randblatt
