#pragma once

#include <QString>

/// How the names of folders are written in the file system.
namespace randblatt::foldernames {

/// The directory name for a folder: "/" and what file systems and synchronisers do not take is written as
/// "%" and two hexadecimal digits. Different names give different directory names. Empty where no directory
/// can have the name: an empty one, one of more than 255 bytes, broken Unicode.
[[nodiscard]] QString directoryName(const QString &folderName);

/// The folder that a directory stands for. A directory whose name directoryName() does not give is called as
/// it is.
[[nodiscard]] QString folderName(const QString &directoryName);

} // namespace randblatt::foldernames
