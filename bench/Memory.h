#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

namespace morvane {

/// Kilobytes of this process, by the name that the kernel gives the figure.
inline double memory(const std::string &name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::atof(line.c_str() + name.size() + 1);
        }
    }
    return 0;
}

/// From here on the peak, "VmHWM", is what comes.
inline void forgetPeak() {
    std::ofstream("/proc/self/clear_refs") << '5';
}

} // namespace morvane
