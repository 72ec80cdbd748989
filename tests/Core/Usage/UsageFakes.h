#pragma once

#include "Platform/SecretStore.h"
#include "Platform/ToolDialogue.h"
#include "Support/FakeHttpsClient.h"

#include <QStringList>

namespace morvane {

/// Gives the same answer to every question, and records the questions.
class FakeSecretStore : public SecretStore {
public:
    Answer secret(const QString &service, Seconds limit) override {
        asked << QStringLiteral("%1 %2").arg(service).arg(limit.count());
        return answer;
    }

    Answer answer = Missing{};
    QStringList asked;
};

/// A program that says the test's pieces, each once the one before has been replied to.
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
