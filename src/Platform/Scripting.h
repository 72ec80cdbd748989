#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace morvane {

/// Runs scripts that control other applications. Main thread.
class Scripting {
public:
    Scripting() = default;
    Scripting(const Scripting &) = delete;
    Scripting &operator=(const Scripting &) = delete;
    virtual ~Scripting() = default;

    /// Runs the script later, on the main thread, after those given before it. `finished` gets the
    /// text that the script returns; none if it doesn't compile, fails or returns no text.
    virtual void run(const QString &source,
                     std::function<void(const std::optional<QString> &)> finished) = 0;
};

} // namespace morvane
