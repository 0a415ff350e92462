#pragma once

#include <QString>

namespace randblatt {

/// Whether `text` can stand in a desktop file: of control characters only tabs and line breaks can.
[[nodiscard]] bool fitsDesktopEntry(const QString &text);

/// `text` as a value of type string (Desktop Entry Specification, "Value types").
[[nodiscard]] QString desktopEntryString(QString text);

/// `argument` as one argument of an Exec line, still to be made a string (same, "The Exec key").
[[nodiscard]] QString desktopEntryArgument(const QString &argument);

} // namespace randblatt
