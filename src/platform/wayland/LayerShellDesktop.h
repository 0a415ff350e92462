#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/PointerTracker.h"
#include "platform/wayland/WaylandConnection.h"

#include <QPointer>
#include <QRect>
#include <QScreen>
#include <QTimer>

#include <memory>
#include <vector>

namespace randblatt {

class PointerStrip;
class WorkAreaProbe;

/// The desktop of a Wayland compositor that has the layer shell. Where the pointer is, it knows only over the
/// panel and over invisible strips along the areas that watchPointer() names. To be made while the
/// application object runs on a Wayland platform.
class LayerShellDesktop final : public Desktop
{
    Q_OBJECT

public:
    explicit LayerShellDesktop(QObject *parent = nullptr);
    ~LayerShellDesktop() override;

    /// Whether the compositor has what this desktop is made of; without, there are no strips and no panel.
    [[nodiscard]] bool isUsable() const { return m_connection.layerShell() != nullptr; }

    [[nodiscard]] QList<Screen> screens() const override { return m_screens; }
    [[nodiscard]] std::optional<Screen> mainScreen() const override;
    [[nodiscard]] std::optional<QPointF> pointerLocation() const override;
    [[nodiscard]] bool isButtonHeld() const override { return m_pointer.isButtonHeld(); }
    [[nodiscard]] bool isDragging() const override { return m_pointer.isDragging(); }
    [[nodiscard]] bool knowsPointerEverywhere() const override { return false; }
    [[nodiscard]] bool isComposited() const override { return true; }
    [[nodiscard]] bool reportsPointerMotion() const override { return true; }
    void watchPointer(const QList<PointerArea> &areas) override;

    /// For the windows of this desktop.
    [[nodiscard]] const WaylandConnection &connection() const { return m_connection; }
    /// The screen as the desktop knows it, and as Qt does; none and null once it is gone.
    [[nodiscard]] std::optional<Screen> screen(const QString &id) const;
    [[nodiscard]] QScreen *handle(const QString &id) const;
    /// Learns of the pointer over the panel, until another takes its place or it is dropped.
    void followPanel(QWindow &panel);
    void dropPanel(const QWindow &panel);
    /// The panel is at `rect`, in points from the upper left corner of a screen; empty for a hidden one.
    /// The strips let the pointer through in `opening`. Nothing for a panel that has lost its place to
    /// another.
    void placePanel(const QWindow &panel, const QString &screenID, const QRect &rect, const QRegion &opening);

private:
    struct Output
    {
        QPointer<QScreen> handle;
        std::unique_ptr<WorkAreaProbe> workArea;
        QString id;
    };

    void watch(QScreen *screen);
    void followScreens();
    void refresh();
    void layStrips();
    void makeWayForPanel();

    WaylandConnection m_connection;
    PointerTracker m_pointer;
    QTimer m_refreshTimer;
    std::vector<Output> m_outputs;
    QList<Screen> m_screens;
    QList<PointerArea> m_areas;
    struct Strip
    {
        QString screenID;
        std::unique_ptr<PointerStrip> window;
    };
    std::vector<Strip> m_strips;
    const QWindow *m_panel = nullptr;
    QString m_panelScreenID;
    QRect m_panelRect;
    QRegion m_opening;
};

} // namespace randblatt
