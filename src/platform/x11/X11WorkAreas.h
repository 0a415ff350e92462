#pragma once

#include "platform/x11/WorkArea.h"
#include "platform/x11/X11Connection.h"

namespace randblatt {

/// Reads the monitors' work areas from what the window manager and the docks announce.
class X11WorkAreas
{
public:
    explicit X11WorkAreas(const X11Connection &x11);

    /// The work areas of the monitors, in their order, in native pixels.
    [[nodiscard]] QList<QRect> read(const QList<QRect> &monitors);
    /// Whether work areas may have changed with this property.
    [[nodiscard]] bool dependOn(const xcb_property_notify_event_t &event) const;

private:
    [[nodiscard]] quint32 currentDesktop() const;
    /// All windows that lie on the screen, or in a frame on it.
    [[nodiscard]] QList<xcb_window_t> windowTree() const;
    [[nodiscard]] QList<Strut> struts(const QSize &root) const;

    const X11Connection &m_x11;
    QList<xcb_atom_t> m_rootProperties;
    xcb_atom_t m_strut;
    xcb_atom_t m_strutPartial;
    xcb_atom_t m_gtkWorkAreas = XCB_ATOM_NONE;
};

} // namespace randblatt
