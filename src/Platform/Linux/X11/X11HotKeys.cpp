#include "Platform/Linux/X11/X11HotKeys.h"

#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/XcbReply.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace morvane {

namespace {

constexpr std::uint32_t keyCodeOffset = 8;   ///< of the server's key codes to the kernel's
constexpr std::uint32_t modifierBits = 0xff; ///< the modifier bits of a state, without buttons

// From X11/keysymdef.h.
constexpr xcb_keysym_t superLeft = 0xffeb;
constexpr xcb_keysym_t superRight = 0xffec;
constexpr xcb_keysym_t numLockSymbol = 0xff7f;
constexpr xcb_keysym_t scrollLockSymbol = 0xff14;

std::uint8_t codeOf(const HotKey &key) {
    return static_cast<std::uint8_t>(key.keyCode + keyCodeOffset);
}

} // namespace

X11HotKeys::X11HotKeys(X11Connection &x11) : m_x11(x11), m_masks(readMasks()) {
    connect(&m_x11, &X11Connection::keyboardChanged, this, &X11HotKeys::keyboardChanged);
    connect(&m_x11, &X11Connection::keyPressed, this, &X11HotKeys::keyPressed);
}

X11HotKeys::~X11HotKeys() {
    for (const auto &[id, grab] : m_grabs) {
        ungrab(grab.key);
    }
}

std::uint32_t X11HotKeys::registerKey(const HotKey &key, const QString &) {
    const std::uint32_t id = ++m_lastID;
    m_grabs[id] = {key, grab(key)};
    return id;
}

void X11HotKeys::unregisterKey(std::uint32_t id) {
    if (const auto known = m_grabs.find(id); known != m_grabs.end()) {
        ungrab(known->second.key);
        m_grabs.erase(known);
    }
}

HotKeys::State X11HotKeys::state(std::uint32_t id) const {
    const auto known = m_grabs.find(id);
    return known != m_grabs.end() ? known->second.state : State::unavailable;
}

/// A key that is grabbed already may be grabbed again.
void X11HotKeys::retry() {
    QList<std::uint32_t> changed;
    for (auto &[id, held] : m_grabs) {
        const State before = std::exchange(held.state, grab(held.key));
        if (held.state != before) {
            changed.append(id);
        }
    }
    for (const std::uint32_t id : changed) {
        emit stateChanged(id);
    }
}

/// The modifier map lists key codes; only the keyboard map has their symbols.
X11HotKeys::Masks X11HotKeys::readMasks() const {
    auto *connection = m_x11.connection();
    const auto *setup = xcb_get_setup(connection);
    const xcb_keycode_t first = setup->min_keycode;
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - first + 1);
    const auto modifiersCookie = xcb_get_modifier_mapping(connection);
    const auto symbolsCookie = xcb_get_keyboard_mapping(connection, first, count);
    const XcbReply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifiersCookie, nullptr));
    const XcbReply<xcb_get_keyboard_mapping_reply_t> symbols(
        xcb_get_keyboard_mapping_reply(connection, symbolsCookie, nullptr));
    Masks result;
    if (!modifiers || !symbols) {
        return result;
    }
    const xcb_keycode_t *codes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    const xcb_keysym_t *all = xcb_get_keyboard_mapping_keysyms(symbols.get());
    const int codesOfAModifier = modifiers->keycodes_per_modifier;
    const int symbolsOfAKey = symbols->keysyms_per_keycode;
    for (int position = 0; position < 8 * codesOfAModifier; ++position) {
        const xcb_keycode_t code = codes[position];
        if (code < first) {
            continue;
        }
        const std::uint32_t bit = 1U << (position / codesOfAModifier);
        const xcb_keysym_t *key = all + std::ptrdiff_t(code - first) * symbolsOfAKey;
        const auto has = [&](xcb_keysym_t symbol) {
            return std::find(key, key + symbolsOfAKey, symbol) != key + symbolsOfAKey;
        };
        result.super |= has(superLeft) || has(superRight) ? bit : 0;
        result.numLock |= has(numLockSymbol) ? bit : 0;
        result.scrollLock |= has(scrollLockSymbol) ? bit : 0;
    }
    return result;
}

std::uint32_t X11HotKeys::maskOf(const HotKey &key) const {
    std::uint32_t result = 0;
    result |= key.shift ? XCB_MOD_MASK_SHIFT : 0;
    result |= key.control ? XCB_MOD_MASK_CONTROL : 0;
    result |= key.alt ? XCB_MOD_MASK_1 : 0;
    result |= key.super ? m_masks.super : 0;
    return result;
}

/// With each of the lock keys on and off.
QList<std::uint32_t> X11HotKeys::variants(const HotKey &key) const {
    QList<std::uint32_t> result{maskOf(key)};
    for (const std::uint32_t lock :
         {std::uint32_t(XCB_MOD_MASK_LOCK), m_masks.numLock, m_masks.scrollLock}) {
        for (const std::uint32_t mask : QList(result)) {
            if (!result.contains(mask | lock)) {
                result.append(mask | lock);
            }
        }
    }
    return result;
}

/// If another program has any variant of a key, all variants are left to it.
HotKeys::State X11HotKeys::grab(const HotKey &key) const {
    if (key.super && m_masks.super == 0) {
        return State::unavailable;
    }
    auto *connection = m_x11.connection();
    std::vector<xcb_void_cookie_t> cookies;
    for (const std::uint32_t mask : variants(key)) {
        cookies.push_back(xcb_grab_key_checked(connection, 0, m_x11.root(),
                                               static_cast<std::uint16_t>(mask), codeOf(key),
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    State result = State::works;
    for (const xcb_void_cookie_t cookie : cookies) {
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
        if (error) {
            result = error->error_code == XCB_ACCESS ? State::taken : State::unavailable;
        }
    }
    if (result != State::works) {
        ungrab(key);
    }
    return result;
}

void X11HotKeys::ungrab(const HotKey &key) const {
    for (const std::uint32_t mask : variants(key)) {
        xcb_ungrab_key(m_x11.connection(), codeOf(key), m_x11.root(),
                       static_cast<std::uint16_t>(mask));
    }
    xcb_flush(m_x11.connection());
}

/// Some programs remap the keyboard for every letter that they type for a person; the masks stay
/// the same then.
void X11HotKeys::keyboardChanged() {
    const Masks masks = readMasks();
    if (masks == m_masks) {
        return;
    }
    for (const auto &[id, held] : m_grabs) {
        ungrab(held.key);
    }
    m_masks = masks;
    retry();
}

void X11HotKeys::keyPressed(std::uint8_t keyCode, std::uint32_t state) {
    const std::uint32_t locks = XCB_MOD_MASK_LOCK | m_masks.numLock | m_masks.scrollLock;
    const std::uint32_t modifiers = state & modifierBits & ~locks;
    const auto pressedKey = std::ranges::find_if(m_grabs, [&](const auto &entry) {
        const HotKey &key = entry.second.key;
        return codeOf(key) == keyCode && maskOf(key) == modifiers;
    });
    if (pressedKey != m_grabs.end()) {
        emit pressed(pressedKey->first);
    }
}

} // namespace morvane

#include "moc_X11HotKeys.cpp"
