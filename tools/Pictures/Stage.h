#pragma once

#include "Core/Intake/HookEvent.h"
#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Presentation/Mascot/PixelTimeline.h"
#include "Presentation/Overlay/InlineEditing.h"
#include "Presentation/Overlay/ReplyDrafts.h"
#include "Presentation/PresenterManager.h"
#include "Support/FakeDisplays.h"
#include "Support/FakeMotionPreference.h"
#include "Support/FakeOverlayWindows.h"
#include "Support/FakePointerMonitor.h"
#include "Support/ManualScheduler.h"
#include "Support/UsageWorld.h"

#include <QAbstractButton>
#include <QHash>
#include <QImage>
#include <QTemporaryDir>

#include <memory>

namespace morvane {

/// The presenters on a fake display, driven by hooks as the agents send them, in a time that stands
/// still between two steps. Used on the main thread, one stage a picture.
class Stage {
public:
    enum class Screen { plain, notched };

    explicit Stage(Screen screen = Screen::plain);
    ~Stage();

    // A session's surroundings, by its working directory; set before its first hook.

    QHash<QString, QString> branches;
    QHash<QString, TranscriptInfo> transcripts;
    QHash<QString, HookOrigin> terminals;

    SessionStore &store() { return m_store; }
    UsageWorld &usage() { return m_usage; }

    /// A hook of an agent in the working directory; the members join the payload's own. With a
    /// decision id the hook waits for an answer.
    void tell(AgentKind agent, const QString &cwd, const QString &event,
              const QByteArray &members = {}, const QString &decisionID = {});

    /// Lets this much time pass, and runs everything that falls due in it.
    void pass(Seconds length);

    /// Asks for the panel, which has not begun to open when this returns.
    void presentPanel() { m_presenters->presentPanel(); }

    /// Opens the panel, and lets it come to rest.
    void openPanel();

    /// Presses the first visible button with this accessible name.
    void press(const QString &name);

    /// Types into the field that is open.
    void type(const QString &text);

    void reduceMotion() { m_motion.setReduced(true); }

    /// The display's picture, cropped to what is visible and a little around it.
    QImage picture() const;

private:
    SessionSurroundings surroundings();
    FakeOverlayWindow &window() const;
    QList<QAbstractButton *> buttons(const QString &name) const;

    QTemporaryDir m_folder;
    Defaults m_defaults{m_folder.path(), "pictures"};
    MorvaneSettings m_settings{m_defaults};
    ManualScheduler m_scheduler;
    SessionStore m_store{m_settings, surroundings(), m_scheduler};
    UsageWorld m_usage{m_settings, m_scheduler,
                       [this] { return m_store.hasWorkingUsageMilestoneSession(); }};
    InlineEditing m_editing;
    FakeMotionPreference m_motion;
    PixelTimeline m_timeline{m_scheduler};
    ReplyDrafts m_replyDrafts{m_store};
    FakeDisplays m_displays;
    FakeOverlayWindows m_overlays;
    FakePointerMonitor m_pointer;
    std::unique_ptr<PresenterManager> m_presenters;
};

} // namespace morvane
