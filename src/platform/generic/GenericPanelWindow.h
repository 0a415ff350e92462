#pragma once

#include "platform/PanelWindow.h"

#include <QWindow>

#include <memory>

namespace randblatt {

/// The panel through Qt's window functions alone. How much of a panel's behaviour comes about is up to the
/// platform plugin; frames are rounded to whole points.
class GenericPanelWindow final : public PanelWindow
{
public:
    /// Takes the window, which must not have been shown yet.
    explicit GenericPanelWindow(std::unique_ptr<QWindow> window);

    [[nodiscard]] QWindow *window() const { return m_window.get(); }

    void setFrame(const QRectF &frame) override;
    [[nodiscard]] QRectF frame() const override { return m_frame; }
    void setAlpha(double alpha) override;
    [[nodiscard]] double alpha() const override { return m_alpha; }
    void orderFront() override;
    void orderOut() override;
    void makeKey() override;
    void resignKey() override;

private:
    std::unique_ptr<QWindow> m_window;
    QRectF m_frame;
    double m_alpha = 1;
};

} // namespace randblatt
