#pragma once

#include "Platform/HotKeys.h"

#include <QStringList>

#include <map>

namespace morvane {

/// Hot keys that the test presses, and some of which another program may have taken.
class FakeHotKeys : public HotKeys {
public:
    std::uint32_t registerKey(const HotKey &key, const QString &) override {
        m_keys[++m_lastID] = key;
        return m_lastID;
    }
    void unregisterKey(std::uint32_t id) override { m_keys.erase(id); }
    State state(std::uint32_t id) const override {
        const auto known = m_keys.find(id);
        const bool isTaken = known != m_keys.end() && m_taken.contains(known->second.symbol);
        return isTaken ? State::taken : m_usual;
    }
    bool desktopChoosesKeys() const override { return desktopGivesThem; }
    void retry() override {}

    /// The symbols of the registered keys, in the order of their registration.
    QString held() const {
        QString result;
        for (const auto &[id, key] : m_keys) {
            result += key.symbol;
        }
        return result;
    }

    std::uint32_t registrations() const { return m_lastID; }

    void press(const QString &symbol) {
        const auto held = m_keys;
        for (const auto &[id, key] : held) {
            if (key.symbol == symbol) {
                emit pressed(id);
            }
        }
    }

    void setTaken(const QStringList &symbols) {
        m_taken = symbols;
        const auto held = m_keys;
        for (const auto &[id, key] : held) {
            emit stateChanged(id);
        }
    }

    /// Sets the state of the keys that nobody else has taken.
    void setUsual(State state) {
        m_usual = state;
        setTaken({});
    }

    bool desktopGivesThem = false;

private:
    std::map<std::uint32_t, HotKey> m_keys;
    std::uint32_t m_lastID = 0;
    QStringList m_taken;
    State m_usual = State::works;
};

} // namespace morvane
