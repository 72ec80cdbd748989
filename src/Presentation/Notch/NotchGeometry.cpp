#include "Presentation/Notch/NotchGeometry.h"

#include "Platform/Displays.h"

#include <algorithm>
#include <cmath>

namespace morvane::NotchGeometry {

namespace {

constexpr int standardNotchWidth = 220;
constexpr QSize smallestNotch(160, 30);

constexpr double budgetShare = 0.72;
constexpr int budgetMargin = 30;
constexpr int smallestBudget = 240;
constexpr int largestBudget = 820;

constexpr int standardShellWidth = 630;
constexpr int stageMargin = 40;

constexpr int zoneSideMargin = 12;
constexpr int zoneBottomMargin = 4;
constexpr int smallestZoneHeight = 30;

double middle(const QRect &frame) {
    return frame.left() + frame.width() / 2.0;
}

} // namespace

QSize hardwareNotchSize(const Display &display) {
    QSize result(standardNotchWidth, display.topSafeAreaInset);
    const auto &left = display.auxiliaryTopLeftArea;
    const auto &right = display.auxiliaryTopRightArea;
    if (left && right) {
        result.setWidth(display.frame.width() - left->width() - right->width());
        result.setHeight(std::max(result.height(), left->height()));
    }
    return result.expandedTo(smallestNotch);
}

int contentHeightBudget(const Display &display) {
    const double budget = budgetShare * display.visibleFrame.height() -
                          hardwareNotchSize(display).height() - budgetMargin;
    return std::clamp(static_cast<int>(budget), smallestBudget, largestBudget);
}

int contentWidthBudget(const Display &display) {
    return display.frame.width() - 2 * expandedPadding;
}

QRect stageFrame(const Display &display) {
    const QSize notch = hardwareNotchSize(display);
    const int width = std::max(standardShellWidth, compactShellSize(notch).width()) + stageMargin;
    const int height =
        notch.height() + contentHeightBudget(display) + expandedPadding + stageMargin;
    const auto left = std::lround(middle(display.frame) - width / 2.0);
    return {static_cast<int>(left), display.frame.top(), width, height};
}

QRectF hoverZone(const Display &display) {
    const int width = hardwareNotchSize(display).width() + 2 * zoneSideMargin;
    const int height = std::max(display.topSafeAreaInset + zoneBottomMargin, smallestZoneHeight);
    return QRectF(middle(display.frame) - width / 2.0, display.frame.top(), width, height);
}

QSize compactShellSize(const QSize &notch) {
    return {notch.width() + 2 * compactSlot, notch.height()};
}

QSize expandedShellSize(const QSize &notch, const QSize &content) {
    return {std::max(compactShellSize(notch).width(), content.width() + 2 * expandedPadding),
            notch.height() + content.height() + expandedPadding};
}

} // namespace morvane::NotchGeometry
