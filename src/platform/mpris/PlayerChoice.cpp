#include "platform/mpris/PlayerChoice.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace randblatt {

std::optional<qsizetype> choosePlayer(const QList<PlayerState> &players, const QString &current)
{
    if (players.isEmpty())
        return std::nullopt;
    const auto indexOf = [&players](auto it) { return std::distance(players.begin(), it); };
    const auto kept = std::find_if(players.begin(), players.end(), [&current](const PlayerState &player) {
        return player.isPlaying && player.service == current;
    });
    if (kept != players.end())
        return indexOf(kept);
    const auto playing = std::find_if(players.begin(), players.end(), std::mem_fn(&PlayerState::isPlaying));
    if (playing != players.end())
        return indexOf(playing);
    // Of equal elements the first is the maximum: without any history that is the first player.
    return indexOf(
        std::max_element(players.begin(), players.end(), [](const PlayerState &a, const PlayerState &b) {
            return std::pair(!a.isHung, a.lastPlayed) < std::pair(!b.isHung, b.lastPlayed);
        }));
}

} // namespace randblatt
