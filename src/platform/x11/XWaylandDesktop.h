#pragma once

#include "platform/x11/TriggerStrip.h"
#include "platform/x11/X11Desktop.h"

#include <memory>
#include <vector>

namespace randblatt {

/// The desktop of an X server that is a Wayland compositor's guest. The server knows the pointer only over
/// X windows, which are ours and other X programs'; elsewhere its position is none. So that the pointer is
/// known where the panel is to be revealed, invisible strips lie at the screens' borders there.
class XWaylandDesktop final : public X11Desktop
{
    Q_OBJECT

public:
    explicit XWaylandDesktop(QObject *parent = nullptr);

    [[nodiscard]] std::optional<QPointF> pointerLocation() const override;
    [[nodiscard]] bool knowsPointerEverywhere() const override { return false; }
    /// The server tells nothing when the pointer leaves for a window of the compositor's.
    [[nodiscard]] bool reportsPointerMotion() const override { return false; }
    void watchPointer(const QList<PointerArea> &areas) override;

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    /// What lies of an area between a screen's edge and what docks leave of it, in native pixels.
    [[nodiscard]] QList<QRect> dockStrips(const QRectF &area) const;
    void lose(const Pointer &pointer) const;
    void comeBack(quint32 sequence);

    std::vector<std::unique_ptr<TriggerStrip>> m_strips;
    /// How the server lost the pointer to a window of the compositor's; none while it has it.
    mutable std::optional<Pointer> m_lost;
};

} // namespace randblatt
