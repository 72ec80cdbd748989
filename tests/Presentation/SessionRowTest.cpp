#include "Presentation/SessionRow.h"

#include "PanelFixture.h"
#include "Presentation/ActivateLayouts.h"
#include "Presentation/Colors.h"
#include "Presentation/Countdown.h"
#include "Presentation/DecideButton.h"
#include "Presentation/OptionButton.h"

#include <QLayout>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>

namespace morvane {
namespace {

class SessionRowTest : public PanelFixture {
protected:
    SessionRowTest() {
        QObject::connect(&row, &SessionRow::selected, &row,
                         [this](const Session &session) { selections.append(session.id); });
        QObject::connect(
            &row, &SessionRow::decided, &row,
            [this](const QString &, const AgentDecision &decision) { decisions.append(decision); });
        QObject::connect(&row, &SessionRow::answered, &row,
                         [this](const QString &, const QString &question, const QString &option) {
                             answers.append(question + QStringLiteral("=") + option);
                         });
    }

    void show(SessionRow::Details details = {}) {
        row.setSession(store.sessions().value("s"), details);
        activateLayouts(row);
        row.resize(572, row.layout()->totalHeightForWidth(572));
        row.show();
    }

    /// The visible buttons of a kind, from left to right and from top to bottom.
    template <typename Button>
    QList<Button *> buttons() const {
        QList<Button *> result;
        for (Button *button : row.findChildren<Button *>()) {
            if (button->isVisible()) {
                result.append(button);
            }
        }
        std::ranges::sort(result, {}, [&](const Button *button) {
            const QPoint place = button->mapTo(&row, QPoint());
            return std::pair(place.y(), place.x());
        });
        return result;
    }

    template <typename Button>
    QStringList titles() const {
        QStringList result;
        for (const Button *button : buttons<Button>()) {
            result.append(button->text());
        }
        return result;
    }

    QStringList selections;
    QList<AgentDecision> decisions;
    QStringList answers;
    SessionRow row{context, nullptr};
};

TEST_F(SessionRowTest, RefusesFirstThenAllowsThenAllowsForGood) {
    apply(EventBuilder::parked("d"));
    show();
    ASSERT_EQ(titles<DecideButton>(), QStringList({"Deny", "Allow", "Always"}));
    for (DecideButton *button : buttons<DecideButton>()) {
        button->click();
    }
    EXPECT_EQ(decisions, QList<AgentDecision>(
                             {AgentDecision::deny(), AgentDecision::allow(),
                              AgentDecision::allowRemembering(AgentDecision::Scope::session)}));

    Session session = store.sessions().value("s");
    session.pendingApproval->allowsRemembering = false;
    row.setSession(session, {});
    EXPECT_EQ(titles<DecideButton>(), QStringList({"Deny", "Allow"}));
}

TEST_F(SessionRowTest, AsksOneQuestionAfterTheOther) {
    apply(EventBuilder::parked(QStringLiteral("d")).asking({"First?", "Second?"}));
    show();
    ASSERT_EQ(titles<OptionButton>(), QStringList({"Yes", "No"}));
    buttons<OptionButton>()[1]->click();
    store.answer("s", "First?", "No");
    show();
    ASSERT_EQ(titles<OptionButton>(), QStringList({"Yes", "No"}));
    buttons<OptionButton>()[0]->click();
    EXPECT_EQ(answers, QStringList({"First?=No", "Second?=Yes"}));
}

TEST_F(SessionRowTest, LeadsToTheSessionButNotFromBesideAButton) {
    apply(EventBuilder::parked("d"));
    show();
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(300, 12));
    EXPECT_EQ(selections, QStringList({"s"}));
    const DecideButton *const deny = buttons<DecideButton>().first();
    QTest::mouseClick(&row, Qt::LeftButton, {}, deny->mapTo(&row, QPoint(-3, -3)));
    EXPECT_EQ(selections.size(), 1);
    EXPECT_TRUE(decisions.isEmpty());

    apply(Event::toolUse);
    apply(EventBuilder(Event::turnEnd));
    apply(Event::needsInput);
    show();
    ASSERT_EQ(titles<DecideButton>(), QStringList({"Answer in the terminal"}));
    buttons<DecideButton>().first()->click();
    EXPECT_EQ(selections, QStringList({"s", "s"}));
}

TEST_F(SessionRowTest, CountsDownWhileOnScreenAndWarnsAtTheEnd) {
    motion.setReduced(true); // the mascot would tick as well
    apply(EventBuilder::parked("d"));
    show();
    const auto *countdown = row.findChild<Countdown *>();
    EXPECT_EQ(countdown->text(), "60s");
    scheduler.advance(Seconds(49));
    EXPECT_EQ(countdown->text(), "11s");
    EXPECT_EQ(countdown->color(), Colors::white(0.3));
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

} // namespace
} // namespace morvane
