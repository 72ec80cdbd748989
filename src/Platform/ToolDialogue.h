#pragma once

#include "Platform/Time.h"
#include "Platform/Tools.h"

#include <QByteArray>

#include <functional>

namespace morvane {

/// Talks to a program of this machine over its standard input and output.
class ToolDialogue {
public:
    ToolDialogue() = default;
    ToolDialogue(const ToolDialogue &) = delete;
    ToolDialogue &operator=(const ToolDialogue &) = delete;
    virtual ~ToolDialogue() = default;

    enum class End {
        notStarted,
        concluded, ///< by us
        left,      ///< by the program, which has ended or closed its output
        timedOut,
    };

    struct Reply {
        QByteArray words; ///< to say at once; may be empty
        bool concludes = false;
    };

    /// Starts the program, says `opening`, and answers what it puts out, piece by piece, until one
    /// side ends it or `patience` has passed; then the program and what it has started are ended,
    /// which takes up to 0.6 seconds more. What it writes to its standard error is dropped. Blocks;
    /// safe from any thread but the main one. `reply` is called on this thread.
    virtual End hold(const Tools::Command &command, const QByteArray &opening,
                     const std::function<Reply(const QByteArray &heard)> &reply,
                     Seconds patience) = 0;
};

/// That of a machine that starts no program.
class NullToolDialogue final : public ToolDialogue {
public:
    End hold(const Tools::Command &, const QByteArray &,
             const std::function<Reply(const QByteArray &)> &, Seconds) override {
        return End::notStarted;
    }
};

} // namespace morvane
