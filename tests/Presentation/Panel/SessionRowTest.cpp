#include "Presentation/Panel/SessionRow.h"

#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Panel/ApprovalStrip.h"
#include "Presentation/Panel/Countdown.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Panel/InputView.h"
#include "Presentation/Panel/OptionButton.h"
#include "Presentation/Panel/PencilButton.h"
#include "Presentation/Panel/QuestionStrip.h"
#include "Presentation/Panel/SubagentList.h"
#include "Presentation/PanelFixture.h"
#include "Presentation/Style/ActivateLayouts.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QTest>

namespace morvane {
namespace {

class SessionRowTest : public PanelFixture {
protected:
    void show() {
        row.setSession(store.sessions().value("s"), {});
        activateLayouts(row);
        row.resize(572, row.layout()->totalHeightForWidth(572));
        row.show();
    }

    void show(const HookEvent &latest) {
        apply(latest);
        show();
    }

    /// Shows the row for as long as it takes until its strip can be pressed.
    void showToRead() {
        show();
        scheduler.advance(Seconds(0.85));
    }

    /// Presses the first button of a kind, brings the row up to date, and lets go at that place.
    template <typename Button>
    void pressDuring(const Session &update) {
        showToRead();
        QTest::mousePress(shownIn<Button>(row).first(), Qt::LeftButton);
        row.setSession(update, {});
        activateLayouts(row);
        QTest::mouseRelease(shownIn<Button>(row).first(), Qt::LeftButton);
    }

    /// The texts on show, and the buttons with their widths, which a digit takes part of.
    static QStringList contents(const SessionRow &row) {
        QStringList result = textsIn<QLabel>(row);
        result.removeAll(QString());
        for (const DecideButton *button : shownIn<DecideButton>(row)) {
            result.append(button->text() + QString::number(button->sizeHint().width()));
        }
        result.sort();
        return result;
    }

    PencilButton &pencil() const { return *row.findChild<PencilButton *>(); }

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

    /// The text field that is open; none once the event that has closed it is over.
    InlineNameField *field() const {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return row.findChild<InlineNameField *>();
    }

    SessionRow row{context, nullptr};
};

TEST_F(SessionRowTest, RefusesFirstThenAllowsThenAllowsForGood) {
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

    Session session = store.sessions().value("s");
    session.pendingApproval->allowsRemembering = false;
    row.setSession(session, {});
    EXPECT_EQ(textsIn<DecideButton>(row), QStringList({"Deny", "Allow"}));
}

TEST_F(SessionRowTest, AsksOneQuestionAfterTheOther) {
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

    // Whatever does more than to ask is named, with or without anything else to tell of it.
    const EventBuilder bare = EventBuilder::parked("e").asking({"Sure?"}).given("{}");
    show(bare.tool("mcp__forms__publish"));
    EXPECT_TRUE(contents(row).contains("Any answer also lets mcp__forms__publish run."));
    show(bare.tool("AskUserQuestion"));
    EXPECT_FALSE(contents(row).join(u'\n').contains("Any answer"));
}

TEST_F(SessionRowTest, ShowsAQuestionWholeWithADigitForEachKeyThatThereIs) {
    const QString text = QString("word ").repeated(230) + "end\u202e";
    QList<AgentOption> options{{"a\u200b\n" + text, text}};
    for (int index = 1; index < 7; ++index) {
        options.append({QString::number(index) + ".", {}});
    }
    apply(EventBuilder::parked("d").with(&HookEvent::questions,
                                         QList<AgentQuestion>{{text, " \u00a0", options, false}}));
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

TEST_F(SessionRowTest, TakesAPressOnlyForWhatHasStoodLongEnoughToBeRead) {
    const EventBuilder question = EventBuilder::parked("q").asking({"Sure?", "Really?"});
    show(EventBuilder::parked("d"));
    const auto pressable = [this](Seconds after) {
        scheduler.advance(after);
        return shownIn<DecideButton>(row).first()->isEnabled();
    };
    EXPECT_FALSE(pressable(Seconds(0.65)));
    shownIn<DecideButton>(row)[1]->click();
    EXPECT_TRUE(decisions.isEmpty());
    EXPECT_TRUE(pressable(Seconds(0.2)));

    // Another call, another input of the same call, another place, a part that comes to light.
    show(EventBuilder::parked("d").given(R"({"command":"rm -rf ~"})"));
    EXPECT_FALSE(pressable(Seconds(0.65)));
    EXPECT_TRUE(pressable(Seconds(0.2)));
    row.move(row.pos() + QPoint(0, 20));
    QCoreApplication::processEvents();
    EXPECT_FALSE(pressable(Seconds(0.65)));
    EXPECT_TRUE(pressable(Seconds(0.2)));
    DecideButton *const deny = shownIn<DecideButton>(row).first();
    QTest::mousePress(deny, Qt::LeftButton);
    row.findChild<ApprovalStrip *>()->setMask(QRect(0, 0, 300, 400));
    QTest::mouseRelease(deny, Qt::LeftButton);
    EXPECT_TRUE(decisions.isEmpty());
    EXPECT_FALSE(pressable(Seconds(0.65)));
    row.hide();
    EXPECT_EQ(ticksWithin(Seconds(3)), 0);

    // A call of which only the buttons have been in sight.
    row.findChild<ApprovalStrip *>()->setMask(QRect(0, 60, 600, 400));
    show(EventBuilder::parked("f"));
    EXPECT_FALSE(pressable(Seconds(3)));
    row.findChild<ApprovalStrip *>()->clearMask();
    row.move(row.pos() + QPoint(0, 20));
    QCoreApplication::processEvents();
    EXPECT_TRUE(pressable(Seconds(0.85)));

    // One whose lines end beyond the edge of the screen.
    show(EventBuilder::parked("g"));
    row.move(row.screen()->geometry().width() - 400, row.y());
    QCoreApplication::processEvents();
    EXPECT_FALSE(pressable(Seconds(3)));
    row.move(0, row.y());
    QCoreApplication::processEvents();
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

TEST_F(SessionRowTest, NothingStaysLitWhenThePointerThatItCameUnderHasGone) {
    show(EventBuilder::parked("d"));
    const auto *allow = shownIn<DecideButton>(row)[1];
    row.followPointer(allow->mapToGlobal(allow->rect().center()));
    EXPECT_TRUE(allow->underMouse());
    // As Qt does it.
    row.setAttribute(Qt::WA_UnderMouse, false);
    row.followPointer(std::nullopt);
    EXPECT_FALSE(allow->underMouse());
}

TEST_F(SessionRowTest, ShowsAllOfACallOrSaysWhatIsMissing) {
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

    // No longer than it may be, and scrolled; another call begins with its line.
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

TEST_F(SessionRowTest, TellsAScreenReaderWhatIsAskedBeforeItIsAnswered) {
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

    show(EventBuilder::parked("g").with(
        &HookEvent::questions, QList<AgentQuestion>{{"Sure?", {}, {{"Yes", "For good"}}, false}}));
    EXPECT_EQ(told(shownIn<OptionButton>(row).first()),
              "Sure?\nAny answer also lets Bash run with:\nmake\nFor good");
    EXPECT_TRUE(isReadDownwards(*row.findChild<QuestionStrip *>()));
    QAccessible::setActive(false);
    show(EventBuilder(Event::turnEnd));
    EXPECT_EQ(row.accessibleDescription(), "");
}

TEST_F(SessionRowTest, APressDecidesOnlyTheRequestThatItBeganOn) {
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

TEST_F(SessionRowTest, KeepsNothingOfWhatItNoLongerIsToShow) {
    const EventBuilder requests[] = {EventBuilder::parked("d"),
                                     EventBuilder::parked("d").asking({"Sure?"})};
    for (const EventBuilder &request : requests) {
        apply(request);
        const Session plain = store.sessions().value("s");
        Session rich = plain;
        rich.hostAppName = "kitty";
        rich.gitBranch = "main";
        rich.permissionMode = "plan";
        rich.contextTokens = 185'000;
        rich.subagents = {{{}, "look", false}};
        SessionRow fresh(context, nullptr);
        fresh.setSession(plain, {});
        fresh.show();
        row.show();
        const std::pair<Session, SessionRow::Details> befores[] = {
            {rich, {}},
            {plain, SessionRow::Detail::showsAgent},
            {plain, SessionRow::Detail::showsShortcuts}};
        for (const auto &[session, details] : befores) {
            row.setSession(session, details);
            EXPECT_NE(contents(row), contents(fresh));
            row.setSession(plain, {});
            EXPECT_EQ(contents(row), contents(fresh));
        }
        store.decide("s", AgentDecision::deny());
    }
}

TEST_F(SessionRowTest, LeadsToTheSessionButNotFromBesideAButton) {
    show(EventBuilder::parked("d"));
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 12));
    EXPECT_EQ(selected, QStringList({"s"}));
    const DecideButton *const deny = shownIn<DecideButton>(row).first();
    QTest::mouseClick(&row, Qt::LeftButton, {}, deny->mapTo(&row, QPoint(-3, -3)));
    EXPECT_EQ(selected.size(), 1);
    EXPECT_TRUE(decisions.isEmpty());

    apply(Event::toolUse);
    apply(EventBuilder(Event::turnEnd));
    apply(Event::needsInput);
    show();
    ASSERT_EQ(textsIn<DecideButton>(row), QStringList({"Answer in the terminal"}));
    shownIn<DecideButton>(row).first()->click();
    EXPECT_EQ(selected, QStringList({"s", "s"}));
}

TEST_F(SessionRowTest, ALongTaskTakesNoRoomFromTheOthers) {
    apply(Event::promptSubmit);
    Session session = store.sessions().value("s");
    session.subagents = {{{}, QString(20'000, u'x'), false}, {{}, "look", true}};
    row.setSession(session, {});
    row.show();
    shownIn<SubagentList>(row).first()->click();
    const TextLabel *tasks = shownIn<TextLabel>(*shownIn<SubagentList>(row).first()).last();
    EXPECT_EQ(tasks->lines(400).last(), "✓  look");
}

TEST_F(SessionRowTest, CountsDownWhileOnScreenAndWarnsAtTheEnd) {
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
    row.show();
    scheduler.advance(Seconds(20));
    EXPECT_EQ(countdown->text(), "0s");
    EXPECT_EQ(ticksWithin(Seconds(8)), 0);
}

TEST_F(SessionRowTest, ThePencilTurnsTheNameIntoAFieldThatOutlivesAnUpdate) {
    // What has no folder has no name to change.
    apply(Event::promptSubmit);
    show();
    EXPECT_FALSE(pencil().isVisible());
    show(EventBuilder(Event::promptSubmit).with(&HookEvent::cwd, QString("/srv/folder")));
    EXPECT_TRUE(pencil().isVisible());
    const int height = row.sizeHint().height();
    pencil().click();
    ASSERT_TRUE(field());
    EXPECT_EQ(field()->text(), "folder");
    EXPECT_EQ(row.sizeHint().height(), height);
    QTest::keyClicks(field(), "mine");
    apply(EventBuilder(Event::toolUse).tool("Edit"));
    store.renameCwd("/srv/folder", QString("elsewhere"));
    show();
    // The name is for the folder that it was begun for.
    show(EventBuilder(Event::toolUse).with(&HookEvent::cwd, QString("/srv/folder/deeper")));
    EXPECT_EQ(field()->text(), "mine");
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_EQ(renamed, QStringList({"/srv/folder=mine"}));
    EXPECT_FALSE(field());
    EXPECT_EQ(editing.count(), 0);

    // A click that takes the focus away closes the field and does no more.
    pencil().click();
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 35));
    EXPECT_EQ(renamed.size(), 2);
    EXPECT_TRUE(selected.isEmpty());
    EXPECT_FALSE(field());
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 35));
    EXPECT_EQ(selected.size(), 1);
}

} // namespace
} // namespace morvane
