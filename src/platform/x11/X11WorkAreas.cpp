#include "platform/x11/X11WorkAreas.h"

namespace randblatt {

X11WorkAreas::X11WorkAreas(const X11Connection &x11)
    : m_x11(x11)
    , m_strut(x11.atom("_NET_WM_STRUT"))
    , m_strutPartial(x11.atom("_NET_WM_STRUT_PARTIAL"))
{
    for (const char *name : {"_NET_WORKAREA", "_NET_CLIENT_LIST", "_NET_CURRENT_DESKTOP", "_GTK_WORKAREAS",
                             "_NET_SUPPORTED", "_NET_SUPPORTING_WM_CHECK"})
        m_rootProperties.append(x11.atom(name));
    x11.listen(x11.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
}

QList<QRect> X11WorkAreas::read(const QList<QRect> &monitors)
{
    QList<QRect> areas;
    const quint32 desktop = currentDesktop();
    m_gtkWorkAreas = m_x11.atom("_GTK_WORKAREAS_D" + QByteArray::number(desktop));
    QList<quint32> listed;
    // The property of GTK's makers goes stale with a change of the window manager, hence the question.
    if (m_x11.isSupported("_GTK_WORKAREAS"))
        listed = m_x11.numbers(m_x11.root(), m_gtkWorkAreas);
    // _NET_WORKAREA is one rectangle for all monitors: of use where there is one.
    else if (monitors.size() == 1 && m_x11.isSupported("_NET_WORKAREA"))
        listed = m_x11.numbers(m_x11.root(), m_x11.atom("_NET_WORKAREA")).mid(4 * desktop, 4);
    const QSize root = m_x11.rootSize();
    const QList<Strut> reserved = struts(root);
    for (const QRect &monitor : monitors)
        areas.append(listedWorkArea(monitor, listed).value_or(workArea(monitor, root, reserved)));
    return areas;
}

bool X11WorkAreas::dependOn(const xcb_property_notify_event_t &event) const
{
    if (event.window == m_x11.root())
        return m_rootProperties.contains(event.atom) || event.atom == m_gtkWorkAreas;
    return event.atom == m_strut || event.atom == m_strutPartial;
}

quint32 X11WorkAreas::currentDesktop() const
{
    return m_x11.numbers(m_x11.root(), m_x11.atom("_NET_CURRENT_DESKTOP")).value(0);
}

QList<xcb_window_t> X11WorkAreas::windowTree() const
{
    const QList<xcb_window_t> frames = m_x11.children({m_x11.root()});
    return frames + m_x11.children(frames);
}

QList<Strut> X11WorkAreas::struts(const QSize &root) const
{
    // A window manager that keeps no account of the work area need not list docks either: i3 does not.
    const bool isListed = m_x11.isSupported("_NET_WORKAREA");
    const QList<xcb_window_t> clients =
        isListed ? m_x11.numbers(m_x11.root(), m_x11.atom("_NET_CLIENT_LIST")) : windowTree();
    const QList<QList<quint32>> partial = m_x11.numbers(clients, m_strutPartial);
    const QList<QList<quint32>> whole = m_x11.numbers(clients, m_strut);
    QList<Strut> found;
    for (qsizetype i = 0; i < clients.size(); ++i) {
        const auto strut = strutFromProperty(partial[i].isEmpty() ? whole[i] : partial[i], root);
        if (!strut || (!isListed && !m_x11.isMapped(clients[i])))
            continue;
        found.append(*strut);
        // A dock that grows or shrinks does not always change a property of the root window.
        if (!m_x11.isOwn(clients[i]))
            m_x11.listen(clients[i], XCB_EVENT_MASK_PROPERTY_CHANGE);
    }
    return found;
}

} // namespace randblatt
