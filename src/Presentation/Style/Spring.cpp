#include "Presentation/Style/Spring.h"

#include <cmath>
#include <numbers>

namespace morvane {

namespace {

/// After this many time constants a spring with damping up to 1 has at most a thousandth of the way
/// left.
constexpr double settled = 9.3;

double frequency(const Spring &spring) {
    return 2 * std::numbers::pi / spring.response.count();
}

} // namespace

double Spring::at(Seconds elapsed) const {
    if (elapsed >= settlingTime()) {
        return 1;
    }
    const double w = frequency(*this);
    const double t = elapsed.count();
    if (damping >= 1) {
        return 1 - std::exp(-w * t) * (1 + w * t);
    }
    const double swing = w * std::sqrt(1 - damping * damping);
    return 1 - std::exp(-damping * w * t) *
                   (std::cos(swing * t) + damping * w / swing * std::sin(swing * t));
}

Seconds Spring::settlingTime() const {
    return Seconds(settled / (frequency(*this) * damping));
}

} // namespace morvane
