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
};

/// The index of the player that media keys act on: the one named `current` while it plays, else the first
/// that plays, else the one that played last, else the first. None without players.
[[nodiscard]] std::optional<qsizetype> choosePlayer(const QList<PlayerState> &players,
                                                    const QString &current);

} // namespace randblatt
