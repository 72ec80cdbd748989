#include "Platform/Linux/KnownNotches.h"

#include <QFile>
#include <QtEndian>

#include <array>
#include <cmath>

namespace morvane {

namespace {

struct Panel {
    QSize size;     ///< includes the rows beside the notch
    int notchWidth; ///< rounded up: the surplus is black, like the notch
};

// In the panels' native pixels.
constexpr std::array panels{
    Panel{{3024, 1964}, 376}, // 14 inches
    Panel{{3456, 2234}, 376}, // 16 inches
    Panel{{2560, 1664}, 328}, // 13 inches
    Panel{{2880, 1864}, 328}, // 15 inches
};

/// Below the notch's rows, all of these panels are 16 : 10.
int notchRows(const Panel &panel) {
    return panel.size.height() - panel.size.width() * 10 / 16;
}

QByteArray readNode(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

KnownNotches::KnownNotches(const QString &deviceTree) {
    // Texts of a device tree end with a zero byte, and numbers are big-endian.
    const QString display =
        QString::fromUtf8(readNode(deviceTree + QStringLiteral("/aliases/dcp")).constData());
    const QByteArray height =
        readNode(deviceTree + display + QStringLiteral("/apple,notch-height"));
    if (!display.isEmpty() && height.size() == sizeof(quint32)) {
        m_height = static_cast<int>(qFromBigEndian<quint32>(height.constData()));
    }
}

std::optional<QSize> KnownNotches::notch(const QSize &mode) const {
    for (const Panel &panel : panels) {
        // A desktop may render at another resolution; the aspect ratio stays the same, to within a
        // row.
        const double scale = static_cast<double>(mode.width()) / panel.size.width();
        if (notchRows(panel) == m_height &&
            std::abs(mode.height() - panel.size.height() * scale) <= 1) {
            return (QSizeF(panel.notchWidth, m_height) * scale).toSize();
        }
    }
    return std::nullopt;
}

} // namespace morvane
