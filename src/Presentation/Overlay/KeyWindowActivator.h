#pragma once

#include "Platform/Task.h"

#include <QPointer>
#include <QWidget>

#include <functional>

namespace morvane {

class Scheduler;

/// Asks for the keyboard on behalf of a text field, once, on the next turn of the event loop, and
/// gives it back when it goes away. A panel never has the keyboard by itself, so that without this
/// no key would reach the field. Owned by the field.
class KeyWindowActivator {
public:
    /// `refused` is called if the field's panel can't get the keyboard.
    KeyWindowActivator(QWidget &field, Scheduler &scheduler, std::function<void()> refused);
    ~KeyWindowActivator();
    KeyWindowActivator(const KeyWindowActivator &) = delete;
    KeyWindowActivator &operator=(const KeyWindowActivator &) = delete;

private:
    void activate(const QWidget &field);

    std::function<void()> m_refused;
    QPointer<QWidget> m_keyWindow; ///< null unless it was given the keyboard
    Task m_activation;
};

} // namespace morvane
