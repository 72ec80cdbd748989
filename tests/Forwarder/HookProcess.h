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

/// What sends a script's requests.
enum class Carrier {
    Client, ///< the built client, which lies beside the script
    Curl,   ///< there is no client, so the script falls back to curl
};

inline constexpr Carrier carriers[] = {Carrier::Client, Carrier::Curl};

inline void PrintTo(Carrier carrier, std::ostream *out) {
    *out << (carrier == Carrier::Client ? "client" : "curl");
}

/// Runs a rendered script, hook.sh unless another is named, in a folder of its own. Its environment
/// is PATH and what is set here, nothing else.
class HookProcess {
public:
    HookProcess(Carrier carrier, std::uint16_t port, std::vector<std::string> shell = {"/bin/sh"},
                std::string name = "hook.sh");

    /// Unique to this test program, since it is looked for in the arguments of every process.
    [[nodiscard]] static std::string token();
    /// The shells of this machine that the scripts are written for.
    [[nodiscard]] static std::vector<std::vector<std::string>> shells();
    /// Whether the text is in the arguments of any process, where everyone can see it.
    [[nodiscard]] static bool standsInSomeArguments(const std::string &text);
    [[nodiscard]] std::filesystem::path folder() const { return m_folder.path().toStdString(); }
    [[nodiscard]] std::filesystem::path script() const { return folder() / m_name; }
    [[nodiscard]] std::filesystem::path client() const { return folder() / CLIENT_NAME; }
    void setEnvironment(const std::vector<std::string> &variables);

    /// Runs the script to its end, which must be successful; yields its output, errors included.
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
