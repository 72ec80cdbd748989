#include "Core/Settings/PanelKey.h"

#include <QRegularExpression>

namespace morvane::PanelKey {

namespace {

// From linux/input-event-codes.h; the other digits follow the first.
constexpr std::uint32_t gKeyCode = 34;
constexpr std::uint32_t firstDigitKeyCode = 2;

constexpr std::uint32_t lastKeyCode = 247; ///< an X server counts no further

} // namespace

HotKey usual() {
    return {.keyCode = gKeyCode, .symbol = QStringLiteral("G"), .super = true, .shift = true};
}

HotKey ofDigit(int index) {
    return {.keyCode = firstDigitKeyCode + static_cast<std::uint32_t>(index),
            .symbol = QString::number(index + 1),
            .control = true};
}

std::optional<Fault> fault(const HotKey &key) {
    if (!key.super && !key.control && !key.alt) {
        return Fault::needsModifier;
    }
    if (key.keyCode == 0 || key.keyCode > lastKeyCode || key.symbol.isEmpty()) {
        return Fault::isNoKey;
    }
    for (int index = 0; index < digitCount; ++index) {
        HotKey digit = ofDigit(index);
        // Another layout may have something else there.
        digit.symbol = key.symbol;
        if (key == digit) {
            return Fault::isDigit;
        }
    }
    return std::nullopt;
}

QString rawValue(const HotKey &key) {
    QString result;
    result += key.super ? QStringLiteral("Super+") : QString();
    result += key.control ? QStringLiteral("Ctrl+") : QString();
    result += key.alt ? QStringLiteral("Alt+") : QString();
    result += key.shift ? QStringLiteral("Shift+") : QString();
    return result + QString::number(key.keyCode) + u':' + key.symbol;
}

std::optional<HotKey> panelKey(const QString &rawValue) {
    static const QRegularExpression form(
        QStringLiteral(R"(\A(Super\+)?(Ctrl\+)?(Alt\+)?(Shift\+)?(\d{1,3}):([^\p{C}]{1,16})\z)"));
    const QRegularExpressionMatch match = form.match(rawValue);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const auto isHeld = [&](int group) { return match.capturedLength(group) > 0; };
    const HotKey key{.keyCode = match.captured(5).toUInt(),
                     .symbol = match.captured(6),
                     .super = isHeld(1),
                     .control = isHeld(2),
                     .alt = isHeld(3),
                     .shift = isHeld(4)};
    return fault(key) ? std::nullopt : std::optional(key);
}

} // namespace morvane::PanelKey
