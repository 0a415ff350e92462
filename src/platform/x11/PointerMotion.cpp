#include "platform/x11/PointerMotion.h"

#include <QCoreApplication>
#include <QVersionNumber>

#include <xcb/xinput.h>

#include <cstdlib>
#include <memory>

namespace randblatt {

namespace {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

// The protocol has no padding between a counter's fixed part and its name, the structure in C has.
constexpr int counterNameOffset = 14;

// The first version that reports raw motion during other programs' grabs as well.
const QVersionNumber neededVersion(2, 1);

QByteArray name(const xcb_sync_systemcounter_t &counter)
{
    return {reinterpret_cast<const char *>(&counter) + counterNameOffset, counter.name_len};
}

} // namespace

PointerMotion::PointerMotion()
{
    xcb_connection_t *xcb = m_x11.xcb();
    const xcb_query_extension_reply_t *input = xcb_get_extension_data(xcb, &xcb_input_id);
    const xcb_query_extension_reply_t *sync = xcb_get_extension_data(xcb, &xcb_sync_id);
    if (!input || !input->present || !sync || !sync->present)
        return;
    m_inputOpcode = input->major_opcode;
    m_alarmNotify = sync->first_event + XCB_SYNC_ALARM_NOTIFY;
    setUpMotion();
    if (isAvailable())
        QCoreApplication::instance()->installNativeEventFilter(this);
}

PointerMotion::~PointerMotion()
{
    if (isAvailable())
        xcb_sync_destroy_alarm(m_x11.xcb(), m_alarm);
}

void PointerMotion::watch() const
{
    if (m_isWatching || !isAvailable())
        return;
    m_isWatching = true;
    select();
}

void PointerMotion::watchPresses(bool wanted)
{
    if (m_watchesPresses == wanted || !isAvailable())
        return;
    m_watchesPresses = wanted;
    select();
}

bool PointerMotion::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto &event = *static_cast<const xcb_generic_event_t *>(message);
    if (m_watchesPresses && isInput(event, XCB_INPUT_RAW_BUTTON_PRESS))
        Q_EMIT pressed();
    if (!m_isWatching || !announcesMotion(event))
        return false;
    // A moving pointer sends hundreds of these a second: one is enough until somebody looks again.
    m_isWatching = false;
    select();
    Q_EMIT moved(event.full_sequence);
    return false;
}

bool PointerMotion::announcesMotion(const xcb_generic_event_t &event) const
{
    const int type = event.response_type & 0x7f;
    if (type == m_alarmNotify)
        return reinterpret_cast<const xcb_sync_alarm_notify_event_t &>(event).alarm == m_alarm;
    return isInput(event, XCB_INPUT_RAW_MOTION);
}

bool PointerMotion::isInput(const xcb_generic_event_t &event, int type) const
{
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC)
        return false;
    const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
    return generic.extension == m_inputOpcode && generic.event_type == type;
}

void PointerMotion::setUpMotion()
{
    xcb_connection_t *xcb = m_x11.xcb();
    const Owned<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 2), nullptr));
    if (!version || QVersionNumber(version->major_version, version->minor_version) < neededVersion)
        return;
    const Owned<xcb_input_xi_get_client_pointer_reply_t> pointer(
        xcb_input_xi_get_client_pointer_reply(xcb, xcb_input_xi_get_client_pointer(xcb, XCB_NONE), nullptr));
    if (pointer && pointer->set)
        setUpAlarm("DEVICEIDLETIME " + QByteArray::number(pointer->deviceid));
}

// A pointer that a program puts somewhere makes no raw motion, but it is not idle.
void PointerMotion::setUpAlarm(const QByteArray &counterName)
{
    xcb_connection_t *xcb = m_x11.xcb();
    const Owned<xcb_sync_initialize_reply_t> version(
        xcb_sync_initialize_reply(xcb, xcb_sync_initialize(xcb, 3, 1), nullptr));
    const Owned<xcb_sync_list_system_counters_reply_t> counters(
        xcb_sync_list_system_counters_reply(xcb, xcb_sync_list_system_counters(xcb), nullptr));
    if (!version || !counters)
        return;
    xcb_sync_create_alarm_value_list_t values{};
    for (auto it = xcb_sync_list_system_counters_counters_iterator(counters.get()); it.rem > 0;
         xcb_sync_systemcounter_next(&it)) {
        if (name(*it.data) == counterName)
            values.counter = it.data->counter;
    }
    if (values.counter == XCB_NONE)
        return;
    // Fires when the idle time falls to a millisecond or less.
    values.valueType = XCB_SYNC_VALUETYPE_ABSOLUTE;
    values.value = {.hi = 0, .lo = 1};
    values.testType = XCB_SYNC_TESTTYPE_NEGATIVE_TRANSITION;
    values.events = 0;
    m_alarm = xcb_generate_id(xcb);
    xcb_sync_create_alarm_aux(xcb, m_alarm,
                              XCB_SYNC_CA_COUNTER | XCB_SYNC_CA_VALUE_TYPE | XCB_SYNC_CA_VALUE |
                                  XCB_SYNC_CA_TEST_TYPE | XCB_SYNC_CA_DELTA | XCB_SYNC_CA_EVENTS,
                              &values);
}

void PointerMotion::select() const
{
    struct
    {
        xcb_input_event_mask_t header;
        quint32 events;
    } mask{};
    mask.header = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1};
    mask.events = (m_isWatching ? XCB_INPUT_XI_EVENT_MASK_RAW_MOTION : 0) |
                  (m_watchesPresses ? XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS : 0);
    xcb_input_xi_select_events(m_x11.xcb(), m_x11.root(), 1, &mask.header);
    xcb_sync_change_alarm_value_list_t values{};
    values.events = m_isWatching;
    xcb_sync_change_alarm_aux(m_x11.xcb(), m_alarm, XCB_SYNC_CA_EVENTS, &values);
    xcb_flush(m_x11.xcb());
}

} // namespace randblatt
