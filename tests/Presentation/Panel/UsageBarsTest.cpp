#include "Presentation/Panel/UsageBars.h"

#include "Presentation/Panel/AlertsNote.h"
#include "Presentation/Panel/ExpandedView.h"
#include "Presentation/Panel/RefreshButton.h"
#include "Presentation/Panel/SessionContextRow.h"
#include "Presentation/Panel/UsageMilestoneBadge.h"
#include "Presentation/Panel/UsageTabButton.h"
#include "Presentation/PanelFixture.h"
#include "Presentation/Style/TextLabel.h"
#include "Support/AccessibleControls.h"

namespace morvane {
namespace {

using Tab = UsageBars::Tab;

constexpr Seconds hour(3600);

class UsageBarsTest : public PanelFixture {
protected:
    UsageBarsTest() {
        motion.setReduced(true);
        context.actions.onRefreshUsage = [this] { ++refreshes; };
        m_bars.setContentHeightBudget(480);
        m_bars.resize(492, 200);
        m_bars.show();
    }

    UsageBars &bars() {
        m_bars.refresh();
        return m_bars;
    }

    template <typename Widget>
    static QStringList namesIn(const QWidget &parent, QString (QWidget::*name)() const) {
        QStringList result;
        for (const Widget *widget : shownIn<Widget>(parent)) {
            result.append((widget->*name)());
        }
        return result;
    }
    QList<Tab> tabs() { return bars().availableTabs(); }
    QStringList texts() { return textsIn<TextLabel>(bars()); }
    QStringList barNames() { return namesIn<UsageBar>(bars(), &QWidget::accessibleName); }
    QStringList barTimes() { return namesIn<UsageBar>(bars(), &QWidget::accessibleDescription); }

    QByteArray claude(int session, int weekly, int fable) {
        return R"({"five_hour":)" + usage.window(session, 2.5 * hour) + R"(,"seven_day":)" +
               usage.window(weekly, 50 * hour) + R"(,"seven_day_opus":)" +
               usage.window(fable, 50 * hour) + '}';
    }
    QByteArray codex() {
        return R"({"primary":)" + usage.codexWindow(61, 90, 1 * hour) +
               R"(,"planType":"pro TEAM"})";
    }

    int refreshes = 0;

private:
    UsageBars m_bars{context, nullptr};
};

TEST_F(UsageBarsTest, ATabIsThereWhileItHasSomethingToShow) {
    settings.setUsageEnabled(false);
    usage.poller().setEnabled(false);
    EXPECT_EQ(tabs(), QList{Tab::claude});
    EXPECT_EQ(texts(), QStringList({"CLAUDE LIMITS", "usage n/a — turned off in Settings"}));
    EXPECT_FALSE(shownIn<RefreshButton>(bars()).first()->isEnabled());

    settings.setUsageEnabled(true);
    apply(Event::sessionStart);
    EXPECT_EQ(tabs(), QList{Tab::sessions});
    EXPECT_EQ(texts().first(), "SESSIONS");
    EXPECT_TRUE(shownIn<RefreshButton>(bars()).isEmpty());

    usage.poll(claude(42, 7, 3), codex());
    EXPECT_EQ(tabs(), QList({Tab::claude, Tab::codex, Tab::sessions}));
    EXPECT_EQ(bars().current(), Tab::claude);
    shownControl<UsageTabButton>(bars(), "Codex limits")->click();
    EXPECT_EQ(bars().current(), Tab::codex);
    EXPECT_EQ(barNames(), QStringList({"Primary, 90m window, 61 percent used"}));
    EXPECT_TRUE(texts().contains("ChatGPT Pro Team · official Codex rate limits"));
    shownIn<RefreshButton>(bars()).first()->click();
    EXPECT_EQ(refreshes, 1);

    // A tab that was chosen comes back with its data.
    usage.poller().setEnabled(false);
    EXPECT_EQ(bars().current(), Tab::sessions);
    usage.poll(claude(42, 7, 3), codex());
    EXPECT_EQ(bars().current(), Tab::codex);
}

TEST_F(UsageBarsTest, ClaudesLimitsAreToldInWholeAndInWords) {
    usage.poll(claude(42, 7, 3));
    EXPECT_EQ(barNames(), QStringList({"Session, 5h window, 42 percent used",
                                       "Weekly, 7d window, 7 percent used",
                                       "Model family, Fable window, 3 percent used"}));
    EXPECT_TRUE(isReadOut(bars(), barNames().first()));
    EXPECT_TRUE(isReadOut(bars(), shownIn<AlertsNote>(bars()).first()->accessibleName()));
    settings.setShowFableBar(false);
    EXPECT_EQ(barNames().size(), 2);
    // The status line of a new session knows nothing of a limit before its first answer.
    usage.poller().ingestLive(R"({"rate_limits":{"seven_day":{"used_percentage":8}}})",
                              AgentKind::claude);
    EXPECT_EQ(barNames(), QStringList({"Weekly, 7d window, 8 percent used"}));

    EXPECT_EQ(UsageBars::scope(300), "5h");
    EXPECT_EQ(UsageBars::scope(10'080), "1w");
    EXPECT_EQ(UsageBars::scope(0), "window");
}

TEST_F(UsageBarsTest, FiguresAgeByOneTimerWhileSomebodyCanSeeThem) {
    settings.setUsageEnabled(true);
    usage.poll(claude(42, 7, 3));
    EXPECT_EQ(barTimes(), QStringList({"resets in 2h", "resets in 2d", "resets in 2d"}));
    EXPECT_EQ(texts().last(), "updated just now");
    EXPECT_LE(ticksWithin(Seconds(59)), 2);
    scheduler.advance(Seconds(2));
    EXPECT_EQ(shownIn<TextLabel>(bars()).last()->text(), "updated 1m ago");

    // The status line tells nothing of the model family, whose figure grows old meanwhile.
    scheduler.advance(Seconds(700));
    usage.tell(50, 8);
    EXPECT_EQ(barTimes(), QStringList({"", "", "resets in 2d · updated 12m ago"}));
    usage.poll(claude(100, 7, 3));
    scheduler.advance(3 * hour);
    EXPECT_EQ(barTimes().first(), "has reset since · updated 3h ago");

    bars().hide();
    usage.poller().stop();
    EXPECT_EQ(ticksWithin(hour), 60) << "the store looks after its sessions once a minute";
}

TEST_F(UsageBarsTest, TellsHowFullTheContextsAreAndScrollsWhenThereAreMany) {
    TranscriptInfo info;
    store.readTranscript = [&](AgentKind, const QString &, const SessionTranscripts::Use &use) {
        use(info);
    };
    const auto start = [&](const QString &id, int tokens) {
        info.contextTokens = tokens;
        info.model = "claude-opus-5";
        apply(
            EventBuilder(Event::toolUse).in(id).at('/' + id).with(&HookEvent::transcriptPath, id));
        scheduler.advance(Seconds(1));
    };
    apply(Event::sessionStart, "new");
    start("large", 230'000);
    start("full", 190'000);
    EXPECT_EQ(namesIn<SessionContextRow>(bars(), &QWidget::accessibleName),
              QStringList({"full, claude-opus-5, 190k ctx",
                           "large, claude-opus-5, 230k ctx, large window",
                           "session, no context data yet"}));
    EXPECT_EQ(shownIn<SessionContextRow>(bars()).first()->accessibleDescription(),
              "190000 tokens of context in the last request, against a standard 200k window.");

    ExpandedView view(context, nullptr);
    view.show();
    for (int index = 0; index < 30; ++index) {
        start(QString::number(index), 1000);
    }
    view.setContentHeightBudget(820);
    const auto *footer = view.findChild<UsageBars *>();
    // While a session asks, the list in the footer gets a sixth of the height, else a third.
    for (const int share : {3, 6}) {
        view.refresh();
        view.resize(view.sizeHint());
        EXPECT_EQ(view.height(), 820);
        EXPECT_EQ(footer->geometry().bottom() + 1, view.height() - 14);
        EXPECT_LE(footer->height(), 820 / share + 50);
        EXPECT_GT(shownIn<SessionContextRow>(view).size(), 3);
        apply(Event::needsInput, "large");
    }
}

TEST_F(UsageBarsTest, AMilestoneIsAnnouncedForAMoment) {
    apply(Event::promptSubmit);
    usage.tell(90);
    EXPECT_TRUE(isReadOut(bars(), "Claude 5-hour session usage reached 90 percent"));
    scheduler.advance(Seconds(6.1));
    EXPECT_TRUE(shownIn<UsageMilestoneBadge>(bars()).isEmpty());
}

} // namespace
} // namespace morvane
