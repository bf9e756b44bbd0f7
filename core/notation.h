// Value notation: every value the user sees or types is a number followed by one
// suffix letter (M, K, m, u, n, p). parsevalue reads it, engformat writes it.
#pragma once

#include <string>
#include <string_view>

namespace zelk {

// Reads a row's text: the number at its head times the factor of its last character
// ("M" 1e6, "K" 1e3, "m" 1e-3, "u" 1e-6, "n" 1e-9, "p" 1e-12; case-sensitive). Text with
// no number gives 0; it never fails.
double parsevalue(std::string_view text);

// Engineering text of a value. A negative value prints with its sign, and the caller's
// variable is left holding the positive value (hence the reference).
std::string engformat(double& v);
// The same for a value that is not written back (computed on the fly).
std::string engformatvalue(double v);

// A number with a leading blank when it is not negative: "For Dipole" + numtext(3) reads
// "For Dipole 3"... with the caption's own blank, two.
std::string numtext(double n);
// A number with no leading blank and no mask.
std::string plainnum(double n);

// engformat, then the number part truncated to an integer (after adding 0.5 when roundup
// is set) and the suffix letter put back.
std::string roundvalue(double value, bool roundup);

} // namespace zelk
