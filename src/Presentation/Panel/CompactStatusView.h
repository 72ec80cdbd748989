#pragma once

#include <QWidget>

namespace morvane {

class PixelAnimator;
class SessionStore;
class StateMarkView;
struct PanelContext;

/// In the closed capsule, or beside the notch: the mascot with the one status of all sessions
/// together, and the mark of that status.
class CompactStatusView : public QWidget {
    Q_OBJECT

public:
    CompactStatusView(const PanelContext &context, QWidget *parent);

    /// Takes over what the store has now.
    void refresh();

    const PixelAnimator &mascot() const { return *m_mascot; }

private:
    const SessionStore &m_store;
    PixelAnimator *m_mascot;
    StateMarkView *m_mark;
};

} // namespace morvane
