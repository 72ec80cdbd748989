#pragma once

#include <QWidget>

namespace morvane {

/// Darkens the edge of a list at which it goes on out of sight. Clicks go through it.
class EdgeFade : public QWidget {
    Q_OBJECT

public:
    enum class Edge { top, bottom };

    EdgeFade(Edge edge, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Edge m_edge;
};

} // namespace morvane
