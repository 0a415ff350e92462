#pragma once

#include "platform/Screen.h"
#include "settings/SettingsTypes.h"

#include <QList>
#include <QPointF>
#include <QRectF>

#include <optional>

namespace randblatt {

/// Where the pointer reveals the panel, in the core's coordinates. All borders belong to the zone.
struct TriggerZone
{
    TriggerMode mode = TriggerMode::leftEdge;
    SidebarSide side = SidebarSide::left;
    /// Side of the two hot corners' squares, in points.
    double cornerSize = 90.0;
    /// Depth of the edge's band in points; less than one point counts as one.
    double edgeThickness = 3.0;

    /// Whether `point` is in the zone of the screen with the given full frame.
    [[nodiscard]] bool contains(const QRectF &frame, const QPointF &point) const;
    /// The zone's part on that screen as rectangles, whose borders all belong to it.
    [[nodiscard]] QList<QRectF> areas(const QRectF &frame) const;
};

/// The band that keeps a shown panel up: the visible frame's whole height, from the screen's edge, also
/// across a dock that lies between it and the panel, to a little beyond the panel, with a tolerance beyond
/// the other sides. All borders belong to it.
[[nodiscard]] QRectF panelArea(const Screen &screen, SidebarSide side, double panelWidth);

/// What lies around `hole` in `area`, as rectangles that may share borders.
[[nodiscard]] QList<QRectF> around(const QRectF &hole, const QRectF &area);

/// Whether `point` is in the band that keeps a shown panel up.
[[nodiscard]] bool isInPanelArea(const Screen &screen, SidebarSide side, double panelWidth,
                                 const QPointF &point);

/// The first screen whose frame contains `point`; lower borders are inside, upper borders outside.
[[nodiscard]] std::optional<Screen> screenAt(const QList<Screen> &screens, const QPointF &point);

} // namespace randblatt
