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
        left,      ///< the program has ended or closed its output
        timedOut,
    };

    struct Reply {
        QByteArray words; ///< to send at once; may be empty
        bool concludes = false;
    };

    /// Starts the program, sends `opening`, and calls `reply` on each piece of its output until one
    /// side ends the dialogue or `patience` has passed. Then it ends the program and what that has
    /// started, which takes up to 0.6 seconds more. Standard error is dropped. Blocks; safe from
    /// any thread but the main one. `reply` is called on the calling thread.
    virtual End hold(const Tools::Command &command, const QByteArray &opening,
                     const std::function<Reply(const QByteArray &heard)> &reply,
                     Seconds patience) = 0;
};

/// For a machine that starts no program.
class NullToolDialogue final : public ToolDialogue {
public:
    End hold(const Tools::Command &, const QByteArray &,
             const std::function<Reply(const QByteArray &)> &, Seconds) override {
        return End::notStarted;
    }
};

} // namespace morvane
