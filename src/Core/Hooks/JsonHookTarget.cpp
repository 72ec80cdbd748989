#include "Core/Hooks/JsonHookTarget.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Ground/RegularFile.h"
#include "Core/Hooks/JsonHooksEditor.h"
#include "Core/Hooks/StatusLineEntry.h"
#include "Core/Settings/Defaults.h"

#include <QDateTime>
#include <QFileInfo>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <tuple>

namespace morvane {

using nlohmann::json;

namespace {

/// The key of a map from agents to when we last changed their hooks, in ms since 1970.
constexpr QLatin1String changesKey("hooksChanged");

} // namespace

JsonHookTarget::JsonHookTarget(const JsonHooks &place, AgentSettingsFile file,
                               const AgentAdapter &adapter, HookPlan plan, ForwarderScripts scripts,
                               Defaults &defaults)
    : m_path(place.settingsPath), m_hooksKey(place.hooksKey), m_adapter(adapter), m_plan(plan),
      m_scripts(std::move(scripts)), m_settings(std::move(file), ours()), m_defaults(defaults) {}

OurJson JsonHookTarget::ours() const {
    const auto roundTrip = [this](json root) {
        putInto(root);
        takeOutOf(root);
        return root;
    };
    return {
        .isInstalled = [this](const json &root) { return hasTracesIn(root); },
        .roundTrip = roundTrip,
        .others =
            [this, roundTrip](json root) {
                if (const auto mute = m_adapter.notificationMute()) {
                    root.erase(mute->key.toStdString());
                }
                return roundTrip(std::move(root));
            },
    };
}

void JsonHookTarget::putInto(json &root) const {
    JsonHooksEditor::install(root, m_hooksKey, m_plan);
    const json extraKeys = m_adapter.extraRootKeys();
    for (const auto &extra : extraKeys.items()) {
        root.emplace(extra.key(), extra.value());
    }
    if (const auto feed = m_adapter.statusLineFeed()) {
        StatusLineEntry::install(root, *feed);
    }
}

/// False where there is no map of hooks.
bool JsonHookTarget::takeOutOf(json &root) const {
    const bool found = JsonHooksEditor::uninstall(root, m_hooksKey);
    if (const auto feed = m_adapter.statusLineFeed()) {
        StatusLineEntry::uninstall(root, *feed);
    }
    return found;
}

/// The scripts come first: a hook whose script is missing would be an error in the agent.
Result<void> JsonHookTarget::install() const {
    if (const auto written = m_scripts.writeHookScript(); !written) {
        return written;
    }
    if (m_adapter.statusLineFeed()) {
        if (const auto written = m_scripts.writeStatusLineScript(); !written) {
            return written;
        }
    }
    const bool isReviewed = m_adapter.reviewsPath().has_value();
    bool changes = false;
    const auto edited = m_settings.editOrCreate([&](json &root) {
        const json before = isReviewed ? root : json();
        putInto(root);
        changes = changes || root != before;
        return true;
    });
    if (edited && isReviewed && changes) {
        noteChange();
    }
    return edited;
}

/// Notes the file's time after our write: others may rewrite it without changing a hook.
void JsonHookTarget::noteChange() const {
    QVariantMap changes = m_defaults.value(changesKey).toMap();
    changes.insert(QString::fromLatin1(rawValue(m_adapter.kind())),
                   QFileInfo(m_path).lastModified().toMSecsSinceEpoch());
    m_defaults.setValue(changesKey, changes);
}

/// The noted time, or the file's modification time where none was noted.
QDateTime JsonHookTarget::lastChange() const {
    const QVariantMap changes = m_defaults.value(changesKey).toMap();
    const QVariant noted = changes.value(QString::fromLatin1(rawValue(m_adapter.kind())));
    return noted.isValid() ? QDateTime::fromMSecsSinceEpoch(noted.toLongLong())
                           : QFileInfo(m_path).lastModified();
}

/// The forwarder stays, since other agents may use it.
Result<void> JsonHookTarget::uninstall() const {
    bool found = false;
    const auto edited = m_settings.edit([&](json &root) { return found = takeOutOf(root); });
    if (found && m_adapter.statusLineFeed() && edited) {
        ForwarderScripts::removeStatusLineScript();
    }
    return edited;
}

void JsonHookTarget::renew() const {
    std::ignore = m_scripts.writeHookScript();
    if (m_adapter.statusLineFeed()) {
        std::ignore = m_scripts.writeStatusLineScript();
    }
    if (hasStaleEntries()) {
        std::ignore = install();
    }
}

bool JsonHookTarget::isInstalled() const {
    const auto root = m_settings.read();
    return root && JsonHooksEditor::isInstalled(*root, m_hooksKey);
}

const AgentAdapter *JsonHookTarget::presentForm() const {
    const auto root = m_settings.read(HookPlan::hookScriptName);
    const auto forms = AgentRegistry::forms(m_adapter.kind());
    const auto found = std::ranges::find_if(forms, [&](const AgentAdapter *form) {
        return root && JsonHooksEditor::areOfThisRelease(*root, m_hooksKey, m_plan.of(*form));
    });
    return found != forms.end() ? *found : nullptr;
}

bool JsonHookTarget::hasTraces() const {
    const auto root = m_settings.read();
    return root && hasTracesIn(*root);
}

bool JsonHookTarget::hasTracesIn(const json &root) const {
    const auto feed = m_adapter.statusLineFeed();
    return JsonHooksEditor::isInstalled(root, m_hooksKey) ||
           (feed && StatusLineEntry::isInstalled(root, *feed));
}

/// Removes the status line even where there is no map of hooks.
Result<void> JsonHookTarget::removeTraces() const {
    return m_settings.edit([&](json &root) {
        takeOutOf(root);
        return true;
    });
}

bool JsonHookTarget::hasStaleEntries() const {
    const auto root = m_settings.read();
    return root && isStale(*root);
}

bool JsonHookTarget::isStale(const json &root) const {
    const auto feed = m_adapter.statusLineFeed();
    return JsonHooksEditor::hasStaleEntries(root, m_hooksKey, m_plan) ||
           (feed && StatusLineEntry::needsRepair(root, *feed));
}

Health JsonHookTarget::health() const {
    const auto root = m_settings.read();
    if (!root) {
        return {.settingsReadable = false};
    }
    Health health{.notificationsSuppressed = isMuted(*root)};
    if (!JsonHooksEditor::isInstalled(*root, m_hooksKey)) {
        return health;
    }
    health.hooksPresent = true;
    health.entriesCurrent = !JsonHooksEditor::hasStaleEntries(*root, m_hooksKey, m_plan);
    health.scriptExecutable = ForwarderScripts::isHookScriptExecutable();
    if (const auto feed = m_adapter.statusLineFeed()) {
        health.statusLine =
            StatusLineEntry::health(*root, *feed, ForwarderScripts::isStatusLineScriptExecutable());
    }
    health.awaitsReview = awaitsReview();
    health.hooksSwitchedOff = areHooksOff(*root);
    return health;
}

bool JsonHookTarget::areHooksOff(const json &root) const {
    const auto isOff = [&](const HooksSwitch &each) {
        const json *value = &root;
        for (const QString &key : each.keys) {
            const auto found = value->find(key.toStdString());
            if (found == value->end()) {
                return false;
            }
            value = &*found;
        }
        return *value == each.off;
    };
    return std::ranges::any_of(m_adapter.hooksSwitches(), isOff);
}

/// The agent records what its person has agreed to, under the path of the settings file. If it has
/// recorded nothing since our last change of that file, nobody can have agreed to the new hooks.
bool JsonHookTarget::awaitsReview() const {
    constexpr qsizetype longestReviews = 1'000'000;
    const auto reviews = m_adapter.reviewsPath();
    if (!reviews) {
        return false;
    }
    const QByteArray text = RegularFile::head(*reviews, longestReviews).value_or(QByteArray());
    return !text.contains(m_path.toUtf8() + ':') ||
           QFileInfo(*reviews).lastModified() < lastChange();
}

bool JsonHookTarget::isMuted(const json &root) const {
    const auto mute = m_adapter.notificationMute();
    return mute && root.value(mute->key.toStdString(), json()) == mute->value.toStdString();
}

Result<void> JsonHookTarget::setNotificationsSuppressed(bool suppressed) const {
    const auto mute = m_adapter.notificationMute();
    if (!mute) {
        return {};
    }
    const std::string key = mute->key.toStdString();
    if (!suppressed) {
        return m_settings.edit([&](json &root) { return root.erase(key) > 0; });
    }
    return m_settings.editOrCreate([&](json &root) {
        root[key] = mute->value.toStdString();
        return true;
    });
}

bool JsonHookTarget::hasSuppressedNotifications() const {
    const auto root = m_adapter.notificationMute() ? m_settings.read() : std::nullopt;
    const auto origin = root && isMuted(*root) ? m_settings.origin() : std::nullopt;
    return origin && !isMuted(*origin);
}

Result<void> JsonHookTarget::returnNotifications() const {
    const auto mute = m_adapter.notificationMute();
    const auto origin = m_settings.origin();
    if (!mute || !origin) {
        return {};
    }
    const std::string key = mute->key.toStdString();
    return m_settings.edit([&](json &root) {
        root.erase(key);
        if (const auto before = origin->find(key); before != origin->end()) {
            root[key] = *before;
        }
        return true;
    });
}

} // namespace morvane
