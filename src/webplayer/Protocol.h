#pragma once

#include <QByteArray>
#include <QJsonObject>

#include <functional>

// How quillbar-webplayer and the application talk: over the helper's standard streams, one JSON object a
// line, each with a string "type". Lines that are nothing of the sort are skipped.
//
// To the helper, on its standard input:
//   {"type":"load","sdk":URL}         loads the player page, with the SDK's script from this host
//   {"type":"token","token":TEXT}     hands the page an access token
//   {"type":"ping"}                   asks whether the page still runs
// The end of its input ends the helper, so that it never outlives the application, however that ends.
//
// From the helper, on its standard output:
//   {"type":"loaded"}                           the page is there
//   {"type":"message","body":VALUE}             the page posted this to its handler "spotify"
//   {"type":"protectedAudio","available":BOOL}  whether the engine can play protected audio
//   {"type":"pong"}                             the page runs
//   {"type":"noSandbox","isRoot":BOOL}          the engine cannot be confined here: as root never, for others
//                                               not without user namespaces. The helper ends.

namespace randblatt {

/// Cuts a stream into the lines of the protocol.
class LineReader
{
public:
    /// Adds what was read, and calls `receive` for each line that this completes.
    void add(const QByteArray &data, const std::function<void(const QJsonObject &)> &receive);

private:
    QByteArray m_rest;
};

/// A line for the other side, with its end.
[[nodiscard]] QByteArray protocolLine(const QJsonObject &line);

} // namespace randblatt
