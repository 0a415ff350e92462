#pragma once

class QWindow;

namespace randblatt {

/// Makes a window that was not created yet what every platform's panel is: a translucent tool window without
/// frame and shadow that stays on top and is not activated by being shown.
void setUpPanelWindow(QWindow &window);

} // namespace randblatt
