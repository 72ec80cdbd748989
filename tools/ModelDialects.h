#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// The dialects in which agents talk to their models. `ModelReply` decides what is said.
namespace morvane::ModelDialects {

/// A complete answer, even if it is a stream.
struct Answer {
    std::string contentType;
    std::string body;
    int status = 200;
    std::string headers = {}; ///< further ones, each with a line end
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
