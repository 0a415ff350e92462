#pragma once

#include "platform/x11/X11Connection.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <xcb/sync.h>

namespace randblatt {

/// Tells that the pointer has moved, and of presses, wherever on the X screen it is: by a hand on a device,
/// or by a program that puts it somewhere.
class PointerMotion final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    PointerMotion();
    ~PointerMotion() override;

    /// Whether the server tells of both kinds of motion (XInput 2.1, and the pointer's idle counter).
    [[nodiscard]] bool isAvailable() const { return m_alarm != XCB_NONE; }
    /// Asks for the next motion; nothing while it is still awaited.
    void watch() const;
    /// Whether pressed() is sent.
    void watchPresses(bool wanted);

Q_SIGNALS:
    /// Sent once after watch(); clicks and turns of the wheel may count as motion. `sequence` is the number
    /// of the request that the server had processed last before.
    void moved(quint32 sequence);
    /// A button was pressed, the wheel's included, wherever the pointer is.
    void pressed();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    [[nodiscard]] bool announcesMotion(const xcb_generic_event_t &event) const;
    [[nodiscard]] bool isInput(const xcb_generic_event_t &event, int type) const;
    void setUpMotion();
    void setUpAlarm(const QByteArray &counterName);
    void select() const;

    X11Connection m_x11;
    int m_inputOpcode = -1;
    int m_alarmNotify = -1;
    xcb_sync_alarm_t m_alarm = XCB_NONE;
    mutable bool m_isWatching = false;
    bool m_watchesPresses = false;
};

} // namespace randblatt
