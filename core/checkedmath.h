// The host's checked floating-point operations, for the design arithmetic: a division by
// zero, the logarithm or root of a value out of range, and a result too large for a
// double stop the command with the host's run-time error instead of leaving an infinite
// or undefined value in a design.
#pragma once

#include <cmath>

#include "core/hostmath.h"

namespace zelk {

// a / b: "Division by zero" (11) for b = 0, "Overflow" (6) for 0 / 0 or an infinite result.
inline double hdiv(double a, double b) {
    if (b == 0) raisefault(a == 0 || std::isnan(a) ? 6 : 11);
    const double r = a / b;
    if (!std::isfinite(r)) raisefault(6);
    return r;
}
// Natural logarithm: "Invalid procedure call or argument" (5) for x <= 0.
inline double hlog(double x) {
    if (!(x > 0)) raisefault(5);
    return std::log(x);
}
// Square root: fault 5 for x < 0.
inline double hsqr(double x) {
    if (!(x >= 0)) raisefault(5);
    return std::sqrt(x);
}
// Exponential: "Overflow" (6) when the result is not finite.
inline double hexp(double x) {
    const double r = std::exp(x);
    if (!std::isfinite(r)) raisefault(6);
    return r;
}
// A result that must be finite ("Overflow" otherwise).
inline double hfinite(double x) {
    if (!std::isfinite(x)) raisefault(6);
    return x;
}

} // namespace zelk
