#pragma once

#include <QString>

namespace randblatt {

/// What the exception that is being handled says, as a German sentence with the reason first. To be called in
/// a `catch` block, as at a thread's edge, which no exception may pass.
[[nodiscard]] QString currentExceptionText();

} // namespace randblatt
