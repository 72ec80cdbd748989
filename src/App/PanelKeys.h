#pragma once

#include "Core/Shell/HotKeyManager.h"
#include "Platform/Task.h"
#include "Presentation/Overlay/DigitShortcuts.h"

#include <functional>
#include <memory>
#include <vector>

namespace morvane {

class InlineEditing;

/// The system-wide keys of the panel, and when they are registered: the key that opens it always;
/// Esc and the digits only while a panel is open, since no other program gets them then; and the
/// digits only if all of them are available. Owned by `AppController`; main thread.
class PanelKeys : public QObject {
    Q_OBJECT

public:
    struct Actions {
        std::function<void()> present;
        std::function<void()> collapse;
        std::function<void(int index)> digit; ///< from 0
    };

    /// What it is given must outlive it.
    PanelKeys(HotKeys &hotKeys, Scheduler &scheduler, InlineEditing &editing, Actions actions);

    /// Registers the panel key, and follows the text fields that are open. Called once.
    void start(const HotKey &panelKey);

    /// Replaces the panel key by this one. Does nothing before `start`, or if it is the same.
    void setPanelKey(const HotKey &key);

    /// The state of the panel key; none before `start`.
    std::optional<HotKeys::State> panelKeyState() const { return m_hotKey.state(); }

    /// Whether the desktop decides which key it is.
    bool desktopChoosesKeys() const { return m_hotKeys.desktopChoosesKeys(); }

    /// Tries again to register keys that other programs had.
    void retry();

    /// A panel has opened or closed, on whichever display.
    void panelExpanded(bool isExpanded);

    const DigitShortcuts &digitShortcuts() const { return m_digitShortcuts; }

signals:
    void panelKeyStateChanged();

private:
    void armDigitJumpKeys();
    void disarmDigitJumpKeys();
    void giveBackDigitsUnlessAllWork();
    void tellWhetherDigitsWork();
    void registerPanelKey();
    void applyEscHotKey();

    HotKeys &m_hotKeys;
    Scheduler &m_scheduler;
    InlineEditing &m_editing;
    const Actions m_actions;
    HotKey m_panelKey;
    HotKeyManager m_hotKey;
    HotKeyManager m_escHotKey;
    std::vector<std::unique_ptr<HotKeyManager>> m_digitHotKeys; ///< all or none
    Task m_escCheck;         ///< for the end of an idle text field's lease
    int m_expandedCount = 0; ///< how many panels are open
    DigitShortcuts m_digitShortcuts;
};

} // namespace morvane
