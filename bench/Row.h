#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace morvane {

/// A line of the table that scripts/bench makes: what something costs, as a multiple of what
/// something else costs. The reference may also be a limit in seconds.
struct Row {
    const char *what;
    const char *reference;
    double budget = 0; ///< the highest good ratio; 0 for no limit
};

/// How often to measure: each round gives one ratio, of the medians of its turns.
struct Effort {
    int rounds = 15;
    int turns = 1;
};

inline double secondsOf(auto action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The value below which this share of the values lies.
inline double quantile(std::vector<double> values, double share) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(static_cast<double>(values.size() - 1) * share)];
}

/// Prints the row with a ratio for each round; scripts/bench computes medians and quartiles.
inline void print(const Row &row, const std::vector<double> &ratios) {
    std::printf("%s\t%s\t%g", row.what, row.reference, row.budget);
    for (const double ratio : ratios) {
        std::printf("\t%.4g", ratio);
    }
    std::printf("\n");
    std::fflush(stdout);
}

/// Measures a row: both sides return the cost of one run. They take turns, so that a busy moment
/// affects both, and a first round that doesn't count warms them up.
inline void compare(const Row &row, const Effort &effort, auto ours, auto reference) {
    std::vector<double> ratios;
    for (int round = -1; round < effort.rounds; ++round) {
        std::vector<double> costs;
        std::vector<double> references;
        for (int turn = 0; turn < effort.turns; ++turn) {
            costs.push_back(ours());
            references.push_back(reference());
        }
        if (round >= 0) {
            ratios.push_back(quantile(costs, 0.5) / quantile(references, 0.5));
        }
    }
    print(row, ratios);
}

} // namespace morvane
