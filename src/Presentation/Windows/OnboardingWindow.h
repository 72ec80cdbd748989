#pragma once

#include "Presentation/Windows/ManagedWindow.h"
#include "Presentation/Windows/OnboardingView.h"

namespace morvane {

/// Greets a new user, and later tells of agents that have appeared on the machine. It stays above
/// other windows, since nobody asked for it and it would be lost among them. Owned by
/// `AppDelegate`, which forgets it when it is closed.
class OnboardingWindow : public ManagedWindow {
    Q_OBJECT

public:
    OnboardingWindow(const OnboardingView::Mode &mode, const WindowContext &context);

    /// Something has changed that the view doesn't follow by itself.
    void refresh();

signals:
    /// The window has been closed, by "Done" or otherwise.
    void finished();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    OnboardingView *m_view;
};

} // namespace morvane
