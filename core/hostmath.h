// Host arithmetic: the numeric helpers of the desktop language the program's formulas
// were first worked in, reproduced exactly, and the run-time fault that its errors raise.
// Every routine uses these rather than a variant of its own.
#pragma once

#include <cmath>
#include <string>
#include <string_view>

namespace zelk {

// The program's pi and two-pi: truncated on purpose, used everywhere in place of the
// full-precision values.
inline constexpr double PI = 3.141592654;
inline constexpr double TWOPI = 6.283185308;

// Int: the largest integer not above x (floor). Fix: x truncated toward zero.
inline double Int(double x) { return std::floor(x); }
double Fix(double x);
// Sgn: -1, 0 or 1; Sgn(0) is 0.
int Sgn(double x);

// A run-time fault of the host: "Subscript out of range" (9), "Division by zero" (11),
// "Overflow" (6) and so on. Thrown by checked accessors and by the arithmetic where the
// host would stop; the command dispatcher turns it into a message box and the program
// goes on.
struct RuntimeFault {
    int number;
    std::string description;
};
[[noreturn]] void raisefault(int number);
// The host's description of a fault number ("Subscript out of range" for 9).
std::string faultdescription(int number);

// Host-style reading of a number at the head of a text: leading blanks skipped, blanks
// between digits ignored, optional sign, decimal point, exponent e/E with digits.
// Reading stops at the first other character; no number gives 0.
double Val(std::string_view text);

// Format masks ("###.###", "##.#", "#.#00", "##.000", "**.00", where * is #): round half away from
// zero at the mask's last digit, applied to the value first rounded to 15 significant
// digits. '#' prints no leading or trailing zero, '0' forces a digit, the point is always
// printed, integer digits beyond the mask are all printed. Other characters are literal.
std::string Format(double v, std::string_view mask);

// The unmasked form: at most 15 significant digits, no trailing zeros, no point for an
// integer, a leading zero before the point, exponent form below 1e-4 and from 1e15 on
// ("1.5E-05", "2E+15").
std::string Str(double v);

// Shortest text that reads back to the same double (for dumps).
std::string roundtrip(double v);

// The one conversion of a double to an integer for a count, an index, a position or a
// pixel size: the value truncated toward zero and held within lo..hi. An infinite value
// gives the nearer bound, NaN counts as 0 (as an unset value does) and is held within
// the bounds too. A plain cast of a value that does not fit an int is undefined.
int clampint(double x, int lo, int hi);

// The host's checked floating-point operations, for the design arithmetic: a division by
// zero, the logarithm or root of a value out of range, and a result too large for a
// double stop the command with the host's run-time error instead of leaving an infinite
// or undefined value in a design.
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
// Base-10 logarithm as the host defines it, ln(x)/ln(10) (the library's log10 can differ
// in the last bit); fault 5 for x <= 0.
inline double log10host(double x) { return hlog(x) / std::log(10.0); }
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
