#pragma once

#include <QColor>
#include <QWidget>

namespace morvane {

/// A thin bar that shows how full a session's context is, against a standard window.
class ContextGauge : public QWidget {
    Q_OBJECT

public:
    explicit ContextGauge(QWidget *parent);

    void setTokens(int tokens, const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double m_share = 0; ///< the full part, 0 to 1
    QColor m_color;
};

} // namespace morvane
