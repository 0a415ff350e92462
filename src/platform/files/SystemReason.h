#pragma once

#include <QString>

namespace randblatt {

/// What the operating system's error number means, in German, as the beginning of a sentence: "Keine
/// Berechtigung".
[[nodiscard]] QString systemReason(int errorNumber);

} // namespace randblatt
