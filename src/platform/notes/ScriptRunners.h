#pragma once

#include "platform/ScriptRunner.h"

#include <memory>

namespace randblatt {

/// The scripting facility of this machine: the `osascript` command where one is on the path, else the
/// built-in interpreter on the notes library in the folder `library`.
[[nodiscard]] std::shared_ptr<ScriptRunner> makeScriptRunner(const QString &library);

} // namespace randblatt
