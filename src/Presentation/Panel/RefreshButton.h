#pragma once

#include "Presentation/Panel/PanelButton.h"

namespace morvane {

/// Asks for the limits now.
class RefreshButton : public PanelButton {
    Q_OBJECT

public:
    explicit RefreshButton(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace morvane
