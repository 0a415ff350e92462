// A pointer and a keyboard for a Wayland compositor without devices, for the system tests. Driven by lines on
// standard input, each answered by a line once the compositor has taken it:
//
//   extent <width> <height>   the size of all screens together, in which positions count
//   move <x> <y>
//   button <code> <pressed>   with the codes of linux/input-event-codes.h
//   type <text>
//   key <keysym> …            presses keys together, and releases them

#include <algorithm>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <time.h>
#include <unistd.h>

#include <virtual-keyboard-unstable-v1-client-protocol.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>
#include <xkbcommon/xkbcommon.h>

namespace {

/// What the protocol's key codes lack of those of the keymap.
constexpr uint32_t keycodeOffset = 8;

uint32_t now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<uint32_t>(time.tv_sec * 1000 + time.tv_nsec / 1'000'000);
}

class Seat
{
public:
    Seat()
        : m_display(wl_display_connect(nullptr))
    {
        if (m_display == nullptr)
            throw std::runtime_error("no compositor");
        static constexpr wl_registry_listener listener{&Seat::announced,
                                                       [](void *, wl_registry *, uint32_t) {}};
        wl_registry_add_listener(wl_display_get_registry(m_display), &listener, this);
        wl_display_roundtrip(m_display);
        if (m_seat == nullptr || m_pointers == nullptr || m_keyboards == nullptr)
            throw std::runtime_error("the compositor has no virtual devices");
        m_pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(m_pointers, m_seat);
        m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(m_keyboards, m_seat);
        loadKeymap();
        wl_display_roundtrip(m_display);
    }

    void run(const std::string &line)
    {
        std::istringstream words(line);
        std::string command;
        words >> command;
        if (command == "extent") {
            words >> m_width >> m_height;
        } else if (command == "move") {
            uint32_t x = 0;
            uint32_t y = 0;
            words >> x >> y;
            zwlr_virtual_pointer_v1_motion_absolute(m_pointer, now(), x, y, m_width, m_height);
            zwlr_virtual_pointer_v1_frame(m_pointer);
        } else if (command == "button") {
            uint32_t code = 0;
            uint32_t pressed = 0;
            words >> code >> pressed;
            zwlr_virtual_pointer_v1_button(m_pointer, now(), code, pressed);
            zwlr_virtual_pointer_v1_frame(m_pointer);
        } else if (command == "type") {
            type(line.substr(std::min(line.size(), command.size() + 1)));
        } else if (command == "key") {
            std::vector<uint32_t> syms;
            for (std::string name; words >> name;)
                syms.push_back(xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_NO_FLAGS));
            press(syms);
        } else {
            throw std::runtime_error("unknown command: " + line);
        }
        if (wl_display_roundtrip(m_display) < 0)
            throw std::runtime_error("the compositor is gone");
    }

private:
    struct Stroke
    {
        uint32_t keycode = 0;
        xkb_mod_mask_t modifiers = 0;
    };

    static void announced(void *data, wl_registry *registry, uint32_t name, const char *interface, uint32_t)
    {
        auto *self = static_cast<Seat *>(data);
        const auto bind = [&](auto *&global, const wl_interface &known) {
            if (std::strcmp(interface, known.name) == 0)
                global = static_cast<std::remove_reference_t<decltype(global)>>(
                    wl_registry_bind(registry, name, &known, 1));
        };
        bind(self->m_seat, wl_seat_interface);
        bind(self->m_pointers, zwlr_virtual_pointer_manager_v1_interface);
        bind(self->m_keyboards, zwp_virtual_keyboard_manager_v1_interface);
    }

    void loadKeymap()
    {
        const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
            xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref);
        // Letters with umlauts are keys of this layout.
        const xkb_rule_names names{nullptr, nullptr, "de", nullptr, nullptr};
        const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
            xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
        for (xkb_keycode_t code = xkb_keymap_min_keycode(keymap.get());
             code <= xkb_keymap_max_keycode(keymap.get()); ++code) {
            const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap.get(), code, 0);
            for (xkb_level_index_t level = 0; level < levels; ++level) {
                const xkb_keysym_t *syms = nullptr;
                xkb_mod_mask_t modifiers = 0;
                if (xkb_keymap_key_get_syms_by_level(keymap.get(), code, 0, level, &syms) == 1 &&
                    xkb_keymap_key_get_mods_for_level(keymap.get(), code, 0, level, &modifiers, 1) == 1)
                    m_strokes.try_emplace(syms[0], Stroke{code, modifiers});
            }
        }
        char *text = xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1);
        const std::size_t size = std::strlen(text) + 1;
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        if (write(file, text, size) != static_cast<ssize_t>(size))
            throw std::runtime_error("no room for the keymap");
        std::free(text);
        zwp_virtual_keyboard_v1_keymap(m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                       static_cast<uint32_t>(size));
        close(file);
    }

    const Stroke &stroke(uint32_t sym) const
    {
        const auto it = m_strokes.find(sym);
        if (it == m_strokes.end())
            throw std::runtime_error("no key for this character");
        return it->second;
    }

    void press(const std::vector<uint32_t> &syms)
    {
        xkb_mod_mask_t modifiers = 0;
        std::vector<uint32_t> codes;
        for (const uint32_t sym : syms) {
            modifiers |= stroke(sym).modifiers;
            codes.push_back(stroke(sym).keycode - keycodeOffset);
        }
        zwp_virtual_keyboard_v1_modifiers(m_keyboard, modifiers, 0, 0, 0);
        for (const uint32_t code : codes)
            zwp_virtual_keyboard_v1_key(m_keyboard, now(), code, WL_KEYBOARD_KEY_STATE_PRESSED);
        for (auto code = codes.rbegin(); code != codes.rend(); ++code)
            zwp_virtual_keyboard_v1_key(m_keyboard, now(), *code, WL_KEYBOARD_KEY_STATE_RELEASED);
        zwp_virtual_keyboard_v1_modifiers(m_keyboard, 0, 0, 0, 0);
        wl_display_roundtrip(m_display);
    }

    /// Types Latin-1 text that comes as UTF-8.
    void type(const std::string &text)
    {
        for (std::size_t i = 0; i < text.size(); ++i) {
            auto character = static_cast<unsigned char>(text[i]);
            if (character >= 0xc0 && i + 1 < text.size())
                character = static_cast<unsigned char>(((character & 0x03) << 6) | (text[++i] & 0x3f));
            press({character});
        }
    }

    wl_display *m_display;
    wl_seat *m_seat = nullptr;
    zwlr_virtual_pointer_manager_v1 *m_pointers = nullptr;
    zwp_virtual_keyboard_manager_v1 *m_keyboards = nullptr;
    zwlr_virtual_pointer_v1 *m_pointer = nullptr;
    zwp_virtual_keyboard_v1 *m_keyboard = nullptr;
    std::map<uint32_t, Stroke> m_strokes;
    uint32_t m_width = 1;
    uint32_t m_height = 1;
};

} // namespace

int main()
{
    try {
        Seat seat;
        std::cout << "ready" << std::endl;
        for (std::string line; std::getline(std::cin, line);) {
            seat.run(line);
            std::cout << "done" << std::endl;
        }
    } catch (const std::exception &error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
    return 0;
}
