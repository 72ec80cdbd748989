#include "Pictures/WindowScenes.h"

#include "Pictures/WindowStage.h"
#include "Presentation/Mascot/MenuBarIcon.h"
#include "Presentation/Style/StateLook.h"
#include "Presentation/Windows/UpdateWindow.h"
#include "Support/FakeHttpsClient.h"
#include "Support/FakeTools.h"
#include "Support/UpdateWorld.h"

#include <QGuiApplication>
#include <QPainter>

#include <array>

namespace morvane {

namespace {

const QString welcome = "Welcome to Morvane";
const QString goOn = "Continue →";

// --- The welcome ---

QImage welcomePage() {
    WindowStage stage;
    stage.open(welcome);
    return stage.picture();
}

QImage connectPage() {
    WindowStage stage;
    stage.installAgents();
    stage.open(welcome);
    stage.press(goOn);
    stage.press("Connect Claude Code");
    return stage.picture();
}

QImage connectPageWithoutAgents() {
    WindowStage stage;
    stage.open(welcome);
    stage.press(goOn);
    return stage.picture();
}

QImage readyPage() {
    WindowStage stage;
    stage.open(welcome);
    stage.press(goOn);
    stage.press(goOn);
    return stage.picture();
}

QImage newAgentsPage() {
    WindowStage stage;
    stage.installAgents();
    stage.settings().setHasCompletedFirstRun(true);
    stage.settings().setKnownAgents(QStringList("codex"));
    stage.open("New agent detected");
    return stage.picture();
}

// --- The settings ---

QImage settingsWindow() {
    WindowStage stage;
    stage.installAgents();
    stage.openSettings();
    stage.press("Connect Claude Code");
    stage.press("Connect Codex");
    return stage.picture();
}

/// A group of the settings of somebody who has agents.
QImage group(const QString &heading) {
    WindowStage stage;
    stage.installAgents();
    stage.settings().setSoundEnabled(true);
    stage.openSettings();
    stage.press("Connect Claude Code");
    stage.press("Connect Codex");
    return stage.section(heading);
}

QImage agents() {
    return group("Agents");
}

QImage agentsWithNone() {
    WindowStage stage;
    stage.openSettings();
    return stage.section("Agents");
}

QImage windowFocus() {
    return group("Window focus");
}

QImage displays() {
    return group("Displays");
}

QImage sound() {
    return group("Sound & Notifications");
}

QImage approvals() {
    return group("Approvals");
}

QImage approvalsWithoutAgents() {
    WindowStage stage;
    stage.openSettings();
    return stage.section("Approvals");
}

QImage usage() {
    return group("Usage limits");
}

QImage behaviour() {
    return group("Behaviour");
}

QImage panelKey() {
    WindowStage stage;
    stage.openSettings();
    stage.focus("Key that opens the panel");
    stage.press("Key that opens the panel");
    stage.pressKey(Qt::Key_K);
    return stage.section("Behaviour");
}

QImage takenPanelKey() {
    WindowStage stage;
    stage.settings().setShowMenuBarIcon(false);
    stage.settings().setPanelKey({.keyCode = 57, .symbol = "Space", .super = true, .alt = true});
    stage.openSettings();
    stage.hotKeys().setTaken({"Space"});
    return stage.section("Behaviour");
}

QImage privacy() {
    return group("Privacy");
}

QImage updates() {
    return group("Updates");
}

QImage about() {
    return group("About");
}

QImage removal() {
    return group({});
}

QImage removalQuestion() {
    WindowStage stage;
    stage.openSettings();
    stage.press("Remove Morvane");
    return stage.alert();
}

// --- The updates ---

/// The updates window after this answer from the feed.
QImage update(const std::optional<HttpsAnswer> &answer) {
    UpdateWorld world;
    FakeHttpsClient https;
    FakeTools tools;
    UpdateManager manager(world.defaults, world.means(https, tools),
                          {QUrl("https://updates.example/feed.json"), QByteArray(32, 'k'), "1.4"});
    manager.start();
    UpdateWindow window(manager);
    manager.checkForUpdates();
    window.present();
    https.answer(answer);
    QCoreApplication::processEvents();
    return window.grab().toImage();
}

QByteArray feed(const QByteArray &version) {
    return R"({"version":")" + version + R"(","package":"m.deb","size":3,"notes":")" +
           "A prompt of several lines can be read whole before it is answered.\\n\\n"
           "The key that opens the panel can be chosen.\\n"
           R"(","signature":")" +
           QByteArray(64, 's').toBase64() + "\"}";
}

QImage updateOffer() {
    return update(HttpsAnswer{200, {}, feed("1.5")});
}

QImage updateNone() {
    return update(HttpsAnswer{200, {}, feed("1.4")});
}

QImage updateFailed() {
    return update(std::nullopt);
}

// --- The tray ---

/// On a dark panel and on a light one, at the sizes that panels ask for.
QImage trayIcons() {
    constexpr int cell = 64;
    constexpr std::array states{SessionState::working, SessionState::needsInput, SessionState::done,
                                SessionState::failed, SessionState::idle};
    constexpr std::array sizes{16, 22, 24, 32, 48};
    const double scale = qGuiApp->devicePixelRatio();
    QImage image(QSize(cell * int(2 * sizes.size()), cell * int(states.size())) * scale,
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    QPainter painter(&image);
    const int half = cell * int(sizes.size());
    painter.fillRect(0, 0, half, image.height(), QColor(0x2b, 0x2b, 0x2b));
    painter.fillRect(half, 0, half, image.height(), QColor(0xee, 0xee, 0xee));
    for (std::size_t row = 0; row < states.size(); ++row) {
        const QIcon icon = MenuBarIcon::icon(StateLook::of(states[row]).tray, states[row]);
        for (std::size_t column = 0; column < 2 * sizes.size(); ++column) {
            const int side = sizes[column % sizes.size()];
            QRect frame(0, 0, side, side);
            frame.moveCenter({int(column) * cell + cell / 2, int(row) * cell + cell / 2});
            icon.paint(&painter, frame);
        }
    }
    return image;
}

} // namespace

const QList<WindowScene> &windowScenes() {
    static const QList<WindowScene> all{
        {"onboarding-welcome", welcomePage},
        {"onboarding-connect", connectPage},
        {"onboarding-connect-none", connectPageWithoutAgents},
        {"onboarding-ready", readyPage},
        {"onboarding-new-agents", newAgentsPage},
        {"settings", settingsWindow},
        {"settings-agents", agents},
        {"settings-agents-none", agentsWithNone},
        {"settings-window-focus", windowFocus},
        {"settings-displays", displays},
        {"settings-sound", sound},
        {"settings-approvals", approvals},
        {"settings-approvals-none", approvalsWithoutAgents},
        {"settings-usage", usage},
        {"settings-behaviour", behaviour},
        {"settings-panel-key", panelKey},
        {"settings-panel-key-taken", takenPanelKey},
        {"settings-privacy", privacy},
        {"settings-updates", updates},
        {"settings-about", about},
        {"settings-removal", removal},
        {"settings-removal-question", removalQuestion},
        {"update-offer", updateOffer},
        {"update-none", updateNone},
        {"update-failed", updateFailed},
        {"tray-icons", trayIcons},
    };
    return all;
}

} // namespace morvane
