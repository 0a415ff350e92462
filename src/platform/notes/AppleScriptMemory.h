#pragma once

#include <QtGlobal>

namespace randblatt {

/// How much the values that are alive on this thread hold, in characters. A text counts once for every value
/// that has it, so the sum is never below what is used.
class AppleScriptMemory
{
public:
    explicit AppleScriptMemory(qint64 amount = 0);
    AppleScriptMemory(const AppleScriptMemory &other);
    AppleScriptMemory(AppleScriptMemory &&other) noexcept;
    AppleScriptMemory &operator=(const AppleScriptMemory &other);
    AppleScriptMemory &operator=(AppleScriptMemory &&other) noexcept;
    ~AppleScriptMemory();

    [[nodiscard]] static qint64 inUse();

private:
    qint64 m_amount;
};

} // namespace randblatt
