#include "platform/wayland/BackgroundBlur.h"

#include "platform/wayland/WaylandConnection.h"

#include <blur-client-protocol.h>
#include <ext-background-effect-v1-client-protocol.h>
#include <wayland-client.h>

namespace randblatt {

BackgroundBlur::BackgroundBlur(const WaylandConnection &connection)
    : m_connection(connection)
{
}

BackgroundBlur::~BackgroundBlur()
{
    attach(nullptr);
}

void BackgroundBlur::attach(wl_surface *surface)
{
    if (m_effect != nullptr)
        ext_background_effect_surface_v1_destroy(m_effect);
    m_effect = nullptr;
    releaseKWinBlur();
    m_surface = surface;
    if (m_surface == nullptr)
        return;
    if (auto *effects = m_connection.backgroundEffects())
        m_effect = ext_background_effect_manager_v1_get_background_effect(effects, m_surface);
    apply();
}

void BackgroundBlur::setRegion(const QRegion &region)
{
    if (m_region == region)
        return;
    m_region = region;
    apply();
}

void BackgroundBlur::apply()
{
    if (m_surface == nullptr)
        return;
    wl_region *region = m_region.isEmpty() ? nullptr : m_connection.makeRegion(m_region);
    if (m_effect != nullptr)
        ext_background_effect_surface_v1_set_blur_region(m_effect, region);
    else if (m_connection.kwinBlur() != nullptr)
        applyToKWin(region);
    if (region != nullptr)
        wl_region_destroy(region);
}

void BackgroundBlur::applyToKWin(wl_region *region)
{
    const bool hadBlur = m_kwinBlur != nullptr;
    // KWin looks at what a surface has only once it is given another object.
    releaseKWinBlur();
    // A missing region would mean the whole surface.
    if (region == nullptr) {
        if (hadBlur)
            org_kde_kwin_blur_manager_unset(m_connection.kwinBlur(), m_surface);
        return;
    }
    m_kwinBlur = org_kde_kwin_blur_manager_create(m_connection.kwinBlur(), m_surface);
    org_kde_kwin_blur_set_region(m_kwinBlur, region);
    org_kde_kwin_blur_commit(m_kwinBlur);
}

void BackgroundBlur::releaseKWinBlur()
{
    if (m_kwinBlur != nullptr)
        org_kde_kwin_blur_release(m_kwinBlur);
    m_kwinBlur = nullptr;
}

} // namespace randblatt
