#pragma once

#include <QAbstractButton>

namespace morvane {

/// Renames the row in which it stands. It is drawn only while the pointer is on the row, but is
/// there at all times, for whoever works the row without a pointer.
class PencilButton : public QAbstractButton {
    Q_OBJECT

public:
    /// Appears with the pointer on `row`.
    PencilButton(const QWidget &row, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QWidget &m_row;
};

} // namespace morvane
