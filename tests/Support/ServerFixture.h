#pragma once

#include "Core/Intake/EventServer.h"
#include "Support/HttpClient.h"
#include "Support/ManualScheduler.h"
#include "Support/WaitUntil.h"

namespace morvane {

/// A server on some free port, with the main loop and the time limits in the test's hands.
class ServerFixture : public testing::Test {
protected:
    static constexpr const char *token = "TOKEN-0123456789";

    void SetUp() override { ASSERT_TRUE(server->start()); }

    std::uint16_t port() const { return server->boundPort(); }

    static std::string eventRequest(const HttpHeaders &headers, std::string_view body) {
        HttpHeaders all{{"x-morvane-token", token}};
        all.insert(all.end(), headers.begin(), headers.end());
        return httpPost("/event", all, body);
    }

    static std::string permissionRequest(const std::string &id) {
        return eventRequest({{"x-morvane-agent", "claude"},
                             {"x-hook-event", "PermissionRequest"},
                             {"x-morvane-decision", "1"}},
                            R"({"session_id":"s","tool_name":"Bash","tool_use_id":")" + id +
                                R"(","tool_input":{"command":"make"}})");
    }

    /// Sends a request that is to be parked, and waits until it is.
    HttpClient parked(const std::string &request) {
        const std::size_t before = events.size();
        HttpClient client(port());
        client.send(request);
        EXPECT_TRUE(comesAbout([&] { return events.size() > before; }));
        return client;
    }

    /// Waits for a condition, and meanwhile runs what the server's threads post to this one.
    template <typename Condition>
    bool comesAbout(Condition condition) {
        return waitUntil([&] {
            scheduler.runPosted();
            return condition();
        });
    }

    /// Waits until the server has handled all earlier requests, by sending it another one.
    void settle() {
        httpExchange(port(), eventRequest({}, "{}"));
        scheduler.runPosted();
    }

    ManualScheduler scheduler;
    std::vector<HookEvent> events;
    std::vector<std::string> expired;
    std::vector<std::pair<AgentKind, std::string>> usage;
    std::unique_ptr<EventServer> server = std::make_unique<EventServer>(
        token, 0,
        EventServer::Handlers{
            .onEvent = [this](const HookEvent &event) { events.push_back(event); },
            .onDecisionExpired = [this](const QString &id) { expired.push_back(id.toStdString()); },
            .onUsagePayload =
                [this](AgentKind agent, const QByteArray &body) {
                    usage.emplace_back(agent, body.toStdString());
                },
            .decisionsEnabled = [] { return true; }},
        scheduler, &scheduler);
};

inline constexpr const char *okAnswer =
    "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";

} // namespace morvane
