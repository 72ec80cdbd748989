#include "Presentation/Notch/NotchHover.h"

#include "Support/Printing.h"

#include <QStringList>

namespace morvane {
namespace {

struct HoverCase {
    const char *what;
    /// Each step is a time in seconds, what happens then, and the answer to it: open, close, the
    /// seconds after which to poll again, or nothing.
    const char *steps;
    bool endsOpen;
};

const HoverCase hoverCases[] = {
    {"crossing opens nothing", "0 in 0.35, 0.34 out, 0.36 in 0.35, 0.7 in 0.01, 0.7 out", false},
    {"a return in time forgets that it left",
     "0 in 0.35, 1 in open, 2 out 0.40, 2.39 in, 2.5 out 0.40, 2.8 out 0.10, 2.8 in", true},
    {"a lock decides nothing, and starts the waiting over",
     "0 in 0.35, 0.2 lock, 0.4 in 0.10, 0.5 in 0.35, 0.85 in open, 0.85 lock, 1 out 0.15, "
     "1.15 out 0.40",
     true},
    {"a panel that is closed on purpose waits for the pointer to leave",
     "0 in 0.35, 1 in open, 2 collapse, 2 lock, 2.1 out 0.20, 3 in, 9 in, 10 out, 11 in 0.35, "
     "12 in open",
     true},
    {"a dismissal does, too, and ends with the next opening",
     "0 dismiss, 0 asked dismissed, 0 present, 0 asked, 0 dismiss, 0 in, 0 out, 1 in 0.35, "
     "1 asked dismissed, 2 in open, 2 asked",
     true},
    {"an open field freezes the panel as it is",
     "0 in 0.35, 1 in open, 2 out 0.40, 2.2 out+editing 0.50, 9 out+editing 0.50, "
     "10 out 0.40, 10.2 in",
     true},
    {"an open field also stops an opening, but lifts neither lock nor the need to leave",
     "0 in 0.35, 0.3 in+editing 0.50, 0.4 in 0.35, 0.5 collapse, 0.5 lock, "
     "0.6 out+editing 0.20, 1 out+editing 0.50, 2 in, 3 in",
     false},
    {"a request forgets how long the pointer has been there",
     "0 in 0.35, 0.1 present, 0.2 end, 0.5 in 0.35, 0.6 out", false},
    {"after a request the pointer decides again",
     "0 present, 1 in, 10 end, 10 lock, 10.1 in 0.20, 10.3 in 0.35, 10.65 in open, "
     "11 out 0.40, 11.4 out close",
     false},
    {"a clock that is set back delays nothing for long",
     "100 in 0.35, 50 in 0.35, 50.35 in open, 100 lock, 50.5 out 0.40, 20 out 0.40, "
     "20.4 out close",
     false}};

QString say(const NotchHover::Decision &decision) {
    using Change = NotchHover::Decision::Change;
    if (decision.change != Change::none) {
        return decision.change == Change::open ? "open" : "close";
    }
    return decision.checkAfter ? QString::number(decision.checkAfter->count(), 'f', 2) : "";
}

/// Takes the steps, and checks what is said to each.
void take(const QString &steps, NotchHover &hover) {
    for (const QString &step : steps.split(", ")) {
        const Date now =
            Date() + std::chrono::hours(1) + Seconds(step.section(' ', 0, 0).toDouble());
        const QString what = step.section(' ', 1, 1);
        QString said;
        if (what == "lock") {
            hover.lock(now);
        } else if (what == "collapse") {
            hover.collapse();
        } else if (what == "dismiss") {
            hover.dismiss();
        } else if (what == "present") {
            hover.present();
        } else if (what == "end") {
            hover.endPresentation();
        } else if (what == "asked") {
            said = hover.isDismissed() ? "dismissed" : "";
        } else {
            const Seconds editing(what.endsWith("editing") ? 0.5 : 0);
            said = say(hover.poll(now, {.isInside = what.startsWith("in"), .editing = editing}));
        }
        EXPECT_EQ(said, step.section(' ', 2)) << step.toStdString();
    }
}

TEST(NotchHover, OpensAndClosesByTheTable) {
    for (const HoverCase &expected : hoverCases) {
        SCOPED_TRACE(expected.what);
        NotchHover hover;
        take(expected.steps, hover);
        EXPECT_EQ(hover.isOpen(), expected.endsOpen);
    }
}

} // namespace
} // namespace morvane
