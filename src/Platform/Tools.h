#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace morvane {

/// Runs other programs' command lines for a moment. Main thread, which never waits for one.
class Tools {
public:
    Tools() = default;
    Tools(const Tools &) = delete;
    Tools &operator=(const Tools &) = delete;
    virtual ~Tools() = default;

    struct Command {
        QString program; ///< an absolute path
        QStringList arguments;
        /// Added to the environment of this program.
        QProcessEnvironment environment;
    };

    /// Hears what the program has put out, up to 64 KiB of it; none when it could not be started,
    /// ended otherwise than with status 0, or had to be ended.
    using Finished = std::function<void(const std::optional<QByteArray> &output)>;

    /// Starts the program, with nothing to read. After three seconds it and what it has started are
    /// ended. `finished` is called once, on the main thread, at the earliest when this call has
    /// returned, unless this object has gone by then.
    virtual void run(const Command &command, Finished finished) = 0;
};

} // namespace morvane
