#pragma once

#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Presentation/Mascot/PixelTimeline.h"
#include "Presentation/Overlay/InlineEditing.h"
#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Overlay/ReplyDrafts.h"
#include "Presentation/Style/ActivateLayouts.h"
#include "Support/EventBuilder.h"
#include "Support/FakeDisplays.h"
#include "Support/FakeMotionPreference.h"
#include "Support/FakeOverlayWindows.h"
#include "Support/FakePointerMonitor.h"
#include "Support/Printing.h"
#include "Support/SendEvent.h"
#include "Support/UsageWorld.h"

#include <QAccessible>
#include <QLayout>

#include <algorithm>

namespace morvane {

/// Counts the timers that are started, to tell whether anything ticks.
class CountingScheduler : public ManualScheduler {
public:
    Task after(Seconds delay, std::function<void()> action) override {
        ++timersStarted;
        return ManualScheduler::after(delay, std::move(action));
    }

    int timersStarted = 0;
};

/// How often something happens to a widget, or to any of the application.
class EventCounter : public QObject {
public:
    EventCounter(QObject &watched, QEvent::Type type) : m_type(type) {
        watched.installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override {
        count += event->type() == m_type ? 1 : 0;
        return false;
    }

    int count = 0;

private:
    const QEvent::Type m_type;
};

/// A session store with a clock, displays and overlays of the test's own.
class PanelFixture : public testing::Test {
protected:
    using Event = CanonicalEvent;

    PanelFixture() {
        context.actions.onDecide = [this](const QString &sessionID, const AgentDecision &decision) {
            store.decide(sessionID, decision);
        };
        context.actions.onAnswer = [this](const QString &sessionID, const QString &question,
                                          const QString &option) {
            store.answer(sessionID, question, option);
        };
        store.resolveDecision = [this](const QString &, const AgentDecision &decision) {
            decisions += decision;
        };
        context.actions.onSelect = [this](const Session &session) { selected += session.id; };
        context.actions.onReopen = [this](const CompletedRecord &record) {
            reopened += record.cwd;
        };
        context.actions.onRenameCommit = [this](const QString &cwd, const QString &name) {
            renamed += cwd + "=" + name;
        };
        context.actions.canReply = [](const Session &session) {
            return session.pane.tmux.has_value();
        };
        context.actions.onReply = [this](const Session &session, const QString &text,
                                         const auto &told) {
            replies += session.id + ": " + text;
            tellOutcome = told;
            if (refusesReplies) {
                told(false);
            }
        };
    }

    void apply(const HookEvent &event) { store.apply(event); }
    void apply(CanonicalEvent kind, const QString &sessionID = "s") {
        store.apply(EventBuilder(kind).in(sessionID));
    }

    /// Runs everything that is deferred to the end of this turn of the event loop.
    void settle() { scheduler.advance(Seconds(0)); }

    /// How many timers are started while this time passes.
    int ticksWithin(Seconds length) {
        const int before = scheduler.timersStarted;
        scheduler.advance(length);
        return scheduler.timersStarted - before;
    }

    /// The widgets of a kind that are on show in another, from top to bottom and from left to
    /// right.
    template <typename Widget>
    static QList<Widget *> shownIn(const QWidget &parent) {
        QList<Widget *> result = parent.findChildren<Widget *>();
        result.removeIf([](const QWidget *widget) { return !widget->isVisible(); });
        std::ranges::sort(result, {}, [&](const QWidget *widget) {
            const QPoint place = widget->mapTo(&parent, QPoint());
            return std::pair(place.y(), place.x());
        });
        return result;
    }
    template <typename Widget>
    static QStringList textsIn(const QWidget &parent) {
        QStringList result;
        for (const Widget *widget : shownIn<Widget>(parent)) {
            result.append(widget->text());
        }
        return result;
    }

    /// Whether a widget on show offers this to a screen reader as a text.
    static bool isReadOut(QWidget &parent, const QString &text) {
        return std::ranges::any_of(
            parent.findChildren<QWidget *>() << &parent, [&](QWidget *widget) {
                return widget->isVisible() && widget->accessibleName() == text &&
                       QAccessible::queryAccessibleInterface(widget)->role() ==
                           QAccessible::StaticText;
            });
    }

    /// Shows a row with the width that it has in the panel, and the height that it needs.
    static void showLaidOut(QWidget &row) {
        activateLayouts(row);
        row.resize(572, row.layout()->totalHeightForWidth(572));
        row.show();
    }

    /// The text field that is open; none once the event that has closed it is over.
    static InlineNameField *fieldIn(const QWidget &row) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return row.findChild<InlineNameField *>();
    }

    CountingScheduler scheduler;
    QTemporaryDir folder;
    Defaults defaults{folder.path(), "test"};
    MorvaneSettings settings{defaults};
    SessionStore store{settings,
                       {[](const auto &) { return std::nullopt; },
                        [](const auto &) { return std::nullopt; },
                        [](const auto &, const auto &) { return std::nullopt; }},
                       scheduler};
    UsageWorld usage{settings, scheduler,
                     [this] { return store.hasWorkingUsageMilestoneSession(); }};
    InlineEditing editing;
    FakeMotionPreference motion;
    PixelTimeline timeline{scheduler};
    ReplyDrafts replyDrafts{store};
    PanelContext context{store,   usage.poller(), settings,    scheduler, motion,
                         editing, timeline,       replyDrafts, {}};
    FakeDisplays displays;
    FakeOverlayWindows overlays;
    FakePointerMonitor pointer;
    // What a person has asked for, and what the hooks have been told.
    QStringList selected;
    QStringList reopened;
    QStringList renamed;
    QStringList replies;
    bool refusesReplies = false;                  ///< and says so at once
    std::function<void(bool isSent)> tellOutcome; ///< of the last reply
    QList<AgentDecision> decisions;
};

} // namespace morvane
