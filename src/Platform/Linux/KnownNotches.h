#pragma once

#include <QSize>
#include <QString>

#include <optional>

namespace morvane {

/// The notches of panels that are known to have one. X tells nothing about them: the height comes
/// from the device tree that the firmware provides, the rest from the panel's resolution. Reads the
/// device tree once.
class KnownNotches {
public:
    explicit KnownNotches(const QString &deviceTree = QStringLiteral("/proc/device-tree"));

    /// The notch in the middle of the upper edge of the built-in panel, in device pixels of this
    /// mode; none in a mode that leaves the rows beside the notch dark.
    std::optional<QSize> notch(const QSize &mode) const;

private:
    int m_height = 0; ///< rows beside the notch, 0 without one
};

} // namespace morvane
