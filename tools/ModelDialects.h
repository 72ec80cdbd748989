#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// What a model would answer in the dialects that agents speak to theirs. This one does what it is
/// told: asked to "Run `COMMAND`" it calls the agent's shell with the command, and once it has the
/// result, or has no shell to call, it says a few words.
namespace morvane::ModelDialects {

/// The body of a complete answer; a stream is whole too.
struct Answer {
    std::string contentType;
    std::string body;
};

/// Anthropic's messages.
Answer messages(const nlohmann::json &request);

/// OpenAI's responses, always as a stream.
Answer responses(const nlohmann::json &request);

/// OpenAI's chat completions.
Answer chatCompletions(const nlohmann::json &request);

/// Google's content generation.
Answer generateContent(const nlohmann::json &request, bool isStream);

} // namespace morvane::ModelDialects
