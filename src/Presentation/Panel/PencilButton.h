#pragma once

#include "Presentation/Panel/PanelButton.h"

namespace morvane {

/// Renames the row in which it stands. It is drawn only while the pointer or the keys are on the
/// row, but is there at all times, for whoever works the row without either.
class PencilButton : public PanelButton {
    Q_OBJECT

public:
    /// Appears with the pointer or the keys on `row`.
    PencilButton(const QWidget &row, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QWidget &m_row;
};

} // namespace morvane
