#pragma once

#include <QRegion>

struct ext_background_effect_surface_v1;
struct org_kde_kwin_blur;
struct wl_region;
struct wl_surface;

namespace randblatt {

class WaylandConnection;

/// Asks the compositor to blur what lies behind parts of a surface; does nothing where it cannot.
class BackgroundBlur
{
public:
    explicit BackgroundBlur(const WaylandConnection &connection);
    ~BackgroundBlur();
    BackgroundBlur(const BackgroundBlur &) = delete;
    BackgroundBlur &operator=(const BackgroundBlur &) = delete;

    /// Takes a surface, or none, in place of the one before, which may be gone already; to be done anew when
    /// the compositor begins or ends to offer blur. Takes effect when the surface is committed next.
    void attach(wl_surface *surface);
    /// Takes effect when the surface is committed next. Empty is no blur.
    void setRegion(const QRegion &region);

private:
    void apply();
    void applyToKWin(wl_region *region);
    void releaseKWinBlur();

    const WaylandConnection &m_connection;
    QRegion m_region;
    wl_surface *m_surface = nullptr;
    ext_background_effect_surface_v1 *m_effect = nullptr;
    org_kde_kwin_blur *m_kwinBlur = nullptr;
};

} // namespace randblatt
