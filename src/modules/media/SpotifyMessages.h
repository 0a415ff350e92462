#pragma once

#include <QString>

class QDateTime;

namespace randblatt {

struct SpotifyReply;

// What the card says when the service does not do as it is asked: sentences in German, the reason first.

/// Why a call came to nothing. A success here is one whose body could not be read. `pausedUntil` is when the
/// service takes calls again, if it has asked for a pause.
[[nodiscard]] QString failureReason(const SpotifyReply &reply, const QDateTime &pausedUntil);
/// Why it is not known what is playing, or where.
[[nodiscard]] QString pollFailure(const SpotifyReply &reply, const QDateTime &pausedUntil);
/// Why a command to the player came to nothing; empty where it did not. `deviceReady`: our own device is
/// there.
[[nodiscard]] QString commandFailure(const SpotifyReply &reply, const QDateTime &pausedUntil,
                                     bool deviceReady);
/// Why a track was not removed.
[[nodiscard]] QString removalFailure(const SpotifyReply &reply, const QDateTime &pausedUntil);
/// There is no device that could play.
[[nodiscard]] QString noDeviceMessage();

} // namespace randblatt
