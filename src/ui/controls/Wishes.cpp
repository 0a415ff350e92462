#include "ui/controls/Wishes.h"

namespace randblatt {

namespace {

DesktopAppearance *&followed()
{
    static DesktopAppearance *source = nullptr;
    return source;
}

} // namespace

Wishes::Wishes(QObject *parent)
    : QObject(parent)
    , m_source(followed())
{
    if (m_source)
        connect(m_source, &DesktopAppearance::wishesChanged, this, &Wishes::changed);
}

void Wishes::follow(DesktopAppearance *source)
{
    followed() = source;
}

DesktopAppearance::Wishes Wishes::wishes() const
{
    return m_source ? m_source->wishes() : DesktopAppearance::Wishes();
}

} // namespace randblatt
