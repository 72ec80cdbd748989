#pragma once

#include "Core/HookTarget.h"

#include <QString>

namespace morvane {

/// The place in an agent that can't be connected: there is nothing there, and nothing can be put
/// there.
class UnsupportedTarget : public HookTarget {
public:
    /// `refusal` is what `install` fails with.
    explicit UnsupportedTarget(QString refusal) : m_refusal(std::move(refusal)) {}

    std::optional<Failure> install() const override { return Failure{m_refusal}; }
    std::optional<Failure> uninstall() const override { return std::nullopt; }
    void renew() const override {}
    bool isInstalled() const override { return false; }
    bool hasStaleEntries() const override { return false; }
    Health health() const override { return {}; }

private:
    QString m_refusal;
};

} // namespace morvane
