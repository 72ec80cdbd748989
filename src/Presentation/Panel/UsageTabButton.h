#pragma once

#include "Presentation/Panel/PanelButton.h"

namespace morvane {

/// Chooses what the panel's footer shows; checked while that is shown.
class UsageTabButton : public PanelButton {
    Q_OBJECT

public:
    /// The name is for screen readers, and says more than the title.
    UsageTabButton(const QString &title, const QString &name, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace morvane
