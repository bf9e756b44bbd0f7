// How closely a fast path's plotted value must agree with the one-point walk's.
#pragma once

#include <algorithm>
#include <cmath>

#include "analysis/response.h"

namespace zelk::test {

// The difference of a fast value from the one-point walk's, relative to the value, and
// at least to a floor where the value passes near 0 and both walks carry only their
// roundings there: the unit for decibels and degrees (a pass band at 0 dB, a phase
// crossing 0), the sweep's largest delay for the group delay (a delay is the difference
// of two phases of up to tens of radians, so its rounding is that of the phases: in a
// stop band, where the delay is a thousandth of the plot's scale, so is its agreement).
inline double deviation(Quantity q, double fast, double ref, double sweepscale) {
    double scale = std::max(std::abs(fast), std::abs(ref));
    switch (q) {
    case Quantity::InputImpedance:
    case Quantity::OutputImpedance: break;
    case Quantity::GroupDelay: scale = std::max(scale, sweepscale); break;
    default: scale = std::max(scale, 1.0);
    }
    if (scale == 0) return fast == ref ? 0 : INFINITY;
    return std::abs(fast - ref) / scale;
}

// The largest magnitude of a sweep's values: the scale of its delay plot.
inline double sweepscale(const double* v, int n) {
    double m = 0;
    for (int i = 0; i < n; ++i) m = std::max(m, std::abs(v[i]));
    return m;
}

} // namespace zelk::test
