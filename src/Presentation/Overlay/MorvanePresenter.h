#pragma once

#include "Platform/Displays.h"

#include <QMenu>
#include <QPointer>

#include <functional>

namespace morvane {

/// What shows Morvane on one display. Owned by `PresenterManager`; main thread.
class MorvanePresenter {
public:
    MorvanePresenter() = default;
    MorvanePresenter(const MorvanePresenter &) = delete;
    MorvanePresenter &operator=(const MorvanePresenter &) = delete;
    virtual ~MorvanePresenter() = default;

    /// Told when this presenter's panel opens or closes.
    std::function<void(bool)> onExpandedChanged;

    /// What a right click opens; may be absent.
    QPointer<QMenu> contextMenu;

    /// Takes the display up; called again whenever its geometry may have changed.
    virtual void attach(const Display &display) = 0;

    /// Opens the panel on request.
    virtual void presentPanel() = 0;

    /// Closes the panel but stays.
    virtual void collapseExpanded() = 0;

    /// Goes away until something new happens.
    virtual void dismiss() = 0;

    /// Ends for good and frees everything.
    virtual void detach() = 0;
};

} // namespace morvane
