#pragma once

#include "platform/Desktop.h"

class QScreen;

namespace randblatt {

/// The desktop as Qt tells it on any platform: frames in whole points, and work areas as far as the platform
/// plugin knows them. Counts as composited.
class GenericDesktop final : public Desktop
{
    Q_OBJECT

public:
    explicit GenericDesktop(QObject *parent = nullptr);

    [[nodiscard]] QList<Screen> screens() const override { return m_screens; }
    [[nodiscard]] std::optional<Screen> mainScreen() const override;
    [[nodiscard]] std::optional<QPointF> pointerLocation() const override;
    [[nodiscard]] bool isButtonHeld() const override;
    [[nodiscard]] bool isComposited() const override { return true; }

private:
    void watch(const QScreen *screen);
    void refresh();

    QList<Screen> m_screens;
};

} // namespace randblatt
