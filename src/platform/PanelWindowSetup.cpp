#include "platform/PanelWindowSetup.h"

#include <QSurfaceFormat>
#include <QVariant>
#include <QWindow>

namespace randblatt {

void setUpPanelWindow(QWindow &window)
{
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                    Qt::NoDropShadowWindowHint);
    window.setProperty("_q_showWithoutActivating", true);
    QSurfaceFormat format = window.format();
    format.setAlphaBufferSize(8);
    window.setFormat(format);
}

} // namespace randblatt
