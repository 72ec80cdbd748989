#include "Pictures/Stage.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/TranscriptInfo.h"
#include "Core/Navigation/HostApp.h"
#include "Support/NoApplications.h"

#include <QApplication>
#include <QLineEdit>
#include <QLinearGradient>
#include <QPainter>
#include <QTest>

namespace morvane {

namespace {

constexpr QSize screenSize(1280, 800);
constexpr int margin = 24;

Display display(Stage::Screen screen) {
    Display result{.id = 1, .frame = QRect({}, screenSize), .visibleFrame = QRect({}, screenSize)};
    if (screen == Stage::Screen::notched) {
        constexpr int notchHeight = 32;
        constexpr int sideWidth = 540;
        result.isBuiltin = true;
        result.topSafeAreaInset = notchHeight;
        result.auxiliaryTopLeftArea = QSize(sideWidth, notchHeight);
        result.auxiliaryTopRightArea = QSize(sideWidth, notchHeight);
    }
    return result;
}

} // namespace

Stage::Stage(Screen screen) {
    m_settings.setShowWhenIdle(true);
    m_store.readTranscript = [this](AgentKind, const QString &path,
                                    const SessionTranscripts::Use &use) {
        use(transcripts.value(path));
    };
    PanelActions actions;
    actions.onDecide = [this](const QString &sessionID, const AgentDecision &decision) {
        m_store.decide(sessionID, decision);
    };
    actions.onAnswer = [this](const QString &sessionID, const QString &question,
                              const QString &option) {
        m_store.answer(sessionID, question, option);
    };
    actions.onRenameCommit = [this](const QString &cwd, const QString &name) {
        m_store.renameCwd(cwd, name);
    };
    actions.onReopen = [](const CompletedRecord &) {};
    actions.onRefreshUsage = [] {};
    actions.onReply = [](const Session &, const QString &, const auto &) {};
    actions.canReply = [](const Session &session) { return session.pane.tmux.has_value(); };
    m_displays.setDisplays({display(screen)});
    m_presenters = std::make_unique<PresenterManager>(
        PanelContext{m_store, m_usage.poller(), m_settings, m_scheduler, m_motion, m_editing,
                     m_timeline, m_replyDrafts, actions},
        m_displays, m_overlays, m_pointer);
    m_presenters->start();
    pass(Seconds(1));
}

Stage::~Stage() = default;

SessionSurroundings Stage::surroundings() {
    return {
        [this](const QString &cwd) {
            return branches.contains(cwd) ? std::optional(branches.value(cwd)) : std::nullopt;
        },
        [this](const QString &cwd) { return m_settings.name(cwd); },
        [](const auto &hostBundleID, const auto &termProgram) {
            return HostApp::displayName(hostBundleID, termProgram, NoApplications());
        },
    };
}

void Stage::tell(AgentKind agent, const QString &cwd, const QString &event,
                 const QByteArray &members, const QString &decisionID) {
    QByteArray body = R"({"session_id":")" + cwd.toUtf8() + R"(","cwd":")" + cwd.toUtf8() +
                      R"(","transcript_path":")" + cwd.toUtf8() + '"';
    if (!members.isEmpty()) {
        body += ',' + members;
    }
    auto decoded =
        HookEvent::decode(AgentRegistry::adapter(agent), event, body + '}', terminals.value(cwd));
    if (!decoded) {
        qFatal("%s is no event of this agent", qPrintable(event));
    }
    if (!decisionID.isEmpty()) {
        decoded->decisionID = decisionID;
    }
    m_store.apply(*decoded);
    pass(Seconds(0));
}

void Stage::pass(Seconds length) {
    // Processes what the last step has caused first, and what this step causes at once.
    QCoreApplication::processEvents();
    m_scheduler.advance(length);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

void Stage::openPanel() {
    presentPanel();
    pass(Seconds(1.5));
}

FakeOverlayWindow &Stage::window() const {
    return *m_overlays.alive.first();
}

QList<QAbstractButton *> Stage::buttons(const QString &name) const {
    QList<QAbstractButton *> result;
    for (auto *button : window().widget().findChildren<QAbstractButton *>()) {
        const QStringList names{button->text(), button->accessibleName(),
                                button->accessibleDescription()};
        if (names.contains(name)) {
            result.append(button);
        }
    }
    return result;
}

void Stage::press(const QString &name) {
    const auto found = buttons(name);
    if (found.isEmpty()) {
        qFatal("there is no button \"%s\"", qPrintable(name));
    }
    found.first()->click();
    pass(Seconds(1));
}

void Stage::type(const QString &text) {
    const auto fields = window().widget().findChildren<QLineEdit *>();
    if (fields.isEmpty()) {
        qFatal("there is no field to type into");
    }
    QTest::keyClicks(fields.first(), text);
    pass(Seconds(0));
}

QImage Stage::picture() const {
    QWidget &widget = window().widget();
    const double scale = widget.devicePixelRatioF();
    QImage screen(screenSize * scale, QImage::Format_RGB32);
    screen.setDevicePixelRatio(scale);
    QPainter painter(&screen);
    QLinearGradient sky(0, 0, 0, screenSize.height());
    sky.setColorAt(0, QColor(74, 109, 124));
    sky.setColorAt(1, QColor(142, 164, 158));
    painter.fillRect(QRect({}, screenSize), sky);
    // Painted on a surface of its own first, as in a window.
    QImage surface(widget.size() * scale, QImage::Format_ARGB32_Premultiplied);
    surface.setDevicePixelRatio(scale);
    surface.fill(Qt::transparent);
    widget.render(&surface, {}, {}, QWidget::DrawChildren);
    painter.drawImage(window().geometry.topLeft(), surface);
    painter.end();
    QRect shown = window().shape.boundingRect().translated(window().geometry.topLeft());
    shown = shown.adjusted(-margin, 0, margin, margin).intersected(QRect({}, screenSize));
    return screen.copy(QRectF(shown.topLeft() * scale, shown.size() * scale).toRect());
}

} // namespace morvane
