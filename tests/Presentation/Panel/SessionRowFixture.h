#pragma once

#include "Presentation/Panel/DecideButton.h"
#include "Presentation/Panel/OptionButton.h"
#include "Presentation/Panel/SessionRow.h"
#include "Presentation/PanelFixture.h"

#include <QLabel>
#include <QTest>

namespace morvane {

/// The row of session "s".
class SessionRowFixture : public PanelFixture {
protected:
    void show() {
        row.setSession(store.sessions().value("s"), {});
        showLaidOut(row);
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

    /// The texts on show, and the buttons with their widths, to which a digit adds.
    static QStringList contents(const SessionRow &row) {
        QStringList result = textsIn<QLabel>(row);
        result.removeAll(QString());
        for (const DecideButton *button : shownIn<DecideButton>(row)) {
            result.append(button->text() + QString::number(button->sizeHint().width()));
        }
        result.sort();
        return result;
    }

    SessionRow row{context, nullptr};
};

} // namespace morvane
