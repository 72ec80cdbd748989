#pragma once

#include "Presentation/Panel/PanelButton.h"

namespace morvane {

/// Renames the row in which it stands. It is drawn only while the pointer or the focus is on the
/// row, but can be pressed at other times too, by assistive technology that uses neither.
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
