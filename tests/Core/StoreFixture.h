#pragma once

#include "Core/Sessions/SessionStore.h"
#include "Support/CoreWorld.h"
#include "Support/EventBuilder.h"
#include "Support/Printing.h"

namespace morvane {

inline QString nameOf(SessionState state) {
    constexpr std::array names{"working", "needsInput", "done", "failed", "idle"};
    return names[static_cast<std::size_t>(state)];
}

inline QString nameOf(const AgentDecision &decision) {
    constexpr std::array names{"remember", "answer", "allow", "deny", "ask"};
    QString result = names[static_cast<std::size_t>(decision.kind)];
    if (decision.kind == AgentDecision::Kind::allowRemembering) {
        result += decision.scope == AgentDecision::Scope::session ? " session" : " permanent";
    }
    for (auto entry = decision.answers.begin(); entry != decision.answers.end(); ++entry) {
        result += " " + entry.key() + "=" + entry.value();
    }
    return result;
}

/// The ids of what is listed, one behind the other.
QString ids(const auto &list) {
    QString result;
    for (const auto &entry : list) {
        result += entry.id;
    }
    return result;
}

/// A store in surroundings of the test's making, and a record of all that it tells.
class StoreFixture : public testing::Test, protected CoreWorld {
protected:
    using Kind = CanonicalEvent;

    void SetUp() override {
        store.resolveDecision = [this](const QString &id, const AgentDecision &decision) {
            resolved.append(id + " " + nameOf(decision));
            stateAtRelease = store.sessions().value("s");
        };
        QObject::connect(&store, &SessionStore::sessionsChanged, &store, [this] { ++published; });
        QObject::connect(&store, &SessionStore::stateChanges, &store,
                         [this](SessionState state) { announced.append(nameOf(state)); });
        store.readTranscript = [this](AgentKind agent, const QString &path,
                                      SessionTranscripts::Use use) {
            reads.append(displayName(agent) + " " + path);
            running.push_back(std::move(use));
        };
    }

    /// The session, which has to be there.
    Session session(const QString &id = "s") const {
        EXPECT_TRUE(store.sessions().contains(id));
        return store.sessions().value(id);
    }

    void apply(const EventBuilder &event) { store.apply(event); }
    void apply(Kind kind) { store.apply(EventBuilder(kind)); }

    /// Ends the oldest read of a transcript that still runs.
    void finishRead(const TranscriptInfo &info = {}) {
        ASSERT_FALSE(running.empty());
        const auto use = running.front();
        running.erase(running.begin());
        use(info);
    }
    void finishRead(const char *words) { finishRead({{}, words, {}, {}, {}}); }

    /// What has been recorded since the last time.
    template <typename Record>
    static Record take(Record &record) {
        return std::exchange(record, Record());
    }

    SessionStore store{
        settings,
        {[](const QString &cwd) {
             return cwd.isEmpty() ? std::nullopt : std::optional("branch of " + cwd);
         },
         [this](const QString &cwd) { return settings.name(cwd); },
         [](const std::optional<QString> &bundle, const std::optional<QString> &program) {
             return std::optional(bundle.value_or("-") + "/" + program.value_or("-"));
         }},
        scheduler};

    QStringList resolved, announced, reads;
    std::vector<SessionTranscripts::Use> running;
    Session stateAtRelease;
    int published = 0;
};

} // namespace morvane
