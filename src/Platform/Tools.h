#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace morvane {

/// Runs short command lines of other programs. Main thread, which never waits for one.
class Tools {
public:
    Tools() = default;
    Tools(const Tools &) = delete;
    Tools &operator=(const Tools &) = delete;
    virtual ~Tools() = default;

    struct Command {
        QString program; ///< an absolute path
        QStringList arguments;
        /// Added to this process's own environment.
        QProcessEnvironment environment;
    };

    /// Gets up to 64 KiB of the program's output; none if it couldn't be started, didn't exit with
    /// status 0, or had to be killed.
    using Finished = std::function<void(const std::optional<QByteArray> &output)>;

    /// Starts the program with an empty standard input. After three seconds it and what it has
    /// started are killed. `finished` is called once, on the main thread, after this call has
    /// returned, unless this object is gone by then.
    virtual void run(const Command &command, Finished finished) = 0;
};

} // namespace morvane
