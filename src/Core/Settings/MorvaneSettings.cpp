#include "Core/Settings/MorvaneSettings.h"

#include "Core/Settings/Defaults.h"
#include "Core/Settings/PanelKey.h"
#include "Core/Settings/SettingValue.h"

#include <QUuid>

#include <algorithm>

namespace morvane {

namespace {

constexpr const char *tokenKey = "eventToken";
constexpr const char *legacyDomain = "design.veku.morvane";
constexpr std::uint16_t standardPort = 47615;

QString keyString(const char *key) {
    return QString::fromLatin1(key);
}

/// A row for a key that is no property: it is retired, or read and written elsewhere.
struct Key {
    const char *key;

    void read(MorvaneSettings &) const {}
    bool store(const MorvaneSettings &, const void *) const { return false; }
};

/// A row for a property, with the value that it has where none is stored.
template <typename Property, typename Value>
struct Setting {
    const char *key;
    Property MorvaneSettings::*property;
    Value fallback;

    void read(MorvaneSettings &settings) const {
        Value value = fallback;
        SettingValue::read(settings.defaults().value(keyString(key)), value);
        settings.*property = value;
    }

    /// Does nothing, and returns false, if the property at the address is another one.
    bool store(const MorvaneSettings &settings, const void *address) const {
        if (&(settings.*property) != address) {
            return false;
        }
        const Value &value = settings.*property;
        const QVariant stored = SettingValue::stored(value);
        if (stored.isValid()) {
            settings.defaults().setValue(keyString(key), stored);
        } else {
            settings.defaults().remove(keyString(key));
        }
        return true;
    }
};

template <typename Property, typename Value>
Setting(const char *, Property MorvaneSettings::*, Value) -> Setting<Property, Value>;

QString makeToken() {
    const auto uuid = [] { return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(); };
    return uuid() + uuid();
}

/// An empty token would let every local program in, and the scripts hold it without any escapes.
bool isToken(const QString &text) {
    const auto isPlain = [](QChar c) {
        return c == u'-' || (c.unicode() < 0x80 && c.isLetterOrNumber());
    };
    return !text.isEmpty() && std::ranges::all_of(text, isPlain);
}

} // namespace

template <typename Visit>
void MorvaneSettings::forEachRow(Visit visit) {
    using S = MorvaneSettings;
    visit(Key{tokenKey});
    visit(Setting{"eventServerPort", &S::m_port, standardPort});
    visit(Setting{"displayMode", &S::m_displayMode, DisplayTargetMode::all});
    visit(Setting{"floatingPosition", &S::m_floatingPosition, FloatingPosition::topCenter});
    visit(Setting{"hideOverFullscreen", &S::m_hideOverFullscreen, false});
    visit(Setting{"showWhenIdle", &S::m_showWhenIdle, false});
    visit(Setting{"showMenuBarIcon", &S::m_showMenuBarIcon, true});
    visit(Setting{"soundEnabled", &S::m_soundEnabled, false});
    visit(Setting{"soundOnNeedsInput", &S::m_soundOnNeedsInput, true});
    visit(Setting{"soundOnDone", &S::m_soundOnDone, false});
    visit(Setting{"soundOnUsageLimit", &S::m_soundOnUsageLimit, true});
    visit(Key{"usageThreshold"});
    visit(Setting{"showFableBar", &S::m_showFableBar, true});
    visit(Setting{"autoClearMinutes", &S::m_autoClearMinutes, 10});
    visit(Setting{"sessionNames", &S::m_sessionNames, QMap<QString, QString>()});
    visit(Setting{"usageEnabled", &S::m_usageEnabled, true});
    visit(Setting{"approvalsEnabled", &S::m_approvalsEnabled, true});
    visit(Key{"usageAlertsEnabled"});
    visit(Setting{"hasCompletedFirstRun", &S::m_hasCompletedFirstRun, false});
    visit(Key{"completedHistory"});
    visit(Setting{"installPingEnabled", &S::m_installPingEnabled, true});
    visit(Setting{"installPingSent", &S::m_installPingSent, false});
    visit(Setting{"knownAgents", &S::m_knownAgents, std::optional<QStringList>()});
    visit(Setting{"panelKey", &S::m_panelKey, PanelKey::usual()});
    visit(Key{"hooksChanged"});
    visit(Key{"lastWeeklyUtilization"});
    visit(Key{"lastWeeklyResetAt"});
    visit(Key{"SUEnableAutomaticChecks"});
    visit(Key{"SUAutomaticallyUpdate"});
    visit(Key{"SULastCheckTime"});
    visit(Key{"SUSkippedVersion"});
    visit(Key{"SUSendProfileInfo"});
    visit(Key{"SUHasLaunchedBefore"});
    visit(Key{"SUUpdateGroupIdentifier"});
    visit(Key{"SULastProfileSubmitDate"});
}

MorvaneSettings::MorvaneSettings(Defaults &defaults) : m_defaults(defaults) {
    migrateLegacyDefaults();
    SettingValue::read(m_defaults.value(keyString(tokenKey)), m_eventToken);
    if (!isToken(m_eventToken)) {
        m_eventToken = makeToken();
        m_defaults.setValue(keyString(tokenKey), m_eventToken);
    }
    readAll();
}

MorvaneSettings &MorvaneSettings::shared() {
    static MorvaneSettings settings(Defaults::standard());
    return settings;
}

const QStringList &MorvaneSettings::allKeys() {
    static const QStringList keys = [] {
        QStringList result;
        forEachRow([&](const auto &row) { result.append(keyString(row.key)); });
        return result;
    }();
    return keys;
}

bool MorvaneSettings::removeStored() {
    return m_defaults.removeForGood(allKeys());
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
    forEachRow([&](const auto &row) { row.read(*this); });
}

void MorvaneSettings::store(const void *property) {
    bool hasRow = false;
    forEachRow([&](const auto &row) { hasRow = row.store(*this, property) || hasRow; });
    Q_ASSERT_X(hasRow, "MorvaneSettings", "the property has no row in the table");
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

#include "moc_MorvaneSettings.cpp"
