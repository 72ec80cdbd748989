#pragma once

#include "Core/Shell/HotKeyManager.h"
#include "Platform/Task.h"
#include "Presentation/Overlay/DigitShortcuts.h"

#include <functional>
#include <memory>
#include <vector>

namespace morvane {

class InlineEditing;

/// The system-wide keys of the panel, and when they are held: the one that opens it for good, Esc
/// and the digits only while a panel is open, since they are taken from everybody else, and the
/// digits only where all of them are to be had. Owned by `AppController`; main thread.
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

    /// Takes the panel key, and follows the fields that somebody types in. Called once.
    void start(const HotKey &panelKey);

    /// Gives the panel key back and takes this one. Does nothing before `start`, and for the key
    /// that it is.
    void setPanelKey(const HotKey &key);

    /// How it stands with the panel key; none before `start`.
    std::optional<HotKeys::State> panelKeyState() const { return m_hotKey.state(); }

    /// Whether it is the desktop that says which key it is.
    bool desktopChoosesKeys() const { return m_hotKeys.desktopChoosesKeys(); }

    /// Takes the keys that others have given up in the meantime.
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
    Task m_escCheck;         ///< when a field that nobody types in is forgotten
    int m_expandedCount = 0; ///< how many panels are open
    DigitShortcuts m_digitShortcuts;
};

} // namespace morvane
