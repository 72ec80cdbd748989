#pragma once

#include "Platform/HttpsClient.h"

#include <vector>

namespace morvane {

/// A network on which the test answers.
class FakeHttpsClient : public HttpsClient {
public:
    Task send(const HttpsRequest &request, Finished finished) override {
        requests.push_back({request, std::move(finished)});
        return Task([this, index = requests.size() - 1] { requests[index].finished = nullptr; });
    }

    /// Answers the last request, unless it was cancelled.
    void answer(const std::optional<HttpsAnswer> &answer) {
        if (const auto finished = requests.back().finished) {
            finished(answer);
        }
    }

    struct Asked {
        HttpsRequest request;
        Finished finished;
    };
    std::vector<Asked> requests;
};

} // namespace morvane
