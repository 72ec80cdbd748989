#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace morvane {

/// What is to become of a settings file.
struct SettingsChange {
    QByteArray content;

    /// False where the change touches nothing but what is ours, so that an older backup stays.
    bool backsUp = true;

    /// Whether what was read back after the write is what was meant.
    std::function<bool(const QByteArray &written)> verify;

    /// What to say when it isn't.
    QString mismatch;
};

} // namespace morvane
