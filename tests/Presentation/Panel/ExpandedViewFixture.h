#pragma once

#include "Presentation/Overlay/DigitShortcuts.h"
#include "Presentation/Panel/CompletedRow.h"
#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Panel/ExpandedView.h"
#include "Presentation/Panel/SessionRow.h"
#include "Presentation/Panel/UsageBars.h"
#include "Presentation/PanelFixture.h"
#include "Presentation/Style/TextLabel.h"

#include <QTest>
#include <QWheelEvent>

namespace morvane {

/// An open panel in which nothing moves by itself.
class ExpandedViewFixture : public PanelFixture {
protected:
    ExpandedViewFixture() {
        motion.setReduced(true);
        view.show();
    }

    void refresh() {
        view.refresh();
        view.resize(view.sizeHint());
    }

    /// So many sessions, a second apart, each in a folder of its own.
    void work(int count) {
        for (int index = 0; index < count; ++index) {
            const QString name = QString::number(index);
            apply(EventBuilder(Event::promptSubmit).in(name).at(name));
            scheduler.advance(Seconds(1));
        }
    }
    void finish(const QString &id, const QString &folder, const std::optional<QString> &tmuxPane) {
        PaneLocator pane;
        pane.tmux = tmuxPane;
        const auto event = EventBuilder(Event::promptSubmit).in(id).at(folder);
        apply(event);
        apply(event.with(&HookEvent::kind, Event::turnEnd).with(&HookEvent::pane, pane));
    }
    void finish(const QString &folder) {
        finish(folder, folder, {});
        scheduler.advance(Seconds(1));
    }

    QList<SessionRow *> rows() const { return shownIn<SessionRow>(view); }
    QList<CompletedRow *> records() const { return shownIn<CompletedRow>(view); }
    /// Who is shown now, from top to bottom.
    QString order() {
        refresh();
        QString result;
        for (const SessionRow *row : rows()) {
            result += row->session().id;
        }
        return result;
    }
    QStringList buttons() {
        refresh();
        return textsIn<DecideButton>(view);
    }
    bool showsText(const QString &text) const { return textsIn<TextLabel>(view).contains(text); }

    /// Scrolls by pixels, and by notches of the wheel.
    void scroll(int pixels, double notches) {
        send(view, QWheelEvent({200, 100}, view.mapToGlobal(QPointF(200, 100)), {0, pixels},
                               {0, qRound(120 * notches)}, {}, {}, {}, false));
    }

    PanelContext withDigits() {
        PanelContext result = context;
        digitShortcuts.setWorking(true);
        result.digitShortcuts = &digitShortcuts;
        return result;
    }

    DigitShortcuts digitShortcuts;
    const PanelContext contextWithDigits = withDigits();
    ExpandedView view{contextWithDigits, nullptr};
};

} // namespace morvane
