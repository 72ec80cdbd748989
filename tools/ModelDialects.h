#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// The dialects that agents speak to their models. What is said is `ModelReply`'s.
namespace morvane::ModelDialects {

/// A complete answer; a stream is whole too.
struct Answer {
    std::string contentType;
    std::string body;
    int status = 200;
    std::string headers = {}; ///< further ones, each with its line's end
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
