#pragma once

#include "platform/x11/X11Connection.h"

#include <QAbstractNativeEventFilter>
#include <QColor>
#include <QObject>

#include <optional>

namespace randblatt {

/// Whether one of the X server's selections has an owner: a compositor owns _NET_WM_CM_S<n>, a system tray
/// _NET_SYSTEM_TRAY_S<n>, whoever drags something to be dropped XdndSelection.
class SelectionWatcher final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    enum class Scope { screen, display };

    /// Watches the selection of that name; with a screen's scope the name is followed by the screen's number.
    explicit SelectionWatcher(const QByteArray &name, Scope scope = Scope::screen, QObject *parent = nullptr);

    [[nodiscard]] bool hasOwner() const { return m_hasOwner; }

    /// The first colour that the owner's window tells in the property of that name, of three numbers up to
    /// 65535; none without.
    [[nodiscard]] std::optional<QColor> ownerColor(const QByteArray &property) const;

Q_SIGNALS:
    /// Whether there is an owner has changed.
    void ownerChanged();
    /// Somebody made it theirs, also who had it before.
    void taken();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    [[nodiscard]] xcb_window_t askOwner() const;

    X11Connection m_x11;
    xcb_atom_t m_selection;
    int m_selectionNotify = -1;
    bool m_hasOwner = false;
};

} // namespace randblatt
