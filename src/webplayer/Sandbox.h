#pragma once

namespace randblatt {

/// Whether the engine can confine the processes that run its pages: not as root, and for others only where
/// the kernel lets them have user namespaces of their own. True as well where the environment switches the
/// sandbox off. To be asked before the process has other threads.
[[nodiscard]] bool canConfineEngine();

} // namespace randblatt
