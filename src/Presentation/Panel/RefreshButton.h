#pragma once

#include <QAbstractButton>

namespace morvane {

/// Asks for the limits now.
class RefreshButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit RefreshButton(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace morvane
