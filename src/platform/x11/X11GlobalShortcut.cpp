#include "platform/x11/X11GlobalShortcut.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <utility>

namespace randblatt {

namespace {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};

constexpr quint16 alt = XCB_MOD_MASK_1;
constexpr quint16 numLock = XCB_MOD_MASK_2;
constexpr quint16 meta = XCB_MOD_MASK_4;
// A grab is for exactly these modifiers: the locks must not keep it from coming.
constexpr std::array<quint16, 4> locks{0, XCB_MOD_MASK_LOCK, numLock, XCB_MOD_MASK_LOCK | numLock};
constexpr quint16 withoutLocks = static_cast<quint16>(~(XCB_MOD_MASK_LOCK | numLock));
constexpr quint16 allModifiers = 0xff;

/// The X server's number of a key (X11/keysymdef.h); 0 for one that has none here.
quint32 keysymOf(Qt::Key key)
{
    static constexpr std::array<std::pair<Qt::Key, quint32>, 16> named{{
        {Qt::Key_Tab, 0xff09},
        {Qt::Key_Return, 0xff0d},
        {Qt::Key_Pause, 0xff13},
        {Qt::Key_Escape, 0xff1b},
        {Qt::Key_Home, 0xff50},
        {Qt::Key_Left, 0xff51},
        {Qt::Key_Up, 0xff52},
        {Qt::Key_Right, 0xff53},
        {Qt::Key_Down, 0xff54},
        {Qt::Key_PageUp, 0xff55},
        {Qt::Key_PageDown, 0xff56},
        {Qt::Key_End, 0xff57},
        {Qt::Key_Print, 0xff61},
        {Qt::Key_Insert, 0xff63},
        {Qt::Key_Menu, 0xff67},
        {Qt::Key_Delete, 0xffff},
    }};
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return 0xffbe + static_cast<quint32>(key - Qt::Key_F1);
    // Of Latin letters the small one is on the key.
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return static_cast<quint32>(key) + 0x20;
    if (key >= Qt::Key_Agrave && key <= Qt::Key_THORN && key != Qt::Key_multiply)
        return static_cast<quint32>(key) + 0x20;
    if (key >= Qt::Key_Space && key <= Qt::Key_ydiaeresis)
        return static_cast<quint32>(key);
    const auto *it =
        std::find_if(named.begin(), named.end(), [&](const auto &known) { return known.first == key; });
    return it == named.end() ? 0 : it->second;
}

quint16 modifiersOf(Qt::KeyboardModifiers modifiers)
{
    quint16 mask = 0;
    if (modifiers & Qt::ShiftModifier)
        mask |= XCB_MOD_MASK_SHIFT;
    if (modifiers & Qt::ControlModifier)
        mask |= XCB_MOD_MASK_CONTROL;
    if (modifiers & Qt::AltModifier)
        mask |= alt;
    if (modifiers & Qt::MetaModifier)
        mask |= meta;
    return mask;
}

} // namespace

X11GlobalShortcut::X11GlobalShortcut(QObject *parent)
    : GlobalShortcut(parent)
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11GlobalShortcut::~X11GlobalShortcut()
{
    release();
}

GlobalShortcut::Outcome X11GlobalShortcut::bind(const QKeySequence &keys)
{
    release();
    m_keys = keys;
    return grab();
}

GlobalShortcut::Outcome X11GlobalShortcut::grab()
{
    if (m_keys.isEmpty())
        return Outcome::bound;
    const QKeyCombination combination = m_keys[0];
    const quint32 keysym = keysymOf(combination.key());
    m_codes = keysym == 0 ? QList<xcb_keycode_t>() : keycodes(keysym);
    m_modifiers = modifiersOf(combination.keyboardModifiers());
    if (m_codes.isEmpty())
        return Outcome::refused;
    bool isRefused = false;
    for (const xcb_keycode_t code : std::as_const(m_codes)) {
        for (const quint16 lock : locks) {
            const auto cookie = xcb_grab_key_checked(m_x11.xcb(), true, m_x11.root(), m_modifiers | lock,
                                                     code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            const std::unique_ptr<xcb_generic_error_t, Free> error(xcb_request_check(m_x11.xcb(), cookie));
            isRefused = isRefused || error != nullptr;
        }
    }
    if (isRefused)
        release();
    return isRefused ? Outcome::taken : Outcome::bound;
}

void X11GlobalShortcut::release()
{
    for (const xcb_keycode_t code : std::as_const(m_codes)) {
        for (const quint16 lock : locks)
            xcb_ungrab_key(m_x11.xcb(), code, m_x11.root(), m_modifiers | lock);
    }
    m_codes.clear();
    xcb_flush(m_x11.xcb());
}

QList<xcb_keycode_t> X11GlobalShortcut::keycodes(quint32 keysym) const
{
    const xcb_setup_t *setup = xcb_get_setup(m_x11.xcb());
    const int count = setup->max_keycode - setup->min_keycode + 1;
    const auto cookie = xcb_get_keyboard_mapping(m_x11.xcb(), setup->min_keycode, static_cast<quint8>(count));
    const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, Free> reply(
        xcb_get_keyboard_mapping_reply(m_x11.xcb(), cookie, nullptr));
    QList<xcb_keycode_t> codes;
    if (!reply || reply->keysyms_per_keycode == 0)
        return codes;
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    for (int i = 0; i < count; ++i) {
        // What the key gives without Shift, in the layout in use.
        if (symbols[i * reply->keysyms_per_keycode] == keysym)
            codes.append(static_cast<xcb_keycode_t>(setup->min_keycode + i));
    }
    return codes;
}

bool X11GlobalShortcut::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (m_keys.isEmpty() || eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const int type = event->response_type & 0x7f;
    if (type == XCB_MAPPING_NOTIFY) {
        // The same letter may be on another key now.
        release();
        grab();
        return false;
    }
    if (type != XCB_KEY_PRESS)
        return false;
    const auto *press = reinterpret_cast<const xcb_key_press_event_t *>(event);
    const quint16 held = press->state & allModifiers & withoutLocks;
    if (!m_codes.contains(press->detail) || held != m_modifiers)
        return false;
    Q_EMIT activated();
    return true;
}

} // namespace randblatt
