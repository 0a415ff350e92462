#pragma once

#include "platform/PanelWindow.h"
#include "platform/x11/KeyboardFocus.h"
#include "platform/x11/X11Connection.h"

#include <QAbstractNativeEventFilter>
#include <QRect>
#include <QWindow>

#include <memory>
#include <optional>

namespace randblatt {

class X11Desktop;

/// The panel on an X server, for window managers that speak the Extended Window Manager Hints; without one it
/// works as well.
class X11PanelWindow final : public PanelWindow, private QAbstractNativeEventFilter
{
public:
    /// Takes the window, which must not have been shown yet; borrows the desktop, which must live longer.
    X11PanelWindow(std::unique_ptr<QWindow> window, const X11Desktop &desktop);

    [[nodiscard]] QWindow *window() const { return m_window.get(); }

    void setFrame(const QRectF &frame) override;
    [[nodiscard]] QRectF frame() const override { return m_frame; }
    void setAlpha(double alpha) override;
    [[nodiscard]] double alpha() const override { return m_alpha; }
    void orderFront() override;
    void orderOut() override;
    void makeKey() override;
    void resignKey() override;
    void setInputRegion(const QRegion &region) override;
    void setBlurRegion(const QRegion &region) override;

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    [[nodiscard]] xcb_window_t id() const;
    void applyFrame() const;
    void announce() const;
    void announceMapped() const;
    void announceInput() const;
    void announceBlur() const;
    [[nodiscard]] QList<QRect> nativeRects(const QRegion &region) const;
    void rememberKeyWindow();

    const X11Desktop &m_desktop;
    X11Connection m_x11;
    KeyboardFocus m_keyboard;
    std::unique_ptr<QWindow> m_window;
    QRectF m_frame;
    QRect m_native;
    std::optional<QRegion> m_inputRegion;
    QRegion m_blurRegion;
    double m_alpha = 1;
    /// Who had the keyboard before the panel.
    xcb_window_t m_formerKeyWindow = XCB_NONE;
};

} // namespace randblatt
