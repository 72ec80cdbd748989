#include "Core/Settings/PanelKey.h"

#include <QStringView>

#include <algorithm>

namespace morvane::PanelKey {

namespace {

// From linux/input-event-codes.h; the other digits follow the first.
constexpr std::uint32_t escapeKeyCode = 1;
constexpr std::uint32_t gKeyCode = 34;
constexpr std::uint32_t firstDigitKeyCode = 2;

constexpr std::uint32_t lastKeyCode = 247; ///< the last one that an X key code can stand for
constexpr qsizetype mostDigits = 3;
constexpr qsizetype longestSymbol = 32; // characters

bool canBeShown(QStringView symbol) {
    const QList<uint> characters = symbol.toUcs4();
    const auto isOther = [](uint character) {
        const auto category = QChar::category(character);
        return category >= QChar::Other_Control && category <= QChar::Other_NotAssigned;
    };
    return symbol.isValidUtf16() && characters.size() <= longestSymbol &&
           std::ranges::none_of(characters, isOther);
}

} // namespace

HotKey usual() {
    return {.keyCode = gKeyCode, .symbol = QStringLiteral("G"), .super = true, .shift = true};
}

HotKey ofDigit(int index) {
    return {.keyCode = firstDigitKeyCode + static_cast<std::uint32_t>(index),
            .symbol = QString::number(index + 1),
            .control = true};
}

HotKey escape() {
    return {.keyCode = escapeKeyCode, .symbol = QStringLiteral("Esc")};
}

std::optional<Fault> fault(const HotKey &key) {
    if (!key.super && !key.control && !key.alt) {
        return Fault::needsModifier;
    }
    if (key.keyCode == 0 || key.keyCode > lastKeyCode || key.symbol.isEmpty() ||
        !canBeShown(key.symbol)) {
        return Fault::isNoKey;
    }
    for (int index = 0; index < digitCount; ++index) {
        HotKey digit = ofDigit(index);
        // Another layout may have another symbol on that key.
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

/// Parsed by hand: every start does it, and the first regular expression takes half a megabyte.
std::optional<HotKey> panelKey(const QString &rawValue) {
    QStringView rest(rawValue);
    const auto isHeld = [&](QLatin1String modifier) {
        const bool result = rest.startsWith(modifier);
        rest = rest.mid(result ? modifier.size() : 0);
        return result;
    };
    HotKey key;
    key.super = isHeld(QLatin1String("Super+"));
    key.control = isHeld(QLatin1String("Ctrl+"));
    key.alt = isHeld(QLatin1String("Alt+"));
    key.shift = isHeld(QLatin1String("Shift+"));
    const qsizetype colon = std::max<qsizetype>(rest.indexOf(u':'), 0);
    const QStringView number = rest.left(colon);
    const QStringView symbol = rest.mid(colon + 1);
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    if (number.size() > mostDigits || !std::ranges::all_of(number, isDigit)) {
        return std::nullopt;
    }
    key.keyCode = number.toUInt();
    key.symbol = symbol.toString();
    return fault(key) ? std::nullopt : std::optional(key);
}

} // namespace morvane::PanelKey
