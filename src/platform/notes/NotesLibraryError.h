#pragma once

#include <QString>

namespace randblatt {

/// Why the notes library could not do what it was asked for; thrown.
struct NotesLibraryError
{
    enum class Reason {
        noSuchObject, ///< no note or folder has that id or name
        notPossible,  ///< the request can't be fulfilled by any library
        fileSystem,   ///< the file system refused it
    };

    Reason reason;
    /// For people, in German.
    QString message;
};

/// What the system's error number means, in German where it is a frequent one.
[[nodiscard]] QString systemReason(int errorNumber);

} // namespace randblatt
