#include "sidebar/SidebarUIState.h"

namespace randblatt {

SidebarUIState &SidebarUIState::shared()
{
    static SidebarUIState state;
    return state;
}

void SidebarUIState::setKeepOpen(bool keepOpen)
{
    if (m_keepOpen == keepOpen)
        return;
    m_keepOpen = keepOpen;
    Q_EMIT keepOpenChanged();
}

void SidebarUIState::setHasKeyboard(bool hasKeyboard)
{
    if (m_hasKeyboard == hasKeyboard)
        return;
    m_hasKeyboard = hasKeyboard;
    Q_EMIT hasKeyboardChanged();
}

void SidebarUIState::setComposing(bool isComposing)
{
    if (m_isComposing == isComposing)
        return;
    m_isComposing = isComposing;
    Q_EMIT isComposingChanged();
}

void SidebarUIState::setPressed(bool isPressed)
{
    if (m_isPressed == isPressed)
        return;
    m_isPressed = isPressed;
    Q_EMIT isPressedChanged();
}

} // namespace randblatt
