#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSize>

#include <xcb/xcb.h>

#include <array>

namespace randblatt {

/// Qt's own connection to the X server, with the few requests that the back ends share. Requests that name a
/// foreign window fail silently when it is gone. To be made and used while the application object runs on the
/// xcb platform.
class X11Connection
{
public:
    X11Connection();

    [[nodiscard]] xcb_connection_t *xcb() const { return m_xcb; }
    [[nodiscard]] xcb_window_t root() const { return m_root; }
    [[nodiscard]] int screenNumber() const { return m_screenNumber; }
    [[nodiscard]] QSize rootSize() const;
    [[nodiscard]] xcb_atom_t atom(const QByteArray &name) const;
    /// Whether a window was made by this process.
    [[nodiscard]] bool isOwn(xcb_window_t window) const;

    /// The windows that lie in these, in one round trip.
    [[nodiscard]] QList<xcb_window_t> children(const QList<xcb_window_t> &parents) const;
    /// Whether a window is there to be seen, unless its parent is not.
    [[nodiscard]] bool isMapped(xcb_window_t window) const;

    /// A property of 32-bit numbers; empty where it is missing or of another format.
    [[nodiscard]] QList<quint32> numbers(xcb_window_t window, xcb_atom_t property) const;
    /// The same of several windows in one round trip.
    [[nodiscard]] QList<QList<quint32>> numbers(const QList<xcb_window_t> &windows,
                                                xcb_atom_t property) const;
    void setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                    const QList<quint32> &numbers) const;
    /// Adds events to those that this process gets about a window.
    void listen(xcb_window_t window, quint32 events) const;
    /// Sends the window manager a client message about `window`.
    void tellWindowManager(xcb_window_t window, xcb_atom_t type, const std::array<quint32, 5> &data) const;
    /// The server's time.
    [[nodiscard]] xcb_timestamp_t timestamp() const;
    /// Whether a running window manager announces the hint `name` in _NET_SUPPORTED.
    [[nodiscard]] bool isSupported(const QByteArray &name) const;
    /// The name by which a running window manager introduces itself; empty without one.
    [[nodiscard]] QByteArray windowManager() const;

private:
    [[nodiscard]] xcb_window_t checkWindow() const;

    xcb_connection_t *m_xcb;
    xcb_window_t m_root;
    int m_screenNumber;
    mutable QHash<QByteArray, xcb_atom_t> m_atoms;
};

} // namespace randblatt
