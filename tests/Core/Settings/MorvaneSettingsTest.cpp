#include "Core/Settings/MorvaneSettings.h"

#include "Core/Settings/DefaultsFixture.h"
#include "Core/Settings/PanelKey.h"

#include <QRegularExpression>

#include <functional>
#include <limits>
#include <map>
#include <string>

namespace morvane {
namespace {

using nlohmann::json;

/// Makes a function that copies one property from some settings to others.
constexpr auto taking = [](auto get, auto set) {
    return [=](const MorvaneSettings &from, MorvaneSettings &to) { (to.*set)((from.*get)()); };
};

/// All properties by the keys under which they are stored.
const auto &properties() {
    using S = MorvaneSettings;
    static const std::map<std::string, std::function<void(const S &, S &)>> result{
        {"eventServerPort", taking(&S::port, &S::setPort)},
        {"displayMode", taking(&S::displayMode, &S::setDisplayMode)},
        {"floatingPosition", taking(&S::floatingPosition, &S::setFloatingPosition)},
        {"hideOverFullscreen", taking(&S::hideOverFullscreen, &S::setHideOverFullscreen)},
        {"showWhenIdle", taking(&S::showWhenIdle, &S::setShowWhenIdle)},
        {"showMenuBarIcon", taking(&S::showMenuBarIcon, &S::setShowMenuBarIcon)},
        {"soundEnabled", taking(&S::soundEnabled, &S::setSoundEnabled)},
        {"soundOnNeedsInput", taking(&S::soundOnNeedsInput, &S::setSoundOnNeedsInput)},
        {"soundOnDone", taking(&S::soundOnDone, &S::setSoundOnDone)},
        {"showFableBar", taking(&S::showFableBar, &S::setShowFableBar)},
        {"autoClearMinutes", taking(&S::autoClearMinutes, &S::setAutoClearMinutes)},
        {"sessionNames", taking(&S::sessionNames, &S::setSessionNames)},
        {"usageEnabled", taking(&S::usageEnabled, &S::setUsageEnabled)},
        {"approvalsEnabled", taking(&S::approvalsEnabled, &S::setApprovalsEnabled)},
        {"soundOnUsageLimit", taking(&S::soundOnUsageLimit, &S::setSoundOnUsageLimit)},
        {"hasCompletedFirstRun", taking(&S::hasCompletedFirstRun, &S::setHasCompletedFirstRun)},
        {"installPingEnabled", taking(&S::installPingEnabled, &S::setInstallPingEnabled)},
        {"installPingSent", taking(&S::installPingSent, &S::setInstallPingSent)},
        {"knownAgents", taking(&S::knownAgents, &S::setKnownAgents)},
        {"panelKey", taking(&S::panelKey, &S::setPanelKey)},
    };
    return result;
}

class SettingsTest : public DefaultsFixture {
protected:
    /// The value that each property has when these values are stored.
    json takenFor(json values) {
        values["eventToken"] = "T";
        store(values);
        Defaults defaults = load();
        MorvaneSettings settings(defaults);
        EXPECT_EQ(stored(defaults), values);
        for (const auto &[key, give] : properties()) {
            give(settings, settings);
        }
        return stored(defaults);
    }
};

const json everyOther = json::parse(R"({
    "eventServerPort": 65535, "displayMode": "externalOnly", "floatingPosition": "topRight",
    "hideOverFullscreen": true, "showWhenIdle": true, "showMenuBarIcon": false,
    "soundEnabled": true, "soundOnNeedsInput": false, "soundOnDone": true, "showFableBar": false,
    "autoClearMinutes": 33, "sessionNames": {"/a": "A"}, "usageEnabled": false,
    "approvalsEnabled": false, "soundOnUsageLimit": false, "hasCompletedFirstRun": true,
    "installPingEnabled": false, "installPingSent": true, "knownAgents": ["claude", "kimi"],
    "panelKey": "Ctrl+Alt+3:+", "eventToken": "T"})");

TEST_F(SettingsTest, SurviveARestartEachUnderAKeyOfItsOwn) {
    store(everyOther);
    Defaults others = load();
    const MorvaneSettings from(others);
    for (const auto &[key, give] : properties()) {
        json expected{{"eventToken", "T"}};
        store(expected);
        Defaults defaults = load();
        MorvaneSettings to(defaults);
        give(from, to);
        expected[key] = everyOther[key];
        EXPECT_EQ(stored(defaults), expected) << key;
    }
}

TEST_F(SettingsTest, TakeNothingOfTheWrongType) {
    const json standard = takenFor(json::object());
    const auto expectStandard = [&](const json &values) {
        EXPECT_EQ(takenFor(values), standard) << values;
    };
    const std::pair<std::string, json> wrong[] = {
        {"eventServerPort", -1},
        {"eventServerPort", 70000},
        {"autoClearMinutes", 3'000'000'000},
        {"autoClearMinutes", std::numeric_limits<quint64>::max()},
        {"displayMode", "All"},
        {"sessionNames", {{"/a", "A"}, {"/b", nullptr}}},
        {"knownAgents", json::array({"claude", 1})}};
    for (const auto &[key, value] : wrong) {
        expectStandard(json{{key, value}});
    }
    const QByteArray noKeys =
        "Super+G|Shift+34:G|Shift+Super+34:G|Super+0:G|Super+248:G|Super+:G|"
        "Super+-34:G|Super+0034:G|Super+34G|Super+34:|Super+34:G\n|"
        "Super+34:\u202eG|Super+34:Keyboard Brightness Up and Down !|Ctrl+6:|Ctrl+6:%";
    for (const QByteArray &noKey : noKeys.split('|')) {
        expectStandard(json{{"panelKey", noKey.toStdString()}});
    }
    // Every key that can be chosen is read back at the next start, and no other.
    for (const char *symbol : {"G", "Keyboard Brightness Up", "\u202eG"}) {
        const HotKey key{.keyCode = 34, .symbol = symbol, .super = true};
        EXPECT_EQ(PanelKey::panelKey(PanelKey::rawValue(key)).has_value(), !PanelKey::fault(key));
    }
    const json oneOfEach[] = {nullptr, true, 1U, 1.5, "x", json::array({"x"}), {{"x", "x"}}};
    for (const json &value : oneOfEach) {
        json values = json::object();
        for (const auto &[key, give] : properties()) {
            if (value.type() != everyOther[key].type()) {
                values[key] = value;
            }
        }
        expectStandard(values);
    }
}

TEST_F(SettingsTest, MakeTheirTokenOnce) {
    const QString uuid = "[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}";
    const QRegularExpression pattern("^" + uuid + uuid + "$");
    for (const json &unusable : {json::object(), json{{"eventToken", 5}}, json{{"eventToken", ""}},
                                 json{{"eventToken", "A'; id"}}, json{{"eventToken", "é"}}}) {
        store(unusable);
        Defaults first = load();
        const QString token = MorvaneSettings(first).eventToken();
        EXPECT_TRUE(pattern.match(token).hasMatch());
        EXPECT_EQ(stored(first), (json{{"eventToken", token.toStdString()}}));
        Defaults second = load();
        EXPECT_EQ(MorvaneSettings(second).eventToken(), token);
    }
}

TEST_F(SettingsTest, TakeOverWhatTheFormerIdentifierStored) {
    const json legacy{{"eventToken", "OLD"}, {"eventServerPort", 50000}, {"other", {{"x", 1.5}}}};
    home.write(legacyFile, QByteArray::fromStdString(legacy.dump()));
    store({{"soundEnabled", true}});
    Defaults defaults = load();
    const MorvaneSettings settings(defaults);
    EXPECT_EQ(settings.eventToken(), "OLD");
    json expected = legacy;
    expected["soundEnabled"] = true;
    EXPECT_EQ(stored(defaults), expected);
    EXPECT_EQ(json::parse(home.read(legacyFile).toStdString()), legacy);

    // Not once there is a token, nor when there is nothing to take over.
    store({{"eventToken", "T"}});
    Defaults current = load();
    EXPECT_EQ(MorvaneSettings(current).port(), 47615);
    home.write(legacyFile, "broken");
    store(json::object());
    Defaults empty = load();
    EXPECT_EQ(MorvaneSettings(empty).eventToken().size(), 72);
}

TEST_F(SettingsTest, TellANeverMadeListFromAnEmptyOne) {
    store({{"eventToken", "T"}, {"knownAgents", json::array()}});
    Defaults defaults = load();
    MorvaneSettings settings(defaults);
    EXPECT_EQ(settings.knownAgents(), QStringList());
    settings.setKnownAgents({});
    EXPECT_EQ(stored(defaults), (json{{"eventToken", "T"}}));
}

TEST_F(SettingsTest, AnnounceAChangeBeforeAndAfterItAndAnEqualValueToo) {
    Defaults defaults = load();
    MorvaneSettings settings(defaults);
    QStringList seen;
    const auto note = [&](const char *when) {
        seen.append(QString(when) + (settings.showWhenIdle() ? " on" : " off"));
    };
    QObject::connect(&settings, &MorvaneSettings::willChange, &settings, [&] { note("before"); });
    QObject::connect(&settings, &MorvaneSettings::changed, &settings, [&] { note("after"); });
    settings.setShowWhenIdle(true);
    EXPECT_EQ(seen, (QStringList{"before off", "after on"}));
    settings.setPort(settings.port());
    EXPECT_EQ(seen.last(), "after on");
    EXPECT_EQ(seen.size(), 4);
    EXPECT_EQ(stored(defaults)["eventServerPort"], 47615);
}

TEST_F(SettingsTest, RemoveEveryKeyButThoseOfOthers) {
    json values = everyOther;
    values.update({{"usageThreshold", 1}, {"completedHistory", 1}, {"lastWeeklyResetAt", 1}});
    values.update({{"SUSkippedVersion", 1}, {"other", 1}});
    store(values);
    Defaults defaults = load();
    MorvaneSettings settings(defaults);
    settings.setAutoClearMinutes(5);
    EXPECT_TRUE(settings.removeStored());
    EXPECT_EQ(stored(defaults), (json{{"other", 1}}));
    EXPECT_EQ(settings.autoClearMinutes(), 5);
    settings.setAutoClearMinutes(6);
    EXPECT_EQ(stored(defaults), (json{{"other", 1}}));
}

TEST_F(SettingsTest, ReachBackNoFurtherThanDatesDo) {
    Defaults defaults = load();
    MorvaneSettings settings(defaults);
    settings.setAutoClearMinutes(std::numeric_limits<int>::max());
    EXPECT_LT(settings.autoClearAfter(), std::chrono::years(200));
}

TEST_F(SettingsTest, LeaveNoFileWhereNothingIsOthers) {
    for (const bool isLink : {false, true}) {
        store({{"eventToken", "T"}});
        home.write(file + ".unreadable", "older");
        if (isLink) {
            QFile::rename(home.path(file), home.path("target"));
            QFile::link(home.path("target"), home.path(file));
        }
        Defaults defaults = load();
        MorvaneSettings settings(defaults);
        settings.setSoundEnabled(false);
        EXPECT_TRUE(settings.removeStored());
        settings.setSoundEnabled(true);
        defaults.flush();
        EXPECT_EQ(QDir(home.path("defaults")).entryList(QDir::Files).size(), isLink ? 1 : 0);
    }
    EXPECT_EQ(home.read("target").simplified(), "{}");
}

} // namespace
} // namespace morvane
