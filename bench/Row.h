#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace morvane {

/// A line of the table that scripts/bench makes: what something costs, as a multiple of what
/// something else costs. A limit in seconds may be that as well.
struct Row {
    const char *what;
    const char *reference;
    double budget = 0; ///< the highest multiple that is good; 0 where any is
};

/// How often it is measured: each round has a ratio of its own, of the medians of its turns.
struct Effort {
    int rounds = 15;
    int turns = 1;
};

inline double secondsOf(auto action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// One of the values, that below which there is so much of them.
inline double quantile(std::vector<double> values, double share) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(static_cast<double>(values.size() - 1) * share)];
}

/// The row with a ratio for each round; scripts/bench makes medians and quartiles of them.
inline void print(const Row &row, const std::vector<double> &ratios) {
    std::printf("%s\t%s\t%g", row.what, row.reference, row.budget);
    for (const double ratio : ratios) {
        std::printf("\t%.4g", ratio);
    }
    std::printf("\n");
    std::fflush(stdout);
}

/// Measures a row: both sides yield what one run of them has cost. They take turns, so that a busy
/// moment meets both, and a first round that counts for nothing warms them up.
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
