#pragma once

#include "platform/Screen.h"

#include <QList>
#include <QObject>
#include <QPointF>

#include <optional>

namespace randblatt {

/// Where the pointer's position is of interest; the borders belong to it.
struct PointerArea
{
    QRectF rect;
    /// Whether clicks there are meant for what lies below. Where one must be taken all the same, it is the
    /// last, and from then on the pointer is not told there until the area was dropped and is named again.
    bool yieldsToClicks = false;

    friend bool operator==(const PointerArea &, const PointerArea &) = default;
};

/// What the desktop in front of the user offers: its screens, and where the pointer is. All geometry is in
/// the core's coordinates (see Screen).
class Desktop : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The connected screens in the system's order; screens without an area are left out, so the list may be
    /// empty. Cheap enough to be asked on every tick of the edge trigger.
    [[nodiscard]] virtual QList<Screen> screens() const = 0;
    /// The screen on which the panel appears when nothing else decides; none while no screen is connected.
    [[nodiscard]] virtual std::optional<Screen> mainScreen() const = 0;
    /// The pointer's position, or none where the desktop does not tell it.
    [[nodiscard]] virtual std::optional<QPointF> pointerLocation() const = 0;
    /// Whether pointerLocation() tells it over the windows of others as well.
    [[nodiscard]] virtual bool knowsPointerEverywhere() const { return true; }
    /// Whether pointerMoved() tells of every change of pointerLocation(), however it comes about.
    [[nodiscard]] virtual bool reportsPointerMotion() const { return false; }
    /// Whether one of the mouse's buttons is held, wherever it was pressed, as far as the desktop tells.
    [[nodiscard]] virtual bool isButtonHeld() const { return false; }
    /// Whether something is on its way that may be dropped on a window.
    [[nodiscard]] virtual bool isDragging() const { return false; }
    /// Names the areas in which the pointer's position is of interest, anew with every call. A desktop that
    /// tells the position only there may take the clicks there.
    virtual void watchPointer(const QList<PointerArea> &) {}
    /// Whether pressed() is to be told.
    virtual void watchPresses(bool) {}
    /// Whether translucent windows are blended with what lies behind them.
    [[nodiscard]] virtual bool isComposited() const = 0;

Q_SIGNALS:
    /// Screens came, went, or changed a frame.
    void screensChanged();
    void compositedChanged();
    /// The pointer may have moved since pointerLocation() was last asked; told once until it is asked again.
    void pointerMoved();
    /// A mouse button was pressed at this place, which may lie in a window of others.
    void pressed(const QPointF &place);
};

} // namespace randblatt
