#pragma once

#include "Core/Settings/Defaults.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <nlohmann/json.hpp>

namespace morvane {

/// Defaults in a folder of the test's own, and what their file holds.
class DefaultsFixture : public testing::Test {
protected:
    using json = nlohmann::json;

    Defaults load() const { return Defaults(home.path("defaults"), "test.domain"); }

    void store(const json &values) { home.write(file, QByteArray::fromStdString(values.dump())); }

    json stored(Defaults &defaults) const {
        defaults.flush();
        const QByteArray text = home.read(file);
        return json::parse(text.begin(), text.end(), nullptr, false);
    }

    TemporaryHome home;
    const QString file = "defaults/test.domain.json";
    const QString legacyFile = "defaults/design.veku.morvane.json";
};

} // namespace morvane
