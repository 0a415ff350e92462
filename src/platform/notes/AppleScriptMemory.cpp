#include "platform/notes/AppleScriptMemory.h"

#include <utility>

namespace randblatt {

namespace {

thread_local qint64 memoryInUse = 0;

} // namespace

AppleScriptMemory::AppleScriptMemory(qint64 amount)
    : m_amount(amount)
{
    memoryInUse += m_amount;
}

AppleScriptMemory::AppleScriptMemory(const AppleScriptMemory &other)
    : AppleScriptMemory(other.m_amount)
{
}

AppleScriptMemory::AppleScriptMemory(AppleScriptMemory &&other) noexcept
    : m_amount(std::exchange(other.m_amount, 0))
{
}

AppleScriptMemory &AppleScriptMemory::operator=(const AppleScriptMemory &other)
{
    memoryInUse += other.m_amount - m_amount;
    m_amount = other.m_amount;
    return *this;
}

AppleScriptMemory &AppleScriptMemory::operator=(AppleScriptMemory &&other) noexcept
{
    std::swap(m_amount, other.m_amount);
    return *this;
}

AppleScriptMemory::~AppleScriptMemory()
{
    memoryInUse -= m_amount;
}

qint64 AppleScriptMemory::inUse()
{
    return memoryInUse;
}

} // namespace randblatt
