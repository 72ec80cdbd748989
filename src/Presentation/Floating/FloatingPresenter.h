#pragma once

#include "Presentation/Floating/CapsuleState.h"
#include "Presentation/Overlay/MorvanePresenter.h"
#include "Presentation/Style/Animation.h"

#include <memory>

namespace morvane {

class FloatingCapsuleView;

/// Shows Morvane on a display without a notch: a tab hanging from the top of the work area, which
/// grows into the panel under the pointer. The reasons to be on screen are independent of each
/// other; `shouldBeVisible` combines them.
class FloatingPresenter : public MorvanePresenter {
    Q_OBJECT

public:
    enum class Flavour {
        ambient, ///< on screen as long as sessions are active, always at the top centre
        onCall,  ///< only when something calls for it; may sit at the top right
    };

    FloatingPresenter(const PanelContext &context, Displays &displays, OverlayWindows &overlays,
                      Flavour flavour);
    ~FloatingPresenter() override;

    void attach(const Display &display) override;
    void setStandIn(StandIn standIn) override;
    void presentPanel() override;
    void collapseExpanded() override;
    void dismiss() override;
    void detach() override;

private:
    void update() override;
    void followPointer() override;
    void endPresentation() override;

    void makePanel();
    void follow();
    void flash();
    void expansionChanged(bool isExpanded);

    bool isHeldBySessions() const;
    bool shouldBeVisible() const;
    void updateVisibility(Motion motion);
    void showPanel();
    void hidePanel();
    void comeDown();
    Seconds durationOf(Seconds motion) const;

    void layout(Motion motion);
    QRect tabFrame(const QSize &size) const;
    OverlayWindow::Anchor anchor() const;
    void place();

    const Flavour m_flavour;
    CapsuleState m_capsule;
    Display m_display;

    std::unique_ptr<FloatingCapsuleView> m_view;

    QRect m_target;  ///< where the tab is or is moving to, on the desktop
    QRect m_present; ///< where the tab is at this moment
    QRect m_frame;   ///< of the window, with room for a whole growth, so that it is resized once
    double m_offset = 0; ///< of the window, negative while it is still above its place
    Animation m_growth;  ///< of the tab
    bool m_isFadingIn = false;
    bool m_isHovering = false;

    StandIn m_standIn = StandIn::none;
    bool m_flashActive = false; ///< a session has changed its state a moment ago
    bool m_dismissed = false;
    bool m_presented = false; ///< opened by `presentPanel`
    Task m_flashTask;
};

} // namespace morvane
