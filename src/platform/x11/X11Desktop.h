#pragma once

#include "platform/Desktop.h"
#include "platform/x11/PointerMotion.h"
#include "platform/x11/ScreenLayout.h"
#include "platform/x11/SelectionWatcher.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WorkAreas.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>

class QScreen;

namespace randblatt {

/// The desktop of an X server: exact to the pixel at every scale factor, with the work area of each monitor.
/// To be made while the application object runs on the xcb platform.
class X11Desktop : public Desktop, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit X11Desktop(QObject *parent = nullptr);

    [[nodiscard]] QList<Screen> screens() const override { return m_screens; }
    [[nodiscard]] std::optional<Screen> mainScreen() const override;
    [[nodiscard]] std::optional<QPointF> pointerLocation() const override;
    [[nodiscard]] bool reportsPointerMotion() const override { return m_motion.isAvailable(); }
    [[nodiscard]] bool isButtonHeld() const override;
    void watchPresses(bool wanted) override { m_motion.watchPresses(wanted); }
    [[nodiscard]] bool isDragging() const override { return m_isDragging; }
    [[nodiscard]] bool isComposited() const override { return m_compositor.hasOwner(); }

    /// For windows of this desktop.
    [[nodiscard]] const ScreenLayout &layout() const { return m_layout; }

protected:
    struct Pointer
    {
        QPoint pixel;
        /// The root window's child below the pointer, or XCB_NONE.
        xcb_window_t window = XCB_NONE;
        bool isButtonHeld = false;
        /// The number of the request that asked for it.
        quint32 sequence = 0;
    };

    [[nodiscard]] std::optional<Pointer> queryPointer() const;
    [[nodiscard]] const PointerMotion &motion() const { return m_motion; }
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    void watch(const QScreen *screen);
    void refresh();
    void followDrag();

    X11Connection m_x11;
    X11WorkAreas m_workAreas;
    SelectionWatcher m_compositor;
    SelectionWatcher m_dragged;
    QTimer m_dragEnd;
    bool m_isDragging = false;
    PointerMotion m_motion;
    QTimer m_refreshTimer;
    ScreenLayout m_layout;
    QList<Screen> m_screens;
};

} // namespace randblatt
