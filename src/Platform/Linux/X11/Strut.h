#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <cstdint>

namespace morvane {

/// The parts of the desktop's edges that a bar or dock reserves, in device pixels: for each edge a
/// depth, and a range along the edge. A plain value.
struct Strut {
    struct Edge {
        int depth = 0;
        int from = 0;
        int to = 0; ///< inclusive

        friend bool operator==(const Edge &, const Edge &) = default;
    };
    Edge left;
    Edge right;
    Edge top;
    Edge bottom;

    /// Reads the twelve items of `_NET_WM_STRUT_PARTIAL`; fewer make an empty strut.
    static Strut of(const QList<std::uint32_t> &items);

    bool isEmpty() const;

    /// What this strut leaves of an area on a screen. An edge on another screen takes nothing.
    QRect shrink(const QRect &area, const QRect &screen, const QSize &desktop) const;

    friend bool operator==(const Strut &, const Strut &) = default;
};

} // namespace morvane
