#pragma once

#include "platform/GlobalShortcut.h"
#include "platform/x11/X11Connection.h"

#include <QAbstractNativeEventFilter>

namespace randblatt {

/// A key that is grabbed from the X server, whichever window manager runs.
class X11GlobalShortcut final : public GlobalShortcut, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit X11GlobalShortcut(QObject *parent = nullptr);
    ~X11GlobalShortcut() override;

    [[nodiscard]] bool isAvailable() const override { return true; }
    Outcome bind(const QKeySequence &keys) override;

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    [[nodiscard]] QList<xcb_keycode_t> keycodes(quint32 keysym) const;
    Outcome grab();
    void release();

    X11Connection m_x11;
    QKeySequence m_keys;
    QList<xcb_keycode_t> m_codes;
    quint16 m_modifiers = 0;
};

} // namespace randblatt
