#pragma once

#include "Platform/Displays.h"
#include "Platform/HostWindows.h"
#include "Platform/HotKeys.h"
#include "Platform/MotionPreference.h"
#include "Platform/OverlayWindow.h"
#include "Platform/OverlayWindows.h"
#include "Platform/PointerMonitor.h"
#include "Platform/StatusItemHost.h"

#include <QObject>

#include <utility>

/// The screen's ports on a machine without a screen: nothing exists, and nothing happens. Main
/// thread.
namespace morvane::NoScreen {

class NullDisplays : public Displays {
public:
    QList<Display> displays() const override { return {}; }
    QPoint pointerPosition() const override { return {}; }
};

/// Never asked, since without a display nothing is shown.
class NullOverlayWindows : public OverlayWindows {
public:
    std::unique_ptr<OverlayWindow> adopt(QWidget &) override { return nullptr; }
};

class NullPointerMonitor : public PointerMonitor {
public:
    void activate() override {}
    void deactivate() override {}
};

class NullHotKeys : public HotKeys {
public:
    std::uint32_t registerKey(const HotKey &, const QString &) override { return 0; }
    void unregisterKey(std::uint32_t) override {}
    State state(std::uint32_t) const override { return State::unavailable; }
    bool desktopChoosesKeys() const override { return false; }
    void retry() override {}
};

class NullHostWindows : public HostWindows {
public:
    bool canFocusWindows() const override { return false; }
    void find(const QString &, Found found) override {
        later([found = std::move(found)] { found(std::nullopt); });
    }
    void activate(const HostWindow &) override {}
    void launch(const QString &) override {}
    void showTerminal(const TerminalDevice &, Shown shown) override {
        later([shown = std::move(shown)] { shown(Showing::unknown); });
    }

private:
    void later(std::function<void()> answer) {
        QMetaObject::invokeMethod(&m_context, std::move(answer), Qt::QueuedConnection);
    }

    QObject m_context; ///< its destruction drops pending answers
};

class NullStatusItemHost : public StatusItemHost {
public:
    bool isPresent() const override { return false; }
};

class NullMotionPreference : public MotionPreference {
public:
    bool isReduced() const override { return false; }
};

} // namespace morvane::NoScreen
