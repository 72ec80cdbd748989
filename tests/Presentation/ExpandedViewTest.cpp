#include "Presentation/ExpandedView.h"

#include "PanelFixture.h"
#include "Presentation/CompletedRow.h"
#include "Presentation/DecideButton.h"
#include "Presentation/TextLabel.h"

#include <QTest>

#include <algorithm>

namespace morvane {
namespace {

class ExpandedViewTest : public PanelFixture {
protected:
    ExpandedViewTest() { view.show(); }

    void refresh() {
        view.refresh();
        view.resize(view.sizeHint());
    }

    QList<SessionRow *> rows() const {
        QList<SessionRow *> result;
        for (SessionRow *row : view.findChildren<SessionRow *>()) {
            if (row->isVisible()) {
                result.append(row);
            }
        }
        std::ranges::sort(result, {}, [](const SessionRow *row) { return row->y(); });
        return result;
    }

    QString order() const {
        QString result;
        for (const SessionRow *row : rows()) {
            result += row->session().id;
        }
        return result;
    }

    DecideButton *button(const QString &title) const {
        for (DecideButton *candidate : view.findChildren<DecideButton *>()) {
            if (candidate->text() == title && candidate->isVisible()) {
                return candidate;
            }
        }
        return nullptr;
    }

    bool showsText(const QString &text) const {
        return std::ranges::any_of(view.findChildren<TextLabel *>(), [&](const TextLabel *label) {
            return label->isVisible() && label->text() == text;
        });
    }

    ExpandedView view{context, nullptr};
};

TEST_F(ExpandedViewTest, RowsStayInPlaceWhileTheirOrderAndNeighboursChange) {
    apply(Event::promptSubmit, "a");
    scheduler.advance(Seconds(1));
    apply(Event::promptSubmit, "b");
    refresh();
    EXPECT_EQ(order(), "ba");
    const QList<SessionRow *> before = rows();

    scheduler.advance(Seconds(1));
    apply(Event::needsInput, "a");
    apply(Event::promptSubmit, "c");
    apply(Event::sessionStart, "d");
    refresh();
    EXPECT_EQ(order(), "acbd");
    EXPECT_EQ(rows()[0], before[1]);
    EXPECT_EQ(rows()[2], before[0]);
    EXPECT_TRUE(showsText("OPEN — no activity yet"));

    apply(Event::turnEnd, "c");
    apply(Event::sessionEnd, "d");
    refresh();
    EXPECT_EQ(order(), "ab");
    EXPECT_FALSE(showsText("OPEN — no activity yet"));
}

TEST_F(ExpandedViewTest, AFinishedSessionWithoutAFolderIsShownOnce) {
    store.apply(EventBuilder(Event::promptSubmit).in(QStringLiteral("a")));
    refresh();
    EXPECT_EQ(order(), QStringLiteral("a"));
    store.apply(EventBuilder(Event::turnEnd).in(QStringLiteral("a")));
    refresh();
    EXPECT_EQ(order(), QString());
    EXPECT_EQ(view.findChildren<CompletedRow *>().size(), 1);
}

TEST_F(ExpandedViewTest, APressOutlivesAChangeOfAnotherSession) {
    QList<AgentDecision> sent;
    store.resolveDecision = [&](const QString &, const AgentDecision &decision) {
        sent.append(decision);
    };
    apply(EventBuilder::parked("d1"));
    refresh();
    DecideButton *const allow = button("Allow");
    QTest::mousePress(allow, Qt::LeftButton);
    apply(Event::turnEnd, "other");
    apply(Event::promptSubmit, "another");
    refresh();
    QTest::mouseRelease(allow, Qt::LeftButton);
    EXPECT_EQ(sent, QList<AgentDecision>({AgentDecision::allow()}));

    // A press on a call that gives way to the next one must not allow that.
    apply(EventBuilder::parked("d2"));
    refresh();
    QTest::mousePress(button("Allow"), Qt::LeftButton);
    apply(EventBuilder::parked("d3"));
    refresh();
    sent.clear();
    QTest::mouseRelease(button("Allow"), Qt::LeftButton);
    EXPECT_TRUE(sent.isEmpty());
}

TEST_F(ExpandedViewTest, TakesTheRoomThatItsContentNeeds) {
    refresh();
    EXPECT_TRUE(showsText("no active agent sessions"));
    const int narrow = view.width();
    apply(Event::promptSubmit);
    refresh();
    EXPECT_FALSE(showsText("no active agent sessions"));
    EXPECT_EQ(view.width(), narrow);
    EXPECT_LT(view.height(), 120);
    apply(Event::needsInput);
    refresh();
    EXPECT_GT(view.width(), narrow);

    for (int index = 0; index < 30; ++index) {
        apply(Event::promptSubmit, QString::number(index));
    }
    view.setContentHeightBudget(480);
    refresh();
    EXPECT_EQ(view.height(), 480);
    view.setContentHeightBudget(100);
    refresh();
    EXPECT_EQ(view.height(), 120 + 28);
}

TEST_F(ExpandedViewTest, NoTextIsCutOffAtItsFoot) {
    apply(EventBuilder(Event::needsInput)
              .with(&HookEvent::responseMessage, QString(QStringLiteral("word ")).repeated(90)));
    apply(EventBuilder::parked(QStringLiteral("d"))
              .in(QStringLiteral("a"))
              .with(&HookEvent::toolDetail, QString(QStringLiteral("x")).repeated(300)));
    view.setContentHeightBudget(900);
    refresh();
    for (const TextLabel *label : view.findChildren<TextLabel *>()) {
        if (label->isVisible() && label->hasHeightForWidth()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                << label->text().toStdString();
        }
    }
}

} // namespace
} // namespace morvane
