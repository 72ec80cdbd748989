#pragma once

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <sys/types.h>
#include <vector>

namespace morvane::tests {

/// What stands beside a script and does its work.
enum class Carrier {
    Client, ///< the built client
    Curl,   ///< no client, so that curl has to do
};

inline constexpr Carrier carriers[] = {Carrier::Client, Carrier::Curl};

inline void PrintTo(Carrier carrier, std::ostream *out) {
    *out << (carrier == Carrier::Client ? "client" : "curl");
}

/// A rendered script, hook.sh if no other is named, in a folder of its own, and one run of it. The
/// environment is only what is set here, and PATH.
class HookProcess {
public:
    HookProcess(Carrier carrier, std::uint16_t port, std::vector<std::string> shell = {"/bin/sh"},
                std::string name = "hook.sh");

    /// This test program's own, since it is looked for in the arguments of every process.
    [[nodiscard]] static std::string token();
    /// The shells of this machine that the scripts are written for.
    [[nodiscard]] static std::vector<std::vector<std::string>> shells();
    /// Whether everyone could see the text among the arguments of a process.
    [[nodiscard]] static bool standsInSomeArguments(const std::string &text);
    [[nodiscard]] std::filesystem::path folder() const { return m_folder.path().toStdString(); }
    [[nodiscard]] std::filesystem::path script() const { return folder() / m_name; }
    [[nodiscard]] std::filesystem::path client() const { return folder() / CLIENT_NAME; }
    void setEnvironment(const std::vector<std::string> &variables);

    /// What it writes, errors included, until it has ended well.
    [[nodiscard]] std::string run(const std::vector<std::string> &arguments,
                                  const std::string &payload = "{}");
    /// Starts without waiting; its input is empty and its output goes nowhere.
    [[nodiscard]] pid_t start(const std::vector<std::string> &arguments);

private:
    pid_t spawn(const std::vector<std::string> &arguments, int input, int output);

    std::string m_name;
    QTemporaryDir m_folder;
    std::vector<std::string> m_shell;
    std::vector<std::string> m_environment;
};

} // namespace morvane::tests
