#pragma once

#include <QString>

namespace randblatt {

/// Makes the desktop hand addresses with `scheme` to `executable`. A program that was built but not installed
/// is known to no desktop: it gets a hidden desktop file of the user's. Where the application's own desktop
/// file is installed, nothing is done.
void registerUrlScheme(const QString &scheme, const QString &executable);

} // namespace randblatt
