#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <optional>

namespace randblatt {

/// The space that one client reserves at the edges of the root window, in native pixels (Extended Window
/// Manager Hints, _NET_WM_STRUT_PARTIAL). The depths count from the root window's edges, not from a
/// monitor's; the ranges are those of the other axis that the space covers, last pixel included.
struct Strut
{
    struct Range
    {
        int first = 0;
        int last = 0;
    };

    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
    Range leftRange;
    Range rightRange;
    Range topRange;
    Range bottomRange;
};

/// Reads a _NET_WM_STRUT_PARTIAL (twelve numbers) or a _NET_WM_STRUT (four numbers, whole edges); none for
/// another count.
[[nodiscard]] std::optional<Strut> strutFromProperty(const QList<quint32> &numbers, const QSize &root);

/// What the struts leave of a monitor. A strut that would leave nothing of it between two opposite edges is
/// meant for another monitor, beyond this one, and is ignored.
[[nodiscard]] QRect workArea(const QRect &monitor, const QSize &root, const QList<Strut> &struts);

/// The work area of a monitor among those that the window manager lists in four numbers each, for all
/// monitors in an order of its own; none if none lies on the monitor.
[[nodiscard]] std::optional<QRect> listedWorkArea(const QRect &monitor, const QList<quint32> &numbers);

} // namespace randblatt
