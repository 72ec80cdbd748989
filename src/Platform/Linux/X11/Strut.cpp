#include "Platform/Linux/X11/Strut.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr qsizetype itemCount = 12;

/// True if the edge's range touches the span and its depth ends within the screen: a depth that
/// covers a whole screen belongs to a bar on the next one.
bool takesFrom(const Strut::Edge &edge, int spanFrom, int spanTo, int reach, int extent) {
    return edge.depth > 0 && edge.from <= spanTo && edge.to >= spanFrom && reach > 0 &&
           reach < extent;
}

} // namespace

Strut Strut::of(const QList<std::uint32_t> &items) {
    if (items.size() < itemCount) {
        return {};
    }
    const auto edge = [&](qsizetype depth, qsizetype from) {
        return Edge{static_cast<int>(items[depth]), static_cast<int>(items[from]),
                    static_cast<int>(items[from + 1])};
    };
    return {edge(0, 4), edge(1, 6), edge(2, 8), edge(3, 10)};
}

bool Strut::isEmpty() const {
    return left.depth == 0 && right.depth == 0 && top.depth == 0 && bottom.depth == 0;
}

QRect Strut::shrink(const QRect &area, const QRect &screen, const QSize &desktop) const {
    QRect result = area;
    const int leftReach = left.depth - screen.left();
    if (takesFrom(left, screen.top(), screen.bottom(), leftReach, screen.width())) {
        result.setLeft(std::max(result.left(), left.depth));
    }
    const int rightEdge = desktop.width() - right.depth;
    if (takesFrom(right, screen.top(), screen.bottom(), screen.right() + 1 - rightEdge,
                  screen.width())) {
        result.setRight(std::min(result.right(), rightEdge - 1));
    }
    const int topReach = top.depth - screen.top();
    if (takesFrom(top, screen.left(), screen.right(), topReach, screen.height())) {
        result.setTop(std::max(result.top(), top.depth));
    }
    const int bottomEdge = desktop.height() - bottom.depth;
    if (takesFrom(bottom, screen.left(), screen.right(), screen.bottom() + 1 - bottomEdge,
                  screen.height())) {
        result.setBottom(std::min(result.bottom(), bottomEdge - 1));
    }
    return result;
}

} // namespace morvane
