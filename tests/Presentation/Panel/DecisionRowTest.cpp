#include "Presentation/Panel/ApprovalStrip.h"
#include "Presentation/Panel/Countdown.h"
#include "Presentation/Panel/InputView.h"
#include "Presentation/Panel/QuestionStrip.h"
#include "Presentation/Panel/SessionRowFixture.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"

#include <QAccessible>
#include <QScreen>

namespace morvane {
namespace {

class DecisionRowTest : public SessionRowFixture {
protected:
    /// Presses the first button of a kind, brings the row up to date, and lets go at that place.
    template <typename Button>
    void pressDuring(const Session &update) {
        showToRead();
        QTest::mousePress(shownIn<Button>(row).first(), Qt::LeftButton);
        row.setSession(update, {});
        activateLayouts(row);
        QTest::mouseRelease(shownIn<Button>(row).first(), Qt::LeftButton);
    }

    /// Whether a screen reader comes to what is shown of a strip from top to bottom.
    static bool isReadDownwards(QWidget &strip) {
        const auto *parts = QAccessible::queryAccessibleInterface(&strip);
        QRect before;
        for (int index = 0; index < parts->childCount(); ++index) {
            const QAccessibleInterface *part = parts->child(index);
            if (part->state().invisible) {
                continue;
            }
            if (part->rect().top() <= before.bottom() && part->rect().left() <= before.right()) {
                return false;
            }
            before = part->rect();
        }
        return before.isValid();
    }
};

TEST_F(DecisionRowTest, RefusesFirstThenAllowsThenAllowsForGood) {
    apply(EventBuilder::parked("d"));
    showToRead();
    ASSERT_EQ(textsIn<DecideButton>(row), QStringList({"Deny", "Allow", "Always"}));
    for (DecideButton *button : shownIn<DecideButton>(row)) {
        button->click();
        // What the row doesn't show yet can't be answered either.
        apply(EventBuilder::parked("d"));
        button->click();
        showToRead();
    }
    EXPECT_EQ(decisions, QList<AgentDecision>(
                             {AgentDecision::deny(), AgentDecision::allow(),
                              AgentDecision::allowRemembering(AgentDecision::Scope::session)}));
}

TEST_F(DecisionRowTest, AsksOneQuestionAfterTheOther) {
    apply(EventBuilder::parked("d").asking({"First?", "Second?"}));
    showToRead();
    ASSERT_EQ(textsIn<OptionButton>(row), QStringList({"Yes", "No"}));
    EXPECT_TRUE(contents(row).contains("1 of 2"));
    // An answer allows the whole of the call, whatever else is in it.
    EXPECT_TRUE(contents(row).contains("Any answer also lets Bash run with:"));
    shownIn<OptionButton>(row)[1]->click();
    EXPECT_TRUE(decisions.isEmpty());
    showToRead();
    ASSERT_EQ(textsIn<OptionButton>(row), QStringList({"Yes", "No"}));
    EXPECT_TRUE(contents(row).contains("2 of 2"));
    shownIn<OptionButton>(row)[0]->click();
    EXPECT_EQ(decisions, QList<AgentDecision>(
                             {AgentDecision::answer({{"First?", "No"}, {"Second?", "Yes"}})}));

    // A tool that does more than ask is named, whether or not there is more to show of its call.
    const EventBuilder bare = EventBuilder::parked("e").asking({"Sure?"}).given("{}");
    show(bare.tool("mcp__forms__publish"));
    EXPECT_TRUE(contents(row).contains("Any answer also lets mcp__forms__publish run."));
    show(bare.tool(QString("publish ").repeated(20)));
    for (const TextLabel *label : shownIn<TextLabel>(row)) {
        EXPECT_FALSE(label->text().startsWith("Any answer") &&
                     label->lines(label->width()).last().endsWith(u'…'));
    }
    show(bare.tool("AskUserQuestion"));
    EXPECT_FALSE(contents(row).join(u'\n').contains("Any answer"));
}

TEST_F(DecisionRowTest, ShowsAQuestionWholeWithADigitForEachKeyThatThereIs) {
    const QString text = QString("word ").repeated(230) + "end\u202e";
    QList<AgentOption> options{{"a\u200b\n" + text, text}};
    for (int index = 1; index < 7; ++index) {
        options.append({QString::number(index) + ".", {}});
    }
    apply(EventBuilder::parked("d").question({text, " \u00a0", options, false}));
    row.setSession(store.sessions().value("s"), SessionRow::Detail::showsShortcuts);
    row.resize(572, 400);
    row.show();
    int whole = 0;
    QStringList digits;
    for (const TextLabel *label : shownIn<TextLabel>(row)) {
        whole += label->lines(400).last().endsWith("end⟨U+202E⟩") ? 1 : 0;
        digits += label->text().size() == 1 ? label->text() : QString();
    }
    EXPECT_EQ(whole, 3);
    EXPECT_TRUE(contents(row).contains("Choose")) << "in place of a header of blanks";
    digits.removeAll(QString());
    EXPECT_EQ(digits, QStringList({"1", "2", "3", "4", "5"}));
    EXPECT_TRUE(shownIn<OptionButton>(row).first()->text().startsWith("a⟨U+200B⟩\nword"));
}

TEST_F(DecisionRowTest, TakesAPressOnlyForWhatHasStoodLongEnoughToBeRead) {
    const EventBuilder question = EventBuilder::parked("q").asking({"Sure?", "Really?"});
    show(EventBuilder::parked("d"));
    const auto pressable = [this](Seconds after) {
        scheduler.advance(after);
        return shownIn<DecideButton>(row).first()->isEnabled();
    };
    const auto takesTime = [&] { return !pressable(Seconds(0.65)) && pressable(Seconds(0.2)); };
    const auto moveTo = [this](int x, int y) {
        row.move(x, y);
        QCoreApplication::processEvents();
    };
    EXPECT_FALSE(pressable(Seconds(0.65)));
    shownIn<DecideButton>(row)[1]->click();
    EXPECT_TRUE(decisions.isEmpty());
    EXPECT_TRUE(pressable(Seconds(0.2)));

    // Another input, another place, and a part that was covered must all be read anew.
    show(EventBuilder::parked("d").given(R"({"command":"rm -rf ~"})"));
    EXPECT_TRUE(takesTime());
    moveTo(0, 20);
    EXPECT_TRUE(takesTime());
    DecideButton *const deny = shownIn<DecideButton>(row).first();
    QTest::mousePress(deny, Qt::LeftButton);
    row.findChild<ApprovalStrip *>()->setMask(QRect(0, 0, 300, 400));
    QTest::mouseRelease(deny, Qt::LeftButton);
    EXPECT_TRUE(decisions.isEmpty());
    EXPECT_FALSE(pressable(Seconds(0.65)));

    // The press began before the input changed.
    row.findChild<ApprovalStrip *>()->clearMask();
    EXPECT_TRUE(pressable(Seconds(0.85)));
    QTest::mousePress(deny, Qt::LeftButton);
    show(EventBuilder::parked("d").given(R"({"command":"ls"})"));
    EXPECT_TRUE(takesTime());
    send(*deny, QMouseEvent(QEvent::MouseMove, {9, 9}, deny->mapToGlobal(QPointF(9, 9)),
                            Qt::NoButton, Qt::LeftButton, {}));
    QTest::mouseRelease(deny, Qt::LeftButton);
    EXPECT_TRUE(decisions.isEmpty());
    row.hide();
    EXPECT_EQ(ticksWithin(Seconds(3)), 0);

    // A call of which only the buttons have been in sight.
    row.findChild<ApprovalStrip *>()->setMask(QRect(0, 60, 600, 400));
    show(EventBuilder::parked("f"));
    EXPECT_FALSE(pressable(Seconds(3)));
    row.findChild<ApprovalStrip *>()->clearMask();
    moveTo(0, 40);
    EXPECT_TRUE(pressable(Seconds(0.85)));

    // One whose lines end beyond the edge of the screen.
    show(EventBuilder::parked("g"));
    moveTo(row.screen()->geometry().width() - 400, 40);
    EXPECT_FALSE(pressable(Seconds(3)));
    moveTo(0, 40);
    EXPECT_TRUE(pressable(Seconds(0.85)));

    show(question);
    scheduler.advance(Seconds(0.6));
    EXPECT_FALSE(shownIn<OptionButton>(row).first()->isEnabled());
    scheduler.advance(Seconds(0.3));
    // The same question of a call that would do something else.
    show(question.given(R"({"command":"rm -rf ~"})"));
    EXPECT_FALSE(shownIn<OptionButton>(row).first()->isEnabled());
    scheduler.advance(Seconds(0.9));
    shownIn<OptionButton>(row).first()->click();
    show();
    EXPECT_FALSE(shownIn<OptionButton>(row).first()->isEnabled());
}

TEST_F(DecisionRowTest, ShowsAllOfACallOrSaysWhatIsMissing) {
    const EventBuilder call = EventBuilder::parked("d").with(&HookEvent::toolDetail, "a b");
    row.setInputHeightLimit(160);
    apply(call.given(R"({"command":"a\nb","timeout":5})"));
    showToRead();
    const auto *view = row.findChild<InputView *>();
    EXPECT_EQ(view->accessibleName(), "a b");
    ASSERT_EQ(textsIn<DecideButton>(row), QStringList({"+ 2 lines", "Deny", "Allow", "Always"}));
    shownIn<DecideButton>(row).first()->click();
    EXPECT_EQ(view->accessibleName(), "a\nb\n· \"timeout\": 5");
    show();
    EXPECT_EQ(textsIn<DecideButton>(row), QStringList({"Deny", "Allow", "Always"}));
    scheduler.advance(Seconds(0.5));
    EXPECT_FALSE(shownIn<DecideButton>(row).first()->isEnabled());

    // A long input keeps to its limit and scrolls; another call starts with its one line again.
    show(call.given(R"({"command":")" + std::string(60'000, 'x') + R"("})"));
    shownIn<DecideButton>(row).first()->click();
    show();
    EXPECT_LE(view->height(), 160);

    show(EventBuilder::parked("e").given("{}").tool("Deploy\nAll is well"));
    EXPECT_EQ(textsIn<DecideButton>(row), QStringList({"Deny", "Allow"}));
    EXPECT_TRUE(contents(row).contains("This agent sent no details of the call."));
    EXPECT_TRUE(contents(row).contains("wants to run Deploy⟨U+000A⟩All is well"));
    EXPECT_FALSE(view->isVisible());

    // A screen reader finds nothing of what has been answered.
    store.decide("s", AgentDecision::allow());
    show();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(row.findChild<InputView *>(), nullptr);
}

TEST_F(DecisionRowTest, TellsAScreenReaderWhatIsAskedBeforeItIsAnswered) {
    const auto told = [this](const QWidget *choice) {
        EXPECT_TRUE(choice->accessibleDescription().startsWith(row.accessibleDescription() + "\n"));
        return choice->accessibleDescription();
    };
    show(EventBuilder::parked("d").given(R"({"command":"rm -rf a\u202eb"})"));
    EXPECT_EQ(told(shownIn<DecideButton>(row)[1]), "rm -rf a⟨U+202E⟩b\nApprove this one call.");
    QAccessible::setActive(true);
    auto *view = row.findChild<InputView *>();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(view)->role(), QAccessible::StaticText);
    EXPECT_EQ(view->focusPolicy(), Qt::TabFocus);
    EXPECT_TRUE(isReadDownwards(*view->parentWidget()));

    show(EventBuilder::parked("e").given(R"({"command":")" + std::string(60'000, 'x') + R"("})"));
    EXPECT_TRUE(row.accessibleDescription().endsWith("xx…\nThere is more of it."));
    EXPECT_LE(told(shownIn<DecideButton>(row)[1]).size(), 500);
    show(EventBuilder::parked("f").given("{}"));
    EXPECT_TRUE(told(shownIn<DecideButton>(row)[1]).startsWith("This agent sent no details"));
    Session endless = store.sessions().value("s");
    endless.customName = endless.lastPrompt = QString(9'000, 'x');
    row.setSession(endless, {});
    EXPECT_LT(row.accessibleName().size(), 500);
    EXPECT_LT(shownIn<DecideButton>(row)[1]->accessibleName().size(), 500);
    show();

    show(EventBuilder::parked("g").question({"Sure?", {}, {{"Yes", "For good"}}, false}));
    EXPECT_EQ(told(shownIn<OptionButton>(row).first()),
              "Sure?\nAny answer also lets Bash run with:\nmake\nFor good");
    EXPECT_TRUE(isReadDownwards(*row.findChild<QuestionStrip *>()));
    QAccessible::setActive(false);
    show(EventBuilder(Event::turnEnd));
    EXPECT_EQ(row.accessibleDescription(), "");
}

TEST_F(DecisionRowTest, APressDecidesOnlyTheRequestThatItBeganOn) {
    apply(EventBuilder::parked("d"));
    Session session = store.sessions().value("s");
    session.aiTitle = "Make it";
    const Session changed = session;
    session.pendingApproval->id = "e";
    pressDuring<DecideButton>(session);
    EXPECT_TRUE(decisions.isEmpty());
    pressDuring<DecideButton>(changed);
    EXPECT_EQ(decisions, QList<AgentDecision>({AgentDecision::deny()}));

    decisions.clear();
    apply(EventBuilder::parked("d").asking({"Sure?"}));
    session = store.sessions().value("s");
    session.aiTitle = "Make it";
    const Session changedQuestion = session;
    session.pendingQuestion->id = "e"; // which asks the very same
    pressDuring<OptionButton>(session);
    EXPECT_TRUE(decisions.isEmpty());
    pressDuring<OptionButton>(changedQuestion);
    EXPECT_EQ(decisions, QList<AgentDecision>({AgentDecision::answer({{"Sure?", "Yes"}})}));
}

TEST_F(DecisionRowTest, CountsDownWhileOnScreenAndWarnsAtTheEnd) {
    motion.setReduced(true); // the mascot would tick as well
    show(EventBuilder::parked("d"));
    const auto *countdown = row.findChild<Countdown *>();
    EXPECT_EQ(countdown->text(), "60s");
    scheduler.advance(Seconds(49));
    EXPECT_EQ(countdown->text(), "11s");
    EXPECT_EQ(countdown->color(), Colors::tertiaryText);
    scheduler.advance(Seconds(1.1));
    EXPECT_NE(countdown->text(), "11s");
    EXPECT_EQ(countdown->color(), Colors::denyAccent);
    row.hide();
    EXPECT_EQ(ticksWithin(Seconds(3)), 0);
}

} // namespace
} // namespace morvane
