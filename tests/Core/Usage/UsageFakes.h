#pragma once

#include "Platform/HttpsClient.h"
#include "Platform/SecretStore.h"
#include "Platform/ToolDialogue.h"

#include <QStringList>

#include <vector>

namespace morvane {

/// Gives the same answer to whoever asks, and counts them.
class FakeSecretStore : public SecretStore {
public:
    Answer secret(const QString &service, Seconds limit) override {
        asked << QStringLiteral("%1 %2").arg(service).arg(limit.count());
        return answer;
    }

    Answer answer = Failure{};
    QStringList asked;
};

/// A network on which the test answers.
class FakeHttpsClient : public HttpsClient {
public:
    Task get(const HttpsRequest &request, Finished finished) override {
        requests.push_back({request, std::move(finished)});
        return Task([this, index = requests.size() - 1] { requests[index].finished = nullptr; });
    }

    /// Answers the last request, unless nobody waits for that any more.
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

/// A program that says what the test has it say, one piece after each thing that is said to it.
class FakeDialogue : public ToolDialogue {
public:
    End hold(const Tools::Command &command, const QByteArray &,
             const std::function<Reply(const QByteArray &)> &reply, Seconds) override {
        commands.push_back(command);
        for (const QByteArray &piece : says) {
            if (reply(piece).concludes) {
                return End::concluded;
            }
        }
        return end;
    }

    std::vector<QByteArray> says;
    End end = End::left;
    std::vector<Tools::Command> commands;
};

} // namespace morvane
