#pragma once

#include "Platform/HotKeys.h"

#include <QList>

#include <map>

namespace morvane {

class X11Connection;

/// Hot keys of an X server, each grabbed by its key code with every combination of the lock keys,
/// since the server compares those as well. Grabbed again when the keyboard's modifiers move. Owned
/// by the application; the connection must outlive it.
class X11HotKeys : public HotKeys {
    Q_OBJECT

public:
    explicit X11HotKeys(X11Connection &x11);
    ~X11HotKeys() override;

    std::uint32_t registerKey(const HotKey &key, const QString &purpose) override;
    void unregisterKey(std::uint32_t id) override;
    State state(std::uint32_t id) const override;
    bool desktopChoosesKeys() const override { return false; }
    void retry() override;

private:
    /// The bits in a key event's state of those keys whose bits differ between keyboards.
    struct Masks {
        std::uint32_t super = 0;
        std::uint32_t numLock = 0;
        std::uint32_t scrollLock = 0;

        friend bool operator==(const Masks &, const Masks &) = default;
    };

    struct Grab {
        HotKey key;
        State state = State::unavailable;
    };

    Masks readMasks() const;
    std::uint32_t maskOf(const HotKey &key) const;
    QList<std::uint32_t> variants(const HotKey &key) const;
    State grab(const HotKey &key) const;
    void ungrab(const HotKey &key) const;
    void keyboardChanged();
    void keyPressed(std::uint8_t keyCode, std::uint32_t state);

    X11Connection &m_x11;
    Masks m_masks;
    std::map<std::uint32_t, Grab> m_grabs;
    std::uint32_t m_lastID = 0;
};

} // namespace morvane
