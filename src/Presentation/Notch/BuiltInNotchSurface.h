#pragma once

#include "Presentation/Notch/FadingContent.h"
#include "Presentation/Notch/NotchShell.h"
#include "Presentation/Overlay/PanelSurface.h"
#include "Presentation/Style/Animation.h"

namespace morvane {

class CompactInfoView;
class CompactStatusView;
class ExpandedView;
class NotchVeil;
struct PanelContext;

/// The black shell that grows out of a notch, with the status beside the notch or the panel below
/// it. The widget is a stage, transparent but for the shell, and keeps its size while the shell
/// grows and shrinks. No timer runs while the shell rests.
class BuiltInNotchSurface : public PanelSurface {
    Q_OBJECT

public:
    enum class Mode {
        compact,  ///< the notch, a little wider, with the status on either side
        expanded, ///< the panel
    };

    /// Starts out compact.
    explicit BuiltInNotchSurface(const PanelContext &context);

    void setNotch(const QSize &notch, const QSize &contentBudget);

    void setMode(Mode mode, Motion motion);

    /// Shows what the store has now; the caller calls `layOut` afterwards.
    void refresh();

    /// Gives the shell the size that its content asks for.
    void layOut(Motion motion);

    void takeFocus() override;
    bool hasBeenRead(const QString &sessionID) const override;
    std::optional<CompletedRecord> recordAt(int digit) const override;

    /// What the shell covers, or will cover once it has stopped moving.
    QPainterPath shape() const;

    QRect visibleRect() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool isExpanded() const { return m_mode == Mode::expanded; }
    void retargetShell(Motion motion);
    void placeShell();

    QSize m_notch;
    QSize m_contentSize; ///< of the panel
    Mode m_mode = Mode::compact;
    NotchShell m_target;
    NotchShell m_shell;      ///< at this moment
    NotchShell m_drawnShell; ///< as it was painted last
    QRect m_drawn;           ///< its bounds then
    Animation m_growth;      ///< of the shell

    QWidget *m_clip; ///< cuts the content off at the shell's edges while the shell moves
    QWidget *m_compact;
    CompactStatusView *m_status;
    CompactInfoView *m_info;
    ExpandedView *m_expanded;
    FadingContent m_compactFade;
    FadingContent m_expandedFade;
    NotchVeil *m_veil;
};

} // namespace morvane
