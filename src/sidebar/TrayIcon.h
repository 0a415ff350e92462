#pragma once

#include <QColor>
#include <QIcon>

namespace randblatt {

/// The tray's picture, at every size: named, where the desktop's icon themes have the name, so that the tray
/// takes it in its own colours, and drawn in `color` for trays that know no names. A thin edge of the
/// opposite tone keeps the drawing readable where the tray's colour is another one.
[[nodiscard]] QIcon trayIcon(const QColor &color);

} // namespace randblatt
