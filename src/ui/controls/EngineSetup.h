#pragma once

class QQmlEngine;

namespace randblatt {

/// Sets an engine up for the application's views: it finds the modules and symbols, and the input to its
/// windows is guarded (InputGuard) for as long as it lives.
void prepareEngine(QQmlEngine &engine);

} // namespace randblatt
