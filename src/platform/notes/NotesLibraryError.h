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

    /// The error that an operating system's error number stands for, with its meaning first: "Keine
    /// Berechtigung: " and `sentence`. Where it happened is for the log alone.
    [[nodiscard]] static NotesLibraryError ofSystem(int errorNumber, const QString &sentence,
                                                    const QString &path);
};

} // namespace randblatt
