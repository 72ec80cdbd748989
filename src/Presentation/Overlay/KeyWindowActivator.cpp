#include "Presentation/Overlay/KeyWindowActivator.h"

#include "Platform/Scheduler.h"
#include "Presentation/Overlay/KeyablePanel.h"

#include <utility>

namespace morvane {

KeyWindowActivator::KeyWindowActivator(QWidget &field, Scheduler &scheduler,
                                       std::function<void()> refused)
    : m_refused(std::move(refused)),
      m_activation(scheduler.after(Seconds(0), [this, &field] { activate(field); })) {}

KeyWindowActivator::~KeyWindowActivator() {
    // The cast fails if the panel is being destroyed around its field: only its QWidget part is
    // left, which can't give the keyboard back.
    if (auto *panel = qobject_cast<KeyablePanel *>(m_keyWindow.data())) {
        panel->resignKey();
    }
}

void KeyWindowActivator::activate(const QWidget &field) {
    auto *panel = qobject_cast<KeyablePanel *>(field.window());
    if (panel == nullptr) {
        return;
    }
    if (panel->makeKey()) {
        m_keyWindow = panel;
    } else {
        m_refused();
    }
}

} // namespace morvane
