#pragma once

#include <QLabel>

namespace morvane {

/// A short hint on a rounded background.
class Pill : public QLabel {
    Q_OBJECT

public:
    explicit Pill(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace morvane
