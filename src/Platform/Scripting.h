#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace morvane {

/// Runs scripts by which an application can be told what to do. Main thread.
class Scripting {
public:
    Scripting() = default;
    Scripting(const Scripting &) = delete;
    Scripting &operator=(const Scripting &) = delete;
    virtual ~Scripting() = default;

    /// Runs the script later, on the main thread, one after the other. `finished` hears the text
    /// that it gives; none where it could not be compiled, ended in an error or gives no text.
    virtual void run(const QString &source,
                     std::function<void(const std::optional<QString> &)> finished) = 0;
};

} // namespace morvane
