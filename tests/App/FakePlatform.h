#pragma once

#include "App/PlatformServices.h"
#include "Platform/NullScripting.h"
#include "Support/FakeDisplays.h"
#include "Support/FakeHostWindows.h"
#include "Support/FakeHotKeys.h"
#include "Support/FakeMotionPreference.h"
#include "Support/FakeOverlayWindows.h"
#include "Support/FakePointerMonitor.h"
#include "Support/FakeProcesses.h"
#include "Support/FakeSoundPlayer.h"
#include "Support/FakeTools.h"
#include "Support/ManualPool.h"
#include "Support/ManualScheduler.h"
#include "Support/NoApplications.h"

namespace morvane {

/// Keeps whether the program starts at login, and fails when told to.
class FakeLoginItem : public LoginItem {
public:
    bool isEnabled() const override { return enabled; }
    Result<void> registerItem() override { return change(true); }
    Result<void> unregisterItem() override { return change(false); }

    bool enabled = false;
    Result<void> outcome;

private:
    Result<void> change(bool wanted) {
        if (outcome) {
            enabled = wanted;
        }
        return outcome;
    }
};

/// A desktop that has a place for status items when the test says so.
class FakeStatusItemHost : public StatusItemHost {
public:
    bool isPresent() const override { return m_isPresent; }
    void setPresent(bool isPresent) {
        m_isPresent = isPresent;
        emit presenceChanged();
    }

private:
    bool m_isPresent = false;
};

/// A machine without a screen.
inline PlatformServices fakePlatform() {
    PlatformServices result;
    result.scheduler = std::make_unique<ManualScheduler>();
    result.background = std::make_unique<ManualPool>();
    result.applications = std::make_unique<NoApplications>();
    result.loginItem = std::make_unique<FakeLoginItem>();
    result.sounds = std::make_unique<FakeSoundPlayer>();
    result.processes = std::make_unique<FakeProcesses>();
    result.tools = std::make_unique<FakeTools>();
    result.scripting = std::make_unique<NullScripting>(*result.scheduler);
    result.hostWindows = std::make_unique<FakeHostWindows>();
    result.hotKeys = std::make_unique<FakeHotKeys>();
    return result;
}

/// Adds a screen with one display.
inline void addFakeScreen(PlatformServices &platform) {
    auto displays = std::make_unique<FakeDisplays>();
    displays->setDisplays({FakeDisplays::builtin(1, 0)});
    platform.hasScreen = true;
    platform.displays = std::move(displays);
    platform.overlays = std::make_unique<FakeOverlayWindows>();
    platform.statusItemHost = std::make_unique<FakeStatusItemHost>();
    platform.motion = std::make_unique<FakeMotionPreference>();
    platform.pointer = std::make_unique<FakePointerMonitor>();
}

} // namespace morvane
