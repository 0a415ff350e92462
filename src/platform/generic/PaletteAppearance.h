#pragma once

#include "platform/DesktopAppearance.h"

namespace randblatt {

/// What can be told of the desktop's wishes from the toolkit's palette: whether it is dark.
class PaletteAppearance : public DesktopAppearance
{
    Q_OBJECT

public:
    /// Follows the application's palette; the application object must exist.
    explicit PaletteAppearance(QObject *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void follow();
};

} // namespace randblatt
