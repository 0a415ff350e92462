#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

namespace randblatt {

/// One monitor of an X screen: its place in native pixels, and how many pixels one point has.
struct Monitor
{
    QRect native;
    double factor = 1;

    friend bool operator==(const Monitor &, const Monitor &) = default;
};

/// Converts between native pixels and the core's coordinates (see Screen). As in Qt, a monitor keeps the
/// native position of its upper left corner, and is scaled from there; monitors of a factor above 1 leave
/// gaps between each other.
class ScreenLayout
{
public:
    ScreenLayout() = default;
    /// The first monitor is the primary one.
    explicit ScreenLayout(QList<Monitor> monitors);

    [[nodiscard]] const QList<Monitor> &monitors() const { return m_monitors; }
    /// A rectangle that belongs to `monitor`, one of this layout's.
    [[nodiscard]] QRectF inCore(const QRect &native, const Monitor &monitor) const;
    /// The position of a pixel: inside the frame of the monitor that shows it, for its very last column and
    /// row as well. None without monitors.
    [[nodiscard]] std::optional<QPointF> pixelInCore(const QPoint &pixel) const;
    /// The native rectangle of a window. It is scaled as the monitor that contains its centre, or that is
    /// nearest to it. The result is empty without monitors.
    [[nodiscard]] QRect inNative(const QRectF &frame) const;

private:
    QList<Monitor> m_monitors;
};

} // namespace randblatt
