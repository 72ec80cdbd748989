#pragma once

#include "Presentation/Floating/FloatingPresenter.h"
#include "Presentation/Notch/NotchPresenter.h"
#include "Presentation/PanelFixture.h"

#include <QContextMenuEvent>
#include <QEnterEvent>

namespace morvane {

/// A presenter on a display, and a pointer that comes and goes.
class PresenterFixture : public PanelFixture {
protected:
    using Flavour = FloatingPresenter::Flavour;

    // Places of the pointer: on the capsule or the notch, on nothing but the open panel, and away.
    static constexpr QPoint onTab{500, 35};
    static constexpr QPoint onPanelOnly{300, 50};
    static constexpr QPoint elsewhere{500, 700};

    void attachNotch() {
        isNotch = true;
        attach(std::make_unique<NotchPresenter>(context, displays, overlays, pointer));
        presenter->attach(FakeDisplays::notched(1, 0));
    }
    void attachFloating(Flavour flavour = Flavour::onCall) {
        attach(std::make_unique<FloatingPresenter>(context, displays, overlays, flavour));
        presenter->attach(FakeDisplays::external(1, 0));
    }

    FakeOverlayWindow &window() { return *overlays.alive.first(); }
    bool isVisible() { return !overlays.alive.isEmpty() && window().isVisible(); }
    bool isVisibleAfter(Seconds time) {
        scheduler.advance(time);
        return isVisible();
    }
    /// All openings (true) and closings (false) until then.
    QList<bool> expansionsAfter(Seconds time) {
        scheduler.advance(time);
        return expansions;
    }

    /// Only a notch follows the pointer everywhere; a capsule is told of it as any window is.
    void movePointer(QPoint position) {
        displays.setPointer(position);
        if (isNotch) {
            emit pointer.moved();
            return;
        }
        send(window().widget(), QEnterEvent({}, {}, {}));
        send(window().widget(), QEvent(QEvent::Leave));
    }
    void rightClick(QPoint position) {
        movePointer(position);
        send(window().widget(), QContextMenuEvent(QContextMenuEvent::Mouse, {}, position));
    }

    QList<bool> expansions;
    std::unique_ptr<MorvanePresenter> presenter;

private:
    void attach(std::unique_ptr<MorvanePresenter> made) {
        presenter = std::move(made);
        QObject::connect(presenter.get(), &MorvanePresenter::expandedChanged, presenter.get(),
                         [this](bool isExpanded) { expansions.append(isExpanded); });
    }

    bool isNotch = false;
};

} // namespace morvane
