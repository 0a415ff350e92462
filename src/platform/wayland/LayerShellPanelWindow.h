#pragma once

#include "platform/PanelWindow.h"
#include "platform/wayland/BackgroundBlur.h"
#include "platform/wayland/LayerSurface.h"

#include <QObject>
#include <QWindow>

#include <functional>
#include <memory>
#include <optional>

namespace randblatt {

class LayerShellDesktop;

/// The panel on a Wayland compositor that has the layer shell. It takes the keyboard only while it is the key
/// window: from makeKey(), or from a click, until it hides or the pointer has gone elsewhere.
class LayerShellPanelWindow final : public QObject, public PanelWindow
{
    Q_OBJECT

public:
    /// Shows a window's content with the given opacity, which compositors don't do.
    using Fade = std::function<void(double alpha)>;

    /// Takes the window, which must not have been shown yet; borrows the desktop, which must live longer.
    LayerShellPanelWindow(std::unique_ptr<QWindow> window, LayerShellDesktop &desktop, Fade fade);
    ~LayerShellPanelWindow() override;

    [[nodiscard]] QWindow *window() const { return m_window.get(); }

    void setScreen(const Screen &screen) override;
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
    bool eventFilter(QObject *watched, QEvent *event) override;
    void attachBlur();
    void place();
    void followPointer();

    LayerShellDesktop &m_desktop;
    std::unique_ptr<QWindow> m_window;
    Fade m_fade;
    LayerSurface m_surface;
    BackgroundBlur m_blur;
    QString m_screenID;
    QRectF m_frame;
    std::optional<QRegion> m_inputRegion;
    double m_alpha = 1;
    /// Whether the pointer was over the panel since it became the key window.
    bool m_wasVisited = false;
};

} // namespace randblatt
