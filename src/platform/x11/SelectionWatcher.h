#pragma once

#include "platform/x11/X11Connection.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace randblatt {

/// Whether one of the X server's manager selections has an owner: a compositor owns _NET_WM_CM_S<n>, a system
/// tray _NET_SYSTEM_TRAY_S<n>.
class SelectionWatcher final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Watches the selection whose name is `prefix` followed by the screen's number.
    explicit SelectionWatcher(const QByteArray &prefix, QObject *parent = nullptr);

    [[nodiscard]] bool hasOwner() const { return m_hasOwner; }

Q_SIGNALS:
    void ownerChanged();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    [[nodiscard]] bool askOwner() const;

    X11Connection m_x11;
    xcb_atom_t m_selection;
    int m_selectionNotify = -1;
    bool m_hasOwner = false;
};

} // namespace randblatt
