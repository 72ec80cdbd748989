#pragma once

#include <QColor>

/// The colours of the panel. Its ground is black, so most of them are white at some opacity.
namespace morvane::Colors {

constexpr QColor sRgb(double red, double green, double blue, double opacity = 1) {
    const auto channel = [](double value) { return qRound(value * 255); };
    return QColor(channel(red), channel(green), channel(blue), channel(opacity));
}

constexpr QColor white(double opacity) {
    return sRgb(1, 1, 1, opacity);
}

inline constexpr QColor capsuleFill = sRgb(0, 0, 0, 0.9);
inline constexpr QColor notchFill = sRgb(0, 0, 0);
inline constexpr QColor capsuleEdge = white(0.08);
inline constexpr QColor windowFill = sRgb(0.11, 0.11, 0.12);
inline constexpr QColor rowHover = white(0.055);
inline constexpr QColor rowPressed = white(0.09);

inline constexpr QColor primaryText = white(0.94);
inline constexpr QColor secondaryText = white(0.6);
inline constexpr QColor tertiaryText = white(0.5);
inline constexpr QColor quietText = white(0.45);
inline constexpr QColor faintText = white(0.35);

inline constexpr QColor questionAccent = sRgb(0.48, 0.7, 1.0);
inline constexpr QColor approvalAccent = sRgb(1.0, 0.72, 0.35);
inline constexpr QColor denyAccent = sRgb(1.0, 0.48, 0.48);
inline constexpr QColor quietAccent = white(0.7);

inline constexpr QColor connected = sRgb(0.36, 0.82, 0.48);
inline constexpr QColor warning = sRgb(1.0, 0.74, 0.3);
inline constexpr QColor switchOn = sRgb(0.12, 0.43, 0.86);
inline constexpr QColor mascot = sRgb(1.0, 0.84, 0.04);
inline constexpr QColor onboardingGlow = sRgb(0.19, 0.2, 0.27);
inline constexpr QColor formGround = white(0.05);
inline constexpr QColor hairline = white(0.08);
inline constexpr QColor focusRing = sRgb(0.48, 0.7, 1.0, 0.9);

inline constexpr QColor fillingContext = sRgb(1.0, 0.78, 0.45);
inline constexpr QColor tightContext = sRgb(1.0, 0.5, 0.45);

// How often a session asks for permission.
inline constexpr QColor neverAsks = sRgb(1.0, 0.45, 0.45);
inline constexpr QColor asksLess = sRgb(1.0, 0.75, 0.42);
inline constexpr QColor asksAsUsual = sRgb(0.55, 0.75, 1.0);

inline constexpr QColor codeGround = white(0.05);
inline constexpr QColor removedLine = sRgb(1.0, 0.6, 0.58);
inline constexpr QColor addedLine = sRgb(0.56, 0.86, 0.6);

/// Opacity of the tinted ground of a badge or of a button at rest.
inline constexpr double tintedGround = 0.14;

/// Opacity of a shortcut's digit in a button.
inline constexpr double shortcut = 0.9;

/// Opacity of what can't be pressed yet.
inline constexpr double waiting = 0.4;

/// The same colour with its opacity multiplied by `opacity`.
inline QColor faded(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

} // namespace morvane::Colors
