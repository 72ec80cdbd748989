#pragma once

#include "Presentation/PixelFrameView.h"

namespace morvane {

class SessionStore;

/// The mascot in the closed capsule: the one status of all sessions together.
class CompactStatusView : public PixelFrameView {
    Q_OBJECT

public:
    CompactStatusView(SessionStore &store, QWidget *parent);

    void refresh();

private:
    SessionStore &m_store;
};

} // namespace morvane
