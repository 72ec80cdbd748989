#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

namespace morvane {

/// Kilobytes of a process, by the name that the kernel gives the figure.
inline double memory(const std::string &name, const std::string &process = "self") {
    std::ifstream status("/proc/" + process + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::atof(line.c_str() + name.size() + 1);
        }
    }
    return 0;
}

/// From here on the peak, "VmHWM", is what comes.
inline void forgetPeak(const std::string &process = "self") {
    std::ofstream("/proc/" + process + "/clear_refs") << '5';
}

} // namespace morvane
