#include "Core/Settings/SettingValue.h"

#include "Core/Settings/PanelKey.h"

#include <utility>

namespace morvane::SettingValue {

namespace {

template <typename Integer, typename Number>
void narrow(Number number, Integer &value) {
    if (std::in_range<Integer>(number)) {
        value = static_cast<Integer>(number);
    }
}

template <typename Integer>
void readInteger(const QVariant &stored, Integer &value) {
    switch (stored.typeId()) {
    case QMetaType::ULongLong:
        narrow(stored.toULongLong(), value);
        break;
    case QMetaType::LongLong:
    case QMetaType::Int:
        narrow(stored.toLongLong(), value);
        break;
    default:
        break;
    }
}

QString text(const QVariant &stored) {
    QString result;
    read(stored, result);
    return result;
}

} // namespace

void read(const QVariant &stored, bool &value) {
    if (stored.typeId() == QMetaType::Bool) {
        value = stored.toBool();
    }
}

void read(const QVariant &stored, int &value) {
    readInteger(stored, value);
}

void read(const QVariant &stored, std::uint16_t &value) {
    readInteger(stored, value);
}

void read(const QVariant &stored, QString &value) {
    if (stored.typeId() == QMetaType::QString) {
        value = stored.toString();
    }
}

void read(const QVariant &stored, DisplayTargetMode &value) {
    value = displayTargetMode(text(stored)).value_or(value);
}

void read(const QVariant &stored, FloatingPosition &value) {
    value = floatingPosition(text(stored)).value_or(value);
}

void read(const QVariant &stored, HotKey &value) {
    value = PanelKey::panelKey(text(stored)).value_or(value);
}

void read(const QVariant &stored, QMap<QString, QString> &value) {
    if (stored.typeId() != QMetaType::QVariantMap) {
        return;
    }
    QMap<QString, QString> result;
    const QVariantMap map = stored.toMap();
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        if (entry.value().typeId() != QMetaType::QString) {
            return;
        }
        result.insert(entry.key(), entry.value().toString());
    }
    value = result;
}

void read(const QVariant &stored, std::optional<QStringList> &value) {
    if (stored.typeId() == QMetaType::QStringList) {
        value = stored.toStringList();
    }
    if (stored.typeId() != QMetaType::QVariantList) {
        return;
    }
    QStringList result;
    for (const QVariant &member : stored.toList()) {
        if (member.typeId() != QMetaType::QString) {
            return;
        }
        result.append(member.toString());
    }
    value = result;
}

QVariant stored(bool value) {
    return value;
}

QVariant stored(int value) {
    return value;
}

QVariant stored(std::uint16_t value) {
    return QVariant::fromValue<quint64>(value);
}

QVariant stored(DisplayTargetMode value) {
    return rawValue(value);
}

QVariant stored(FloatingPosition value) {
    return rawValue(value);
}

QVariant stored(const HotKey &value) {
    return PanelKey::rawValue(value);
}

QVariant stored(const QMap<QString, QString> &value) {
    QVariantMap map;
    for (auto entry = value.begin(); entry != value.end(); ++entry) {
        map.insert(entry.key(), entry.value());
    }
    return map;
}

QVariant stored(const std::optional<QStringList> &value) {
    return value ? QVariant(*value) : QVariant();
}

} // namespace morvane::SettingValue
