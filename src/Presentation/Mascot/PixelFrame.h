#pragma once

#include <QList>
#include <QString>

namespace morvane {

/// A picture drawn in rows of characters: "." is nothing, "o" a faint pixel, anything else a full
/// one. A plain value.
struct PixelFrame {
    QList<QString> rows;

    /// The same picture with every full pixel faint.
    PixelFrame dimmed() const;

    friend bool operator==(const PixelFrame &, const PixelFrame &) = default;
};

} // namespace morvane
