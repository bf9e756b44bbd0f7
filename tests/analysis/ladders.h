// Textbook ladders built straight into the store for the analysis tests: Butterworth and
// Chebyshev prototype values g_k (Matthaei, Young and Jones, closed forms) and the
// standard low-pass to LP/HP/BP/BR transforms, in Pi (shunt first) or T (series first).
#pragma once

#include <cmath>
#include <vector>

#include "core/designstore.h"
#include "core/hostmath.h"

namespace zelk::test {

inline std::vector<double> butterworthg(int n) {
    std::vector<double> g(static_cast<size_t>(n) + 1);
    for (int k = 1; k <= n; ++k) g[static_cast<size_t>(k)] = 2 * std::sin((2 * k - 1) * M_PI / (2 * n));
    return g;
}

// Odd orders only: equal terminations.
inline std::vector<double> chebyshevg(int n, double ripple) {
    std::vector<double> g(static_cast<size_t>(n) + 1), a(g.size()), b(g.size());
    double beta = std::log(1 / std::tanh(ripple / 17.37));
    double gamma = std::sinh(beta / (2 * n));
    for (int k = 1; k <= n; ++k) {
        a[static_cast<size_t>(k)] = std::sin((2 * k - 1) * M_PI / (2 * n));
        b[static_cast<size_t>(k)] = gamma * gamma + std::pow(std::sin(k * M_PI / n), 2);
    }
    g[1] = 2 * a[1] / gamma;
    for (size_t k = 2; k <= static_cast<size_t>(n); ++k)
        g[k] = 4 * a[k - 1] * a[k] / (b[k - 1] * g[k - 1]);
    return g;
}

enum class Kind { LP, HP, BP, BR };

struct Ladder {
    Kind kind;
    std::vector<double> g;
    bool pi;       // shunt element first
    double R0;     // both terminations
    double f1, f2; // corner (LP, HP: f1) or band edges in hertz
    double Qu;     // 0: lossless
};

// Writes the ladder into slot s (dipole 1 the source, the last the load).
inline void buildladder(int s, const Ladder& sp) {
    DesignSlot& sl = slot(s);
    for (auto& d : sl.dipoles) d = Dipole{};
    const double R0 = sp.R0;
    const double w1 = 2 * M_PI * sp.f1, w2 = 2 * M_PI * sp.f2;
    const double w0 = sp.kind == Kind::BP || sp.kind == Kind::BR ? std::sqrt(w1 * w2) : w1;
    const double bw = w2 - w1;
    int d = 1;
    Dipole& src = sl.dip(d++);
    src.type = 1, src.R = R0;
    if (!sp.pi) sl.dip(d++).type = 38; // no shunt part ahead of the first series arm
    const int n = static_cast<int>(sp.g.size()) - 1;
    for (int k = 1; k <= n; ++k, ++d) {
        const double g = sp.g[static_cast<size_t>(k)];
        const bool shunt = d % 2 == 0;
        Dipole& p = sl.dip(d);
        p.Qu = sp.Qu;
        switch (sp.kind) {
        case Kind::LP:
            if (shunt) p.type = 33, p.C = g / (R0 * w0);
            else p.type = 2, p.L = g * R0 / w0;
            break;
        case Kind::HP:
            if (shunt) p.type = 32, p.L = R0 / (g * w0);
            else p.type = 3, p.C = 1 / (g * R0 * w0);
            break;
        case Kind::BP:
            if (shunt) p.type = 35, p.C = g / (R0 * bw), p.L = 1 / (w0 * w0 * p.C);
            else p.type = 4, p.L = g * R0 / bw, p.C = 1 / (w0 * w0 * p.L);
            break;
        case Kind::BR:
            if (shunt) p.type = 34, p.L = R0 / (g * bw), p.C = 1 / (w0 * w0 * p.L);
            else p.type = 5, p.L = g * R0 * bw / (w0 * w0), p.C = 1 / (w0 * w0 * p.L);
            break;
        }
    }
    if (d % 2 == 1) sl.dip(d++).type = 6; // the load sits in a shunt place
    Dipole& load = sl.dip(d);
    load.type = 31, load.R = R0;
    sl.dipolecount = d;
    sl.Zin = R0, sl.Zout = R0;
    sl.w0 = w0 / (2 * M_PI) * TWOPI, sl.w1 = sp.f1 * TWOPI, sl.w2 = sp.f2 * TWOPI;
    sl.title = "test ladder";
}

} // namespace zelk::test
