#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace morvane {

/// What a model answers, whichever dialect it speaks. This one does what it is told. Asked to
///
///     Run `COMMAND`           it calls the agent's shell
///     Run twice `COMMAND`     it calls it twice at once, where the dialect is OpenAI's older one
///     Delegate `COMMAND`      it has a subagent run the command
///     Ask `QUESTION`          it has the agent ask the person, who can say red or blue
///     Fail with `STATUS`      it refuses, with this status of HTTP
///     Say `WORDS`             it says these words
///     Use up `PERCENT`        it says how much of the person's limits is used up
///
/// by the agent's own tools. If the agent offers no tool for it, or a tool has given its result, it
/// says a few words.
struct ModelReply {
    std::string words;
    std::string tool; ///< to be called instead; none when empty
    nlohmann::json arguments;
    bool callsTwice = false;
    int failure = 0; ///< a status of HTTP; 0 for none
    int used = 0;    ///< percent of the person's limits; 0 where that isn't told

    /// `asked` is what the person, or the agent that delegates, has said last; empty when
    /// something else came after it.
    static ModelReply to(const std::string &asked, const std::vector<std::string> &tools);
};

} // namespace morvane
