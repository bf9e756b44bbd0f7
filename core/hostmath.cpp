#include "core/hostmath.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace zelk {

double Fix(double x) { return std::trunc(x); }
int Sgn(double x) { return x > 0 ? 1 : (x < 0 ? -1 : 0); }

std::string faultdescription(int number) {
    switch (number) {
    case 5: return "Invalid procedure call or argument";
    case 6: return "Overflow";
    case 7: return "Out of memory";
    case 9: return "Subscript out of range";
    case 11: return "Division by zero";
    case 13: return "Type mismatch";
    case 52: return "Bad file name or number";
    case 53: return "File not found";
    case 55: return "File already open";
    case 62: return "Input past end of file";
    case 75: return "Path/File access error";
    case 76: return "Path not found";
    case 380: return "Invalid property value";
    default: return "Application-defined or object-defined error";
    }
}

void raisefault(int number) { throw RuntimeFault{number, faultdescription(number)}; }

double Val(std::string_view text) {
    std::string num;
    size_t i = 0;
    auto skipblanks = [&] {
        while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
    };
    skipblanks();
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) num += text[i++];
    bool digits = false, point = false;
    for (; i < text.size(); ++i) {
        char c = text[i];
        if (c == ' ' || c == '\t') continue;
        if (c >= '0' && c <= '9') {
            num += c;
            digits = true;
        } else if (c == '.' && !point) {
            num += c;
            point = true;
        } else {
            break;
        }
    }
    if (!digits) return 0;
    // Exponent: e or E followed by an optional sign and at least one digit.
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        size_t j = i + 1;
        std::string ex = "e";
        while (j < text.size() && text[j] == ' ') ++j;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) ex += text[j++];
        bool exdigits = false;
        for (; j < text.size(); ++j) {
            char c = text[j];
            if (c == ' ') continue;
            if (c < '0' || c > '9') break;
            ex += c;
            exdigits = true;
        }
        if (exdigits) num += ex;
    }
    return std::strtod(num.c_str(), nullptr);
}

namespace {

// The value as 15 significant decimal digits: sign, digit string (15 digits) and the
// decimal exponent of the first digit.
struct Decimal {
    bool negative = false;
    std::string digits; // without point; may have a leading carry digit after rounding
    int pointpos = 0;   // number of digits before the decimal point (may be <= 0)
};

Decimal todecimal15(double v) {
    Decimal d;
    d.negative = v < 0;
    if (!std::isfinite(v)) {
        // No digits to round: callers print the host's text for such a value instead.
        d.digits = "0";
        d.pointpos = 1;
        return d;
    }
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(v));
    // buf: d.dddddddddddddde[+-]xx
    std::string s(buf);
    size_t e = s.find('e');
    d.digits = s.substr(0, 1) + s.substr(2, e - 2);
    int exp10 = std::atoi(s.c_str() + e + 1);
    d.pointpos = exp10 + 1;
    if (v == 0) d.pointpos = 1;
    return d;
}

// Integer and fraction digit strings of |v| rounded half away from zero at `decimals`.
void splitrounded(double v, int decimals, std::string& intpart, std::string& fracpart,
                  bool& negative) {
    Decimal d = todecimal15(v);
    negative = d.negative;
    // Build a digit string with at least pointpos + decimals + 1 digits.
    std::string digits = d.digits;
    int pointpos = d.pointpos;
    if (pointpos < 0) {
        digits.insert(0, static_cast<size_t>(-pointpos), '0');
        pointpos = 0;
    }
    int keep = pointpos + decimals;
    while (static_cast<int>(digits.size()) < keep + 1) digits += '0';
    bool roundup = digits[static_cast<size_t>(keep)] >= '5';
    digits.resize(static_cast<size_t>(keep));
    if (roundup) {
        int k = keep - 1;
        while (k >= 0) {
            if (digits[static_cast<size_t>(k)] == '9') {
                digits[static_cast<size_t>(k)] = '0';
                --k;
            } else {
                ++digits[static_cast<size_t>(k)];
                break;
            }
        }
        if (k < 0) {
            digits.insert(0, "1");
            ++pointpos;
        }
    }
    intpart = digits.substr(0, static_cast<size_t>(pointpos));
    fracpart = digits.substr(static_cast<size_t>(pointpos));
    size_t nz = intpart.find_first_not_of('0');
    intpart = nz == std::string::npos ? "" : intpart.substr(nz);
}

} // namespace

std::string Format(double v, std::string_view maskin) {
    // An infinite or undefined value has no digits for the mask to place.
    if (!std::isfinite(v)) return Str(v);
    // A '*' digit place (the "**.00" mask) prints as '#' does.
    std::string starless(maskin);
    for (char& c : starless)
        if (c == '*') c = '#';
    std::string_view mask = starless;
    size_t dot = mask.find('.');
    std::string_view imask = mask.substr(0, dot);
    std::string_view fmask = dot == std::string_view::npos ? std::string_view{} : mask.substr(dot + 1);
    int decimals = 0;
    for (char c : fmask)
        if (c == '#' || c == '0') ++decimals;
    std::string ip, fp;
    bool negative;
    splitrounded(v, decimals, ip, fp, negative);

    // Integer part: leading zeros forced from the first '0' placeholder on.
    int forced = 0;
    bool seenzero = false;
    std::string literals;
    for (char c : imask) {
        if (c == '0') seenzero = true;
        if (c == '0' || (c == '#' && seenzero)) ++forced;
        else if (c != '#') literals += c;
    }
    while (static_cast<int>(ip.size()) < forced) ip.insert(0, "0");

    // Fraction: '#' positions at the end drop their zeros.
    std::string frac;
    {
        std::string placeholders;
        for (char c : fmask)
            if (c == '#' || c == '0') placeholders += c;
        int last = static_cast<int>(placeholders.size()) - 1;
        while (last >= 0 && placeholders[static_cast<size_t>(last)] == '#' &&
               fp[static_cast<size_t>(last)] == '0')
            --last;
        frac = fp.substr(0, static_cast<size_t>(last + 1));
    }
    bool nonzero = ip.find_first_not_of('0') != std::string::npos ||
                   frac.find_first_not_of('0') != std::string::npos;
    std::string out;
    if (negative && nonzero) out += '-';
    out += literals;
    out += ip;
    if (dot != std::string_view::npos) out += '.';
    out += frac;
    return out;
}

std::string Str(double v) {
    if (v == 0) return "0";
    if (!std::isfinite(v)) return std::isnan(v) ? "NaN" : (v > 0 ? "Inf" : "-Inf");
    Decimal d = todecimal15(v);
    std::string digits = d.digits;
    while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
    double a = std::fabs(v);
    std::string out = d.negative ? "-" : "";
    // The 15-digit rounding may carry into a new decade; todecimal15 already did that.
    int exp10 = d.pointpos - 1;
    if (a < 1e-4 || exp10 >= 15) {
        out += digits.substr(0, 1);
        if (digits.size() > 1) out += "." + digits.substr(1);
        char buf[16];
        std::snprintf(buf, sizeof buf, "E%c%02d", exp10 < 0 ? '-' : '+', std::abs(exp10));
        out += buf;
        return out;
    }
    if (d.pointpos <= 0) {
        out += "0." + std::string(static_cast<size_t>(-d.pointpos), '0') + digits;
    } else if (static_cast<int>(digits.size()) <= d.pointpos) {
        out += digits + std::string(static_cast<size_t>(d.pointpos) - digits.size(), '0');
    } else {
        out += digits.substr(0, static_cast<size_t>(d.pointpos)) + "." +
               digits.substr(static_cast<size_t>(d.pointpos));
    }
    return out;
}

int clampint(double x, int lo, int hi) {
    if (std::isnan(x)) x = 0;
    if (x <= static_cast<double>(lo)) return lo;
    if (x >= static_cast<double>(hi)) return hi;
    return static_cast<int>(x); // within lo..hi, so the cast is defined
}

std::string roundtrip(double v) {
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, res.ptr);
}

} // namespace zelk
