#pragma once

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdint>
#include <cstdlib>
#include <utility>

namespace chimewerk {

/// A user of the X display: moves its pointer, presses its buttons and keys, by the server's test extension.
/// Windows get what a mouse and a keyboard would have sent them.
class XPointer {
public:
    XPointer() : server_(xcb_connect(nullptr, nullptr)) {}
    XPointer(const XPointer&) = delete;
    XPointer& operator=(const XPointer&) = delete;
    ~XPointer() { xcb_disconnect(server_); }

    bool works() const { return xcb_connection_has_error(server_) == 0; }

    /// To a place on the screen, in its pixels.
    void moveTo(int x, int y) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
        xcb_test_fake_input(server_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root,
                            static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
        sync();
    }
    /// Where on the screen the window's upper left corner is.
    std::pair<int, int> placeOf(xcb_window_t window) const {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
        auto* const place = xcb_translate_coordinates_reply(
            server_, xcb_translate_coordinates(server_, window, root, 0, 0), nullptr);
        const std::pair<int, int> found =
            place == nullptr ? std::pair(-1, -1) : std::pair<int, int>(place->dst_x, place->dst_y);
        std::free(place);
        return found;
    }

    /// The left button.
    void press() { send(XCB_BUTTON_PRESS, 1); }
    void release() { send(XCB_BUTTON_RELEASE, 1); }
    void clickAt(int x, int y) {
        moveTo(x, y);
        press();
        release();
    }

    /// The key with this symbol, such as 0xff0d (Return), and Shift where the symbol needs it.
    void type(xcb_keysym_t symbol) {
        const Key key = find(symbol);
        const Key shift = find(kShift);
        if (key.shifted) {
            send(XCB_KEY_PRESS, shift.code);
        }
        send(XCB_KEY_PRESS, key.code);
        send(XCB_KEY_RELEASE, key.code);
        if (key.shifted) {
            send(XCB_KEY_RELEASE, shift.code);
        }
    }

private:
    static constexpr xcb_keysym_t kShift = 0xffe1;

    struct Key {
        std::uint8_t code = 0;
        bool shifted = false;
    };

    Key find(xcb_keysym_t symbol) const {
        const auto* const setup = xcb_get_setup(server_);
        const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
        auto* const map = xcb_get_keyboard_mapping_reply(
            server_, xcb_get_keyboard_mapping(server_, setup->min_keycode, count), nullptr);
        Key key;
        const auto* const symbols = xcb_get_keyboard_mapping_keysyms(map);
        for (int i = 0; i < count * map->keysyms_per_keycode && key.code == 0; ++i) {
            const int column = i % map->keysyms_per_keycode;
            if (symbols[i] == symbol && column < 2) {
                key = {static_cast<std::uint8_t>(setup->min_keycode + i / map->keysyms_per_keycode),
                       column == 1};
            }
        }
        std::free(map);
        return key;
    }

    void send(std::uint8_t type, std::uint8_t detail) {
        xcb_test_fake_input(server_, type, detail, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        sync();
    }
    /// Returns once the server has done what it was asked to.
    void sync() {
        std::free(xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr));
    }

    xcb_connection_t* const server_;
};

}  // namespace chimewerk
