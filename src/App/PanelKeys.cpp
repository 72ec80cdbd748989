#include "App/PanelKeys.h"

#include "Core/Settings/PanelKey.h"
#include "Platform/Scheduler.h"
#include "Presentation/Overlay/InlineEditing.h"

#include <algorithm>
#include <utility>

namespace morvane {

PanelKeys::PanelKeys(HotKeys &hotKeys, Scheduler &scheduler, InlineEditing &editing,
                     Actions actions)
    : m_hotKeys(hotKeys), m_scheduler(scheduler), m_editing(editing), m_actions(std::move(actions)),
      m_hotKey(hotKeys, scheduler), m_escHotKey(hotKeys, scheduler) {
    connect(&m_hotKeys, &HotKeys::stateChanged, this, [this] {
        tellWhetherDigitsWork();
        giveBackDigitsUnlessAllWork();
        emit panelKeyStateChanged();
    });
}

void PanelKeys::start(const HotKey &panelKey) {
    connect(&m_editing, &InlineEditing::countChanged, this, &PanelKeys::applyEscHotKey);
    m_panelKey = panelKey;
    registerPanelKey();
}

void PanelKeys::setPanelKey(const HotKey &key) {
    if (m_hotKey.state() && key != m_panelKey) {
        m_panelKey = key;
        registerPanelKey();
    }
}

void PanelKeys::registerPanelKey() {
    m_hotKey.registerKey(m_panelKey, m_actions.present, tr("Open Morvane"));
    emit panelKeyStateChanged();
}

void PanelKeys::panelExpanded(bool isExpanded) {
    const int before = m_expandedCount;
    m_expandedCount = std::max(0, before + (isExpanded ? 1 : -1));
    if (before == 0 && m_expandedCount > 0) {
        armDigitJumpKeys();
    } else if (before > 0 && m_expandedCount == 0) {
        disarmDigitJumpKeys();
    }
    applyEscHotKey();
}

void PanelKeys::retry() {
    m_hotKeys.retry();
    if (m_expandedCount > 0 && m_digitHotKeys.empty()) {
        armDigitJumpKeys();
    }
}

void PanelKeys::armDigitJumpKeys() {
    disarmDigitJumpKeys();
    for (int index = 0; index < PanelKey::digitCount; ++index) {
        auto key = std::make_unique<HotKeyManager>(m_hotKeys, m_scheduler);
        key->registerKey(PanelKey::ofDigit(index), [this, index] { m_actions.digit(index); });
        m_digitHotKeys.push_back(std::move(key));
    }
    tellWhetherDigitsWork();
    giveBackDigitsUnlessAllWork();
}

/// The rows show all digits or none, and a digit that isn't shown must do nothing.
void PanelKeys::giveBackDigitsUnlessAllWork() {
    if (!m_digitShortcuts.areWorking()) {
        disarmDigitJumpKeys();
    }
}

void PanelKeys::disarmDigitJumpKeys() {
    m_digitHotKeys.clear();
    tellWhetherDigitsWork();
}

void PanelKeys::tellWhetherDigitsWork() {
    m_digitShortcuts.setWorking(!m_digitHotKeys.empty() &&
                                std::ranges::all_of(m_digitHotKeys, [](const auto &key) {
                                    return key->state() == HotKeys::State::works;
                                }));
}

/// Esc must reach a field in use. The end of a field's lease isn't signalled, so a timer checks.
void PanelKeys::applyEscHotKey() {
    const Seconds rest = m_editing.rest(m_scheduler.now());
    m_escCheck = rest > Seconds(0) ? m_scheduler.after(rest, [this] { applyEscHotKey(); }) : Task();
    const bool want = m_expandedCount > 0 && rest <= Seconds(0);
    if (m_escHotKey.state().has_value() == want) {
        return;
    }
    if (want) {
        m_escHotKey.registerKey(PanelKey::escape(), m_actions.collapse);
    } else {
        m_escHotKey.unregister();
    }
}

} // namespace morvane

#include "moc_PanelKeys.cpp"
