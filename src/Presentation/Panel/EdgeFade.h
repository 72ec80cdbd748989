#pragma once

#include <QWidget>

namespace morvane {

/// Darkens an edge of a list beyond which the list continues. Clicks go through it.
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
