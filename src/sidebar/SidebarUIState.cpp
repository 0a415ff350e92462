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

} // namespace randblatt
