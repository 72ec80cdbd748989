#include "Core/Settings/MorvaneSettings.h"

#include "Core/Settings/Defaults.h"

#include <QUuid>

#include <utility>

namespace morvane {

namespace {

constexpr const char *tokenKey = "eventToken";
constexpr const char *legacyDomain = "design.veku.morvane";
constexpr std::uint16_t standardPort = 47615;

QString keyString(const char *key) {
    return QString::fromLatin1(key);
}

/// The stored integer, where there is one within the type's range.
template <typename Integer>
Integer integer(const Defaults &defaults, const char *key, Integer fallback) {
    const QVariant value = defaults.value(keyString(key));
    if (value.typeId() == QMetaType::ULongLong) {
        const quint64 number = value.toULongLong();
        return std::in_range<Integer>(number) ? static_cast<Integer>(number) : fallback;
    }
    if (value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Int) {
        const qint64 number = value.toLongLong();
        return std::in_range<Integer>(number) ? static_cast<Integer>(number) : fallback;
    }
    return fallback;
}

bool flag(const Defaults &defaults, const char *key, bool fallback) {
    const QVariant value = defaults.value(keyString(key));
    return value.typeId() == QMetaType::Bool ? value.toBool() : fallback;
}

QString text(const Defaults &defaults, const char *key) {
    const QVariant value = defaults.value(keyString(key));
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QMap<QString, QString> textMap(const Defaults &defaults, const char *key) {
    QMap<QString, QString> result;
    const QVariantMap stored = defaults.value(keyString(key)).toMap();
    for (auto entry = stored.begin(); entry != stored.end(); ++entry) {
        if (entry.value().typeId() != QMetaType::QString) {
            return {};
        }
        result.insert(entry.key(), entry.value().toString());
    }
    return result;
}

std::optional<QStringList> textList(const Defaults &defaults, const char *key) {
    const QVariant stored = defaults.value(keyString(key));
    if (stored.typeId() == QMetaType::QStringList) {
        return stored.toStringList();
    }
    if (stored.typeId() != QMetaType::QVariantList) {
        return std::nullopt;
    }
    QStringList result;
    for (const QVariant &member : stored.toList()) {
        if (member.typeId() != QMetaType::QString) {
            return std::nullopt;
        }
        result.append(member.toString());
    }
    return result;
}

QString makeToken() {
    const auto uuid = [] { return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(); };
    return uuid() + uuid();
}

} // namespace

MorvaneSettings::MorvaneSettings(Defaults &defaults) : m_defaults(defaults) {
    migrateLegacyDefaults();
    // An empty one would let every local program in.
    if (text(m_defaults, tokenKey).isEmpty()) {
        m_defaults.setValue(keyString(tokenKey), makeToken());
    }
    m_eventToken = text(m_defaults, tokenKey);
    readAll();
}

MorvaneSettings &MorvaneSettings::shared() {
    static MorvaneSettings settings(Defaults::standard());
    return settings;
}

const QStringList &MorvaneSettings::allKeys() {
    static const QStringList keys{
        QStringLiteral("eventToken"),
        QStringLiteral("eventServerPort"),
        QStringLiteral("displayMode"),
        QStringLiteral("floatingPosition"),
        QStringLiteral("hideOverFullscreen"),
        QStringLiteral("showWhenIdle"),
        QStringLiteral("showMenuBarIcon"),
        QStringLiteral("soundEnabled"),
        QStringLiteral("soundOnNeedsInput"),
        QStringLiteral("soundOnDone"),
        QStringLiteral("soundOnUsageLimit"),
        QStringLiteral("usageThreshold"),
        QStringLiteral("showFableBar"),
        QStringLiteral("autoClearMinutes"),
        QStringLiteral("sessionNames"),
        QStringLiteral("usageEnabled"),
        QStringLiteral("approvalsEnabled"),
        QStringLiteral("usageAlertsEnabled"),
        QStringLiteral("hasCompletedFirstRun"),
        QStringLiteral("completedHistory"),
        QStringLiteral("installPingEnabled"),
        QStringLiteral("installPingSent"),
        QStringLiteral("knownAgents"),
        QStringLiteral("SUEnableAutomaticChecks"),
        QStringLiteral("SUAutomaticallyUpdate"),
        QStringLiteral("SULastCheckTime"),
        QStringLiteral("SUSkippedVersion"),
        QStringLiteral("SUSendProfileInfo"),
        QStringLiteral("SUHasLaunchedBefore"),
        QStringLiteral("SUUpdateGroupIdentifier"),
        QStringLiteral("SULastProfileSubmitDate"),
    };
    return keys;
}

void MorvaneSettings::removeStored() {
    m_defaults.remove(allKeys());
}

void MorvaneSettings::migrateLegacyDefaults() {
    if (m_defaults.contains(keyString(tokenKey))) {
        return;
    }
    const QVariantMap legacy = m_defaults.persistentDomain(keyString(legacyDomain));
    if (!legacy.isEmpty()) {
        m_defaults.setValues(legacy);
    }
}

void MorvaneSettings::readAll() {
    m_port = integer(m_defaults, "eventServerPort", standardPort);
    m_displayMode =
        displayTargetMode(text(m_defaults, "displayMode")).value_or(DisplayTargetMode::all);
    m_floatingPosition = morvane::floatingPosition(text(m_defaults, "floatingPosition"))
                             .value_or(FloatingPosition::topCenter);
    m_hideOverFullscreen = flag(m_defaults, "hideOverFullscreen", false);
    m_showWhenIdle = flag(m_defaults, "showWhenIdle", false);
    m_showMenuBarIcon = flag(m_defaults, "showMenuBarIcon", true);
    m_soundEnabled = flag(m_defaults, "soundEnabled", false);
    m_soundOnNeedsInput = flag(m_defaults, "soundOnNeedsInput", true);
    m_soundOnDone = flag(m_defaults, "soundOnDone", false);
    m_showFableBar = flag(m_defaults, "showFableBar", true);
    m_autoClearMinutes = integer(m_defaults, "autoClearMinutes", 10);
    m_sessionNames = textMap(m_defaults, "sessionNames");
    m_usageEnabled = flag(m_defaults, "usageEnabled", true);
    m_approvalsEnabled = flag(m_defaults, "approvalsEnabled", true);
    m_soundOnUsageLimit = flag(m_defaults, "soundOnUsageLimit", true);
    m_hasCompletedFirstRun = flag(m_defaults, "hasCompletedFirstRun", false);
    m_installPingEnabled = flag(m_defaults, "installPingEnabled", true);
    m_installPingSent = flag(m_defaults, "installPingSent", false);
    m_knownAgents = textList(m_defaults, "knownAgents");
}

template <typename Field, typename Value>
void MorvaneSettings::assign(Field &field, const Value &value, const char *key,
                             const QVariant &stored) {
    emit willChange();
    field = value;
    if (stored.isValid()) {
        m_defaults.setValue(keyString(key), stored);
    } else {
        m_defaults.remove(keyString(key));
    }
    emit changed();
}

void MorvaneSettings::setPort(std::uint16_t port) {
    assign(m_port, port, "eventServerPort", QVariant::fromValue<quint64>(port));
}

void MorvaneSettings::setDisplayMode(DisplayTargetMode mode) {
    assign(m_displayMode, mode, "displayMode", rawValue(mode));
}

void MorvaneSettings::setFloatingPosition(FloatingPosition position) {
    assign(m_floatingPosition, position, "floatingPosition", rawValue(position));
}

void MorvaneSettings::setHideOverFullscreen(bool hide) {
    assign(m_hideOverFullscreen, hide, "hideOverFullscreen", hide);
}

void MorvaneSettings::setShowWhenIdle(bool show) {
    assign(m_showWhenIdle, show, "showWhenIdle", show);
}

void MorvaneSettings::setShowMenuBarIcon(bool show) {
    assign(m_showMenuBarIcon, show, "showMenuBarIcon", show);
}

void MorvaneSettings::setSoundEnabled(bool enabled) {
    assign(m_soundEnabled, enabled, "soundEnabled", enabled);
}

void MorvaneSettings::setSoundOnNeedsInput(bool enabled) {
    assign(m_soundOnNeedsInput, enabled, "soundOnNeedsInput", enabled);
}

void MorvaneSettings::setSoundOnDone(bool enabled) {
    assign(m_soundOnDone, enabled, "soundOnDone", enabled);
}

void MorvaneSettings::setShowFableBar(bool show) {
    assign(m_showFableBar, show, "showFableBar", show);
}

void MorvaneSettings::setAutoClearMinutes(int minutes) {
    assign(m_autoClearMinutes, minutes, "autoClearMinutes", minutes);
}

void MorvaneSettings::setSessionNames(const QMap<QString, QString> &names) {
    QVariantMap stored;
    for (auto entry = names.begin(); entry != names.end(); ++entry) {
        stored.insert(entry.key(), entry.value());
    }
    assign(m_sessionNames, names, "sessionNames", stored);
}

void MorvaneSettings::setUsageEnabled(bool enabled) {
    assign(m_usageEnabled, enabled, "usageEnabled", enabled);
}

void MorvaneSettings::setApprovalsEnabled(bool enabled) {
    assign(m_approvalsEnabled, enabled, "approvalsEnabled", enabled);
}

void MorvaneSettings::setSoundOnUsageLimit(bool enabled) {
    assign(m_soundOnUsageLimit, enabled, "soundOnUsageLimit", enabled);
}

void MorvaneSettings::setHasCompletedFirstRun(bool completed) {
    assign(m_hasCompletedFirstRun, completed, "hasCompletedFirstRun", completed);
}

void MorvaneSettings::setInstallPingEnabled(bool enabled) {
    assign(m_installPingEnabled, enabled, "installPingEnabled", enabled);
}

void MorvaneSettings::setInstallPingSent(bool sent) {
    assign(m_installPingSent, sent, "installPingSent", sent);
}

void MorvaneSettings::setKnownAgents(const std::optional<QStringList> &agents) {
    assign(m_knownAgents, agents, "knownAgents", agents ? QVariant(*agents) : QVariant());
}

std::optional<QString> MorvaneSettings::name(const QString &cwd) const {
    const auto found = m_sessionNames.constFind(cwd);
    return cwd.isEmpty() || found == m_sessionNames.constEnd() ? std::nullopt
                                                               : std::optional(*found);
}

void MorvaneSettings::setName(const std::optional<QString> &name, const QString &cwd) {
    if (cwd.isEmpty()) {
        return;
    }
    QMap<QString, QString> names = m_sessionNames;
    if (name && !name->isEmpty()) {
        names.insert(cwd, *name);
    } else {
        names.remove(cwd);
    }
    setSessionNames(names);
}

} // namespace morvane
