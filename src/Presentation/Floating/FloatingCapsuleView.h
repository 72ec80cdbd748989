#pragma once

#include "Presentation/Overlay/PanelSurface.h"

#include <QPainterPath>

namespace morvane {

class CompactView;
class ExpandedView;
struct PanelContext;

/// The black tab that hangs from the top of the screen, with the closed or the open view in it.
///
/// The widget may be larger than the tab, which grows and shrinks inside of it: a window that
/// changed its size with every frame would flicker. The owner places the tab.
class FloatingCapsuleView : public PanelSurface {
    Q_OBJECT

public:
    /// The context outlives the view.
    explicit FloatingCapsuleView(const PanelContext &context);

    /// The size that the panel may take, in points; the owner sets it before it opens the view.
    void setContentBudget(const QSize &budget);
    void setExpanded(bool expanded);

    /// Shows what the store has now.
    void refresh();

    void takeFocus() override;
    bool hasBeenRead(const QString &sessionID) const override;
    std::optional<CompletedRecord> recordAt(int digit) const override;

    /// The size that the view needs, closed or open as it is.
    QSize fittingSize() const;

    /// Where the tab is at this moment, and where it is moving to; both in points of the widget.
    /// The content is laid out for the target at once.
    void setTab(const QRect &present, const QRect &target);

    /// The outline of a tab in this place.
    QPainterPath shape(const QRect &tab) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double cornerRadius() const;
    void makeExpanded();

    const PanelContext &m_context;
    QSize m_contentBudget;
    bool m_isExpanded = false;
    QRect m_tab;
    QWidget *m_clip; ///< cuts the content off at the tab's edges while the tab moves
    CompactView *m_compact;
    ExpandedView *m_expanded = nullptr; ///< made when it is first opened
};

} // namespace morvane
