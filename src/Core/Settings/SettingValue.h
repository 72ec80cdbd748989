#pragma once

#include "Core/Settings/DisplayTargetMode.h"
#include "Core/Settings/FloatingPosition.h"
#include "Platform/HotKey.h"

#include <QMap>
#include <QStringList>
#include <QVariant>

#include <cstdint>
#include <optional>

/// How a setting of each type stands in the defaults. A new type of setting needs its pair here.
namespace morvane::SettingValue {

/// Copies `stored` to `value` if it has exactly the right type and is in range. Anything else,
/// which a person may have written into the file, leaves `value` as it is.
void read(const QVariant &stored, bool &value);
void read(const QVariant &stored, int &value);
void read(const QVariant &stored, std::uint16_t &value);
void read(const QVariant &stored, QString &value);
void read(const QVariant &stored, DisplayTargetMode &value);
void read(const QVariant &stored, FloatingPosition &value);
void read(const QVariant &stored, HotKey &value);
void read(const QVariant &stored, QMap<QString, QString> &value);
void read(const QVariant &stored, std::optional<QStringList> &value);

/// The variant to store; invalid if nothing is to be stored.
QVariant stored(bool value);
QVariant stored(int value);
QVariant stored(std::uint16_t value);
QVariant stored(DisplayTargetMode value);
QVariant stored(FloatingPosition value);
QVariant stored(const HotKey &value);
QVariant stored(const QMap<QString, QString> &value);
QVariant stored(const std::optional<QStringList> &value);

} // namespace morvane::SettingValue
