#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

namespace morvane {

/// A process's figure of this name in /proc/ID/status, in kilobytes.
inline double memory(const std::string &name, const std::string &process = "self") {
    std::ifstream status("/proc/" + process + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::atof(line.c_str() + name.size() + 1);
        }
    }
    return 0;
}

/// Resets the peak, "VmHWM", which is measured anew from here on.
inline void forgetPeak(const std::string &process = "self") {
    std::ofstream("/proc/" + process + "/clear_refs") << '5';
}

} // namespace morvane
