#pragma once

#include "Presentation/Mascot/PixelAnimator.h"

namespace morvane {

class SessionStore;
struct PanelContext;

/// The mascot in the closed capsule: the one status of all sessions together.
class CompactStatusView : public PixelAnimator {
    Q_OBJECT

public:
    CompactStatusView(const PanelContext &context, QWidget *parent);

    /// Takes over what the store has now.
    void refresh();

private:
    const SessionStore &m_store;
};

} // namespace morvane
