#pragma once

#include <QWidget>

namespace morvane {

class PixelAnimator;
class SessionStore;
class StateMarkView;
struct PanelContext;

/// Shows, in the closed capsule or beside the notch, the mascot in the aggregated state of all
/// sessions, and the mark of that state.
class CompactStatusView : public QWidget {
    Q_OBJECT

public:
    CompactStatusView(const PanelContext &context, QWidget *parent);

    /// Shows what the store has now.
    void refresh();

    const PixelAnimator &mascot() const { return *m_mascot; }

private:
    const SessionStore &m_store;
    PixelAnimator *m_mascot;
    StateMarkView *m_mark;
};

} // namespace morvane
