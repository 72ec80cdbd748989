#pragma once

#include <QWidget>

namespace morvane {

class CompactInfoView;
class CompactStatusView;
struct PanelContext;

/// The content of the closed capsule: the mascot, and beside it a time and a count.
class CompactView : public QWidget {
    Q_OBJECT

public:
    CompactView(const PanelContext &context, QWidget *parent);

    /// Shows what the store has now.
    void refresh();

    QSize sizeHint() const override;

signals:
    void contentResized();

private:
    void describe();

    CompactStatusView *m_status;
    CompactInfoView *m_info;
};

} // namespace morvane
