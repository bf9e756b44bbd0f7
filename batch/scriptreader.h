// The reader of the batch runner's own script syntax: tokens, quoted texts, control
// references, paths and numbers. Every conversion is checked: a token that is not the
// number asked for, or one that does not fit, is refused, never thrown past the runner.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

// Splits a script line into tokens: blanks separate, double quotes group ("" inside a
// quoted part is one quote). Quotes are kept; unquote removes them.
std::vector<std::string> tokenize(const std::string& line, bool& ok);
std::string unquote(const std::string& token);
// "NAME(3)" -> name "NAME", index 3; plain "NAME" -> index -1. False when malformed,
// and when the index is not a whole number from 0 to MAXCONTROLINDEX.
inline constexpr int MAXCONTROLINDEX = 9999;
bool splitname(const std::string& ref, std::string& name, int& index);

// A whole number written in decimal digits with an optional sign, within lo..hi; nothing
// when the token is anything else or out of range.
std::optional<long long> readinteger(std::string_view token, long long lo, long long hi);
// A finite number in the C locale's form ("10", "-2.5", "1e-3"); nothing for text,
// "nan", "inf" or a value beyond the range of a double.
std::optional<double> readnumber(std::string_view token);
// A file name: the token unquoted; nothing when that leaves it empty.
std::optional<std::string> readpath(const std::string& token);

} // namespace zelk
