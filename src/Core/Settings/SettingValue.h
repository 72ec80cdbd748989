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

/// Takes the stored value over where it is of exactly the right type and in range; anything else,
/// which a person may have written there, leaves `value` as it is.
void read(const QVariant &stored, bool &value);
void read(const QVariant &stored, int &value);
void read(const QVariant &stored, std::uint16_t &value);
void read(const QVariant &stored, QString &value);
void read(const QVariant &stored, DisplayTargetMode &value);
void read(const QVariant &stored, FloatingPosition &value);
void read(const QVariant &stored, HotKey &value);
void read(const QVariant &stored, QMap<QString, QString> &value);
void read(const QVariant &stored, std::optional<QStringList> &value);

/// What to store; an invalid one where nothing is to be stored.
QVariant stored(bool value);
QVariant stored(int value);
QVariant stored(std::uint16_t value);
QVariant stored(DisplayTargetMode value);
QVariant stored(FloatingPosition value);
QVariant stored(const HotKey &value);
QVariant stored(const QMap<QString, QString> &value);
QVariant stored(const std::optional<QStringList> &value);

} // namespace morvane::SettingValue
