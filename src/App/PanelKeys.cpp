#include "App/PanelKeys.h"

#include "Platform/Scheduler.h"
#include "Presentation/Overlay/InlineEditing.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr std::uint32_t escapeKeyCode = 1;
constexpr std::uint32_t firstDigitKeyCode = 2; ///< the others follow
constexpr std::uint32_t gKeyCode = 34;
constexpr int digitCount = 5;

} // namespace

const HotKey PanelKeys::panelKey{
    .keyCode = gKeyCode, .symbol = QStringLiteral("G"), .super = true, .shift = true};

PanelKeys::PanelKeys(HotKeys &hotKeys, Scheduler &scheduler, InlineEditing &editing,
                     Actions actions)
    : m_hotKeys(hotKeys), m_scheduler(scheduler), m_editing(editing), m_actions(std::move(actions)),
      m_hotKey(hotKeys, scheduler), m_escHotKey(hotKeys, scheduler) {
    connect(&m_hotKeys, &HotKeys::stateChanged, this, [this] {
        tellWhetherDigitsWork();
        emit panelKeyStateChanged();
    });
}

void PanelKeys::start() {
    connect(&m_editing, &InlineEditing::countChanged, this, &PanelKeys::applyEscHotKey);
    m_hotKey.registerKey(panelKey, m_actions.present, tr("Open Morvane"));
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

void PanelKeys::armDigitJumpKeys() {
    disarmDigitJumpKeys();
    for (int index = 0; index < digitCount; ++index) {
        const auto keyCode = firstDigitKeyCode + static_cast<std::uint32_t>(index);
        auto key = std::make_unique<HotKeyManager>(m_hotKeys, m_scheduler);
        key->registerKey(
            {.keyCode = keyCode, .symbol = QString::number(index + 1), .control = true},
            [this, index] { m_actions.digit(index); });
        m_digitHotKeys.push_back(std::move(key));
    }
    tellWhetherDigitsWork();
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

/// While somebody types in a field, Esc must reach that.
void PanelKeys::applyEscHotKey() {
    const bool want = m_expandedCount > 0 && !m_editing.isActive(m_scheduler.now());
    if (m_escArmed == want) {
        return;
    }
    m_escArmed = want;
    if (want) {
        m_escHotKey.registerKey({.keyCode = escapeKeyCode, .symbol = QStringLiteral("Esc")},
                                m_actions.collapse);
    } else {
        m_escHotKey.unregister();
    }
}

} // namespace morvane
