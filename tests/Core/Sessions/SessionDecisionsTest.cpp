#include "Core/StoreFixture.h"

namespace morvane {
namespace {

class DecisionsTest : public StoreFixture {};

TEST_F(DecisionsTest, ShowsAPermissionRequestThatWaits) {
    apply(EventBuilder::parked("d1").with(&HookEvent::toolDetail, "make"));
    const Date limit = scheduler.now() + Seconds(60);
    EXPECT_EQ(session().pendingApproval,
              (PendingApproval{"d1", "Bash", "make", ReadableInput::of(R"({"command":"make"})"),
                               limit, true}));
    EXPECT_FALSE(session().acknowledged);

    // The agent's own notice of the prompt doesn't disturb it.
    apply(EventBuilder(Kind::needsInput).with(&HookEvent::responseMessage, "Waiting"));
    apply(EventBuilder(Kind::permissionRequest));
    EXPECT_EQ(session().pendingApproval->id, "d1");
    EXPECT_EQ(session().pendingExternalResponse, std::nullopt);
    EXPECT_EQ(announced, QStringList{"needsInput"});

    // Nor does the end of an agent in the background.
    apply(Kind::idle);
    EXPECT_EQ(session().state, SessionState::needsInput);

    apply(EventBuilder(Kind::permissionRequest)
              .of(AgentKind::codex)
              .with(&HookEvent::decisionID, "d1"));
    EXPECT_EQ(session().pendingApproval, (PendingApproval{"d1", "tool", {}, {}, limit, false}));
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(DecisionsTest, ShowsWhatOnlyTheTerminalCanAnswer) {
    const EventBuilder notice =
        EventBuilder(Kind::needsInput).with(&HookEvent::responseMessage, "Waiting");
    // What a panel doesn't show whole.
    const auto longOption = [](const QString &label, const QString &description) {
        return AgentQuestion{"Q", {}, {{label, description}}, false};
    };
    QList<AgentOption> manyOptions;
    for (int number = 0; number < 21; ++number) {
        manyOptions.append({QString::number(number), {}});
    }
    const QList<AgentOption> options{{"Yes", {}}};
    const EventBuilder parked = EventBuilder::parked("d2");
    const QString tooLong(1201, u'x');
    // The event, the decisions it releases, how many questions are shown, and which message.
    const std::tuple<EventBuilder, QStringList, qsizetype, std::optional<QString>> cases[] = {
        {notice, {}, 0, "Waiting"},
        {EventBuilder(Kind::permissionRequest), {}, 0, {}},
        {parked.asking({"Q"}, true).with(&HookEvent::responseMessage, "m"), {"d2 ask"}, 1, "m"},
        {parked.asking({"Q", "Q"}), {"d2 ask"}, 2, {}},
        {parked.of(AgentKind::codex).asking({"Q"}), {"d2 ask"}, 1, {}},
        {parked.asking({tooLong}), {"d2 ask"}, 1, {}},
        {parked.asking({QString(200, QChar(0x200b))}), {"d2 ask"}, 1, {}},
        {parked.question(longOption(tooLong, {})), {"d2 ask"}, 1, {}},
        {parked.question(longOption("a", tooLong)), {"d2 ask"}, 1, {}},
        {parked.question({"Q", {}, options, false, false}), {"d2 ask"}, 1, {}},
        {parked.question({"Q", QString(25, u'x'), options, false}), {"d2 ask"}, 1, {}},
        {parked.question({"Q", {}, manyOptions, false}), {"d2 ask"}, 1, {}},
    };
    for (const auto &[event, released, questions, message] : cases) {
        apply(Kind::sessionStart);
        apply(event);
        EXPECT_EQ(session().state, SessionState::needsInput);
        EXPECT_EQ(session().pendingDecisionID(), std::nullopt);
        ASSERT_TRUE(session().pendingExternalResponse);
        EXPECT_EQ(session().pendingExternalResponse->questions.size(), questions);
        EXPECT_EQ(session().pendingExternalResponse->fallbackMessage, message);
        EXPECT_EQ(take(resolved), released);
    }
    for (const Kind kind : {Kind::sessionStart, Kind::promptSubmit, Kind::toolUse, Kind::idle,
                            Kind::turnEnd, Kind::turnFailed}) {
        apply(notice);
        apply(kind);
        EXPECT_EQ(session().pendingExternalResponse, std::nullopt);
    }
    apply(notice);
    apply(EventBuilder::parked("d3"));
    EXPECT_EQ(session().pendingExternalResponse, std::nullopt);
}

TEST_F(DecisionsTest, AsksHereOnlyWhereAnswersCanBeToldApart) {
    const auto isAskedHere = [this](const QStringList &texts, const QStringList &labels) {
        QList<AgentQuestion> questions;
        for (const QString &text : texts) {
            questions.append({text, QStringLiteral("تنظیم\u200Cهای تازه\u200Cتر"), {}, false});
            for (const QString &label : labels) {
                questions.last().options.append({label, QString::number(label.size())});
            }
        }
        apply(Kind::sessionStart);
        apply(EventBuilder::parked("d").with(&HookEvent::questions, questions));
        return session().pendingQuestion.has_value();
    };
    EXPECT_TRUE(isAskedHere({"Q", "Q?"}, {"a b", "ab", "a-b", "⚠", "A b"}));
    const std::pair<QString, QString> alike[] = {
        {"Yes", "Yes"},
        {"a b", QStringLiteral("a\u00A0 b\u3000")},
        {QStringLiteral("❤"), QStringLiteral("❤\uFE0F")},
        {QStringLiteral("کار\u200Cها"), QStringLiteral("کارها")},
        {QStringLiteral("e\u0301"), QStringLiteral("\u00E9")},
        {QStringLiteral("Keep 1 \u05D0"), QStringLiteral("Keep \u05D0 1")},
        {QStringLiteral("\u05D0 ( 1"), QStringLiteral("1 ) \u05D0")},
    };
    for (const auto &[one, other] : alike) {
        EXPECT_FALSE(isAskedHere({"Q"}, {one, other}));
        EXPECT_FALSE(isAskedHere({one, other}, {"Yes"}));
    }
    EXPECT_FALSE(isAskedHere({"Q"}, {QStringLiteral(" \u00A0\u3000")}));
    // Nor with a character that is too long to be shown whole.
    EXPECT_FALSE(
        isAskedHere({QStringLiteral("👨🏽🏽🏽🏽\u200D").repeated(3) + "👨"}, {"Yes"}));
}

TEST_F(DecisionsTest, LetsANewerRequestTakeThePlaceOfAnOlder) {
    apply(EventBuilder::parked("d1"));
    apply(EventBuilder::parked("d1"));
    EXPECT_EQ(resolved, QStringList());
    apply(EventBuilder::parked("d2").asking({"Q"}));
    EXPECT_EQ(take(resolved), QStringList{"d1 ask"});
    EXPECT_EQ(stateAtRelease.pendingDecisionID(), "d1");
    EXPECT_EQ(session().pendingApproval, std::nullopt);
    EXPECT_EQ(session().pendingQuestion->id, "d2");
    apply(EventBuilder::parked("d3").asking({"Q"}, true));
    EXPECT_EQ(resolved, (QStringList{"d3 ask", "d2 ask"}));
    EXPECT_EQ(session().pendingDecisionID(), std::nullopt);
    EXPECT_TRUE(session().pendingExternalResponse);
}

TEST_F(DecisionsTest, ReleasesAHookOnceItsReasonIsGone) {
    const auto expectRelease = [this](bool releases, const std::function<void()> &action) {
        for (const EventBuilder &waiting :
             {EventBuilder::parked("d"), EventBuilder::parked("d").asking({"Q"})}) {
            apply(waiting);
            action();
            EXPECT_EQ(take(resolved), releases ? QStringList{"d ask"} : QStringList());
            EXPECT_EQ(store.sessions().value("s").pendingDecisionID().has_value(), !releases);
            EXPECT_FALSE(releases && stateAtRelease.pendingDecisionID());
            apply(Kind::sessionEnd);
            take(resolved);
        }
    };
    for (const Kind kind : {Kind::sessionStart, Kind::toolUse, Kind::idle, Kind::subagentStop}) {
        expectRelease(false, [&] { apply(kind); });
    }
    for (const Kind kind :
         {Kind::promptSubmit, Kind::turnEnd, Kind::turnFailed, Kind::sessionEnd}) {
        expectRelease(true, [&] { apply(kind); });
    }
    expectRelease(true, [&] { store.releaseApprovals(); });
    expectRelease(true, [&] {
        store.agentEnded("s");
        EXPECT_TRUE(store.sessions().isEmpty());
    });
}

TEST_F(DecisionsTest, CarriesADecisionBackAfterTheSessionHasMoved) {
    const auto remember = AgentDecision::allowRemembering(AgentDecision::Scope::permanent);
    for (const AgentDecision &decision :
         {AgentDecision::allow(), AgentDecision::deny(), remember, AgentDecision::ask()}) {
        apply(EventBuilder::parked("d"));
        const Date asked = scheduler.now();
        scheduler.advance(Seconds(5));
        store.decide("s", decision);
        EXPECT_EQ(take(resolved), QStringList{"d " + nameOf(decision)});
        // After `ask` the request still waits, in the agent's terminal.
        const bool waits = decision.kind == AgentDecision::Kind::ask;
        EXPECT_EQ(session().state, waits ? SessionState::needsInput : SessionState::working);
        EXPECT_TRUE(session().acknowledged);
        EXPECT_EQ(session().pendingDecisionID(), std::nullopt);
        EXPECT_EQ(session().stateChangedAt, scheduler.now());
        EXPECT_EQ(session().lastEventAt, asked);
        EXPECT_EQ(stateAtRelease, session());
        store.decide("s", decision);
        EXPECT_EQ(resolved, QStringList());
    }
    apply(EventBuilder::parked("d").asking({"Q"}));
    store.decide("s", AgentDecision::deny());
    EXPECT_EQ(session().pendingQuestion->id, "d");
    apply(EventBuilder::parked("a"));
    EXPECT_EQ(take(resolved), QStringList{"d ask"});
    store.answer("s", "Q", "Yes");
    EXPECT_EQ(session().pendingApproval->id, "a");
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(DecisionsTest, SendsAnswersOnceAllQuestionsHaveOne) {
    apply(EventBuilder::parked("d").asking({"Q1", "Q2"}));
    scheduler.advance(Seconds(5));
    store.answer("s", "Q2", "Yes");
    store.answer("s", "Q2", "No");
    EXPECT_EQ(resolved, QStringList());
    EXPECT_EQ(session().state, SessionState::needsInput);
    EXPECT_EQ(session().pendingQuestion->firstUnanswered(), 0);
    store.answer("s", "Q1", "Yes");
    EXPECT_EQ(take(resolved), QStringList{"d answer Q1=Yes Q2=No"});
    EXPECT_EQ(session().state, SessionState::working);
    EXPECT_EQ(stateAtRelease, session());
    store.answer("s", "Q1", "Yes");
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(DecisionsTest, ChoosesByTheOrderOfTheButtons) {
    const std::pair<AgentKind, QList<const char *>> cases[] = {
        {AgentKind::claude, {"d deny", "d allow", "d remember session", nullptr}},
        {AgentKind::codex, {"d deny", "d allow", nullptr}},
    };
    for (const auto &[agent, sent] : cases) {
        for (qsizetype index = -1; index < sent.size(); ++index) {
            apply(EventBuilder::parked("d").of(agent));
            store.chooseByIndex("s", index);
            const char *expected = index < 0 ? nullptr : sent[index];
            EXPECT_EQ(take(resolved), expected ? QStringList{expected} : QStringList());
        }
    }
    apply(EventBuilder::parked("q").asking({"Q1", "Q2"}));
    take(resolved);
    store.chooseByIndex("s", 2);
    store.chooseByIndex("s", 1);
    EXPECT_EQ(resolved, QStringList());
    store.chooseByIndex("s", 0);
    EXPECT_EQ(resolved, QStringList{"q answer Q1=No Q2=Yes"});
}

TEST_F(DecisionsTest, ForgetsADecisionThatHasExpired) {
    apply(EventBuilder::parked("d2").asking({"Q"}));
    apply(EventBuilder::parked("d1").in("other"));
    Session expected = session();
    const Session other = session("other");
    scheduler.advance(Seconds(1));
    store.approvalExpired("d2");
    expected.pendingQuestion.reset();
    EXPECT_EQ(session(), expected);
    EXPECT_EQ(session("other"), other);
    store.approvalExpired("d1");
    EXPECT_EQ(session("other").pendingApproval, std::nullopt);
    EXPECT_EQ(session("other").state, SessionState::needsInput);
    EXPECT_EQ(resolved, QStringList());
}

TEST_F(DecisionsTest, OffersTheFirstSessionThatWaitsToTheKeys) {
    apply(EventBuilder(Kind::needsInput).in("external"));
    EXPECT_EQ(store.sessionAwaitingDecision(), std::nullopt);
    apply(EventBuilder::parked("d1").in("older"));
    scheduler.advance(Seconds(1));
    apply(EventBuilder::parked("d2").in("newer"));
    EXPECT_EQ(store.sessionAwaitingDecision()->id, "newer");
    scheduler.advance(Seconds(1));
    apply(EventBuilder(Kind::toolUse).in("newer"));
    EXPECT_EQ(store.sessionAwaitingDecision()->id, "older");
}

} // namespace
} // namespace morvane
