#pragma once

namespace randblatt {

/// Asks the compositor that the environment names whether it announces zwlr_layer_shell_v1, on a connection
/// of its own; needs no application object. False at once where no Wayland session is.
[[nodiscard]] bool offersLayerShell();

} // namespace randblatt
