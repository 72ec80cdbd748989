#pragma once

#include "Presentation/PixelFrameView.h"

namespace morvane {

class SessionStore;
struct PanelContext;

/// The mascot in the closed capsule: the one status of all sessions together.
class CompactStatusView : public PixelFrameView {
    Q_OBJECT

public:
    CompactStatusView(const PanelContext &context, QWidget *parent);

    void refresh();

private:
    SessionStore &m_store;
};

} // namespace morvane
