#pragma once

#include <QWidget>

namespace morvane {

/// The line below Claude's limits: at which milestones a chime sounds while a session is working.
class AlertsNote : public QWidget {
    Q_OBJECT

public:
    explicit AlertsNote(QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace morvane
