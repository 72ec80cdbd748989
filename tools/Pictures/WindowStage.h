#pragma once

#include "App/AppDelegate.h"
#include "App/FakePlatform.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Support/TemporaryHome.h"

#include <QImage>

class QAbstractButton;

namespace morvane {

/// The program's windows as it makes them itself, in a temporary home on a machine without a
/// screen. Used on the main thread, one stage a picture.
class WindowStage {
public:
    WindowStage();

    /// Puts three agents into the home. Call before the program starts.
    void installAgents();

    MorvaneSettings &settings() { return m_settings; }
    FakeHotKeys &hotKeys() { return static_cast<FakeHotKeys &>(*m_platform.hotKeys); }

    /// Starts the program, for a newcomer unless the settings say otherwise, and selects its window
    /// of this title.
    void open(const QString &title);

    /// Opens the settings for somebody who is no newcomer.
    void openSettings();

    /// Presses the visible control with this name or text.
    void press(const QString &name);

    /// Gives the keyboard to the control with this name or text.
    void focus(const QString &name);

    void pressKey(Qt::Key key);

    /// The whole window.
    QImage picture() const;

    /// The alert above the window.
    QImage alert() const;

    /// A group of the settings by its heading; the last one has none.
    QImage section(const QString &heading) const;

private:
    QAbstractButton *control(const QString &name) const;
    void pass(Seconds length);

    TemporaryHome m_home;
    Defaults m_defaults{m_home.path("config"), "pictures"};
    MorvaneSettings m_settings{m_defaults};
    PlatformServices m_platform = fakePlatform();
    AppDelegate m_delegate{m_settings, m_platform};
    QWidget *m_window = nullptr;
};

} // namespace morvane
