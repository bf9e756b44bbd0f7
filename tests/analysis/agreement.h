// How closely a fast path's plotted value must agree with the one-point walk's.
#pragma once

#include <algorithm>
#include <cmath>

#include "analysis/response.h"

namespace zelk::test {

// The difference of a fast value from the one-point walk's, relative to the value, and
// at least to a floor where the value passes near 0 and both walks carry only their
// roundings: the unit for decibels and degrees (a pass band at 0 dB, a phase crossing
// 0). The group delay is the first difference of two phases of up to tens of radians:
// it agrees as they do, so its floor is the difference those two phases' own agreement
// allows over the step. w: the sweep frequencies, i the point; phase: the sweep's phase
// in degrees (needed for the group delay only).
inline double deviation(Quantity q, double fast, double ref, const double* w, int i,
                        const double* phase = nullptr) {
    double scale = std::max(std::abs(fast), std::abs(ref));
    switch (q) {
    case Quantity::InputImpedance:
    case Quantity::OutputImpedance: break;
    case Quantity::GroupDelay: {
        const double step = i == 0 ? w[0] : w[i] - w[i - 1];
        double degrees = 1;
        if (phase) degrees = std::max({degrees, std::abs(phase[i]), i > 0 ? std::abs(phase[i - 1]) : 0.0});
        scale = std::max(scale, degrees * (3.141592653589793 / 180) / std::abs(step));
        break;
    }
    default: scale = std::max(scale, 1.0);
    }
    if (scale == 0) return fast == ref ? 0 : INFINITY;
    return std::abs(fast - ref) / scale;
}

} // namespace zelk::test
