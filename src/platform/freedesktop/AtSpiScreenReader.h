#pragma once

#include "platform/ScreenReader.h"

namespace randblatt {

/// Announces on the bus for assistive tools (AT-SPI, object:announcement), while there is one.
class AtSpiScreenReader : public ScreenReader
{
public:
    void say(QObject &source, const QString &text, bool isUrgent) override;
};

} // namespace randblatt
