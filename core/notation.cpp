#include "core/notation.h"

#include "core/commands.h"
#include "core/hostmath.h"

namespace zelk {

double parsevalue(std::string_view text) {
    // Blanks anywhere are ignored; the suffix is the last character of the raw text.
    std::string t;
    for (char c : text)
        if (c != ' ') t += c;
    double factor = 1;
    if (!text.empty()) {
        switch (text.back()) {
        case 'M': factor = 1000000; break;
        case 'K': factor = 1000; break;
        case 'm': factor = 0.001; break;
        case 'u': factor = 1e-06; break;
        case 'n': factor = 1e-09; break;
        case 'p': factor = 1e-12; break;
        default: break;
        }
    }
    return Val(t) * factor;
}

std::string engformat(double& v) {
    double s = 1;
    if (v < 0) {
        s = -1;
        v = -v;
    }
    if (v == 0) return "0";
    if (v >= 1000000) return Format(s * v / 1000000, "###.######") + "M";
    if (v >= 1000) return Format(s * v / 1000, "###.######") + "K";
    if (v >= 1) return Format(s * v, "###.###");
    if (v >= 0.001) return Format(s * v / 0.001, "###.###") + "m";
    if (v >= 1e-06) return Format(s * v / 1e-06, "###.###") + "u";
    if (v >= 1e-09) {
        if (menuchecked("nano")) return Format(s * v / 1e-09, "###.###") + "n";
        return Format(s * v / 1e-06, "#.######") + "u";
    }
    return Format(s * v / 1e-12, "###.#####") + "p";
}

std::string engformatvalue(double v) { return engformat(v); }

std::string numtext(double n) { return (n >= 0 ? " " : "") + Str(n); }

std::string plainnum(double n) { return Str(n); }

std::string roundvalue(double value, bool roundup) {
    std::string t = engformat(value);
    std::string suffix;
    if (!t.empty() && !(t.back() >= '0' && t.back() <= '9')) {
        suffix = t.substr(t.size() - 1);
        t.pop_back();
    }
    double n = parsevalue(t);
    if (roundup) n += 0.5;
    return Str(Int(n)) + suffix;
}

} // namespace zelk
