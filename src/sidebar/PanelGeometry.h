#pragma once

#include "settings/SettingsTypes.h"

#include <QRectF>

namespace randblatt {

/// The panel's places on one screen, in the core's coordinates.
struct PanelGeometry
{
    /// At the screen's edge, hanging from the top of the visible frame.
    QRectF shown;
    /// Beyond the edge; both have the same size and height.
    QRectF hidden;

    friend bool operator==(const PanelGeometry &, const PanelGeometry &) = default;
};

/// The panel's width in points: `width`, but no wider than the visible frame, and the default for what is no
/// width.
[[nodiscard]] double limitedPanelWidth(double width, const QRectF &visibleFrame);

/// Places a panel of `width` points that takes the part `heightFraction` (limited to 0.3…1; not a number
/// counts as 1) of the visible frame's height.
[[nodiscard]] PanelGeometry panelGeometry(const QRectF &visibleFrame, SidebarSide side, double width,
                                          double heightFraction);

/// The x at which a panel of `width` points is hidden beyond the screen's edge.
[[nodiscard]] double hiddenX(const QRectF &visibleFrame, SidebarSide side, double width);

} // namespace randblatt
