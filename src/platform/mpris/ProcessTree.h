#pragma once

#include <QtGlobal>

namespace randblatt {

/// Whether the process `pid` was started by `ancestor`, directly or by others; not where it is `ancestor`
/// itself, nor where nobody knows.
[[nodiscard]] bool isDescendant(qint64 pid, qint64 ancestor);

} // namespace randblatt
