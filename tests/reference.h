// The tests' one independent reference: textbook prototype values, one ladder builder
// that writes dipoles straight into the store, and a chain-matrix (ABCD) analysis of a
// ladder with std::complex. Nothing here uses the program's own synthesis or walkers.
#pragma once

#include <cmath>
#include <complex>
#include <string>
#include <vector>

#include "core/designstore.h"
#include "core/hostmath.h"
#include "files.h"

namespace zelk::test {

using cplx = std::complex<double>;
inline constexpr double pi = 3.14159265358979323846;

// Butterworth and (odd order, equal terminations) Chebyshev g_k, Matthaei, Young and
// Jones closed forms; g[0] unused.
inline std::vector<double> butterworthg(int n) {
    std::vector<double> g(static_cast<size_t>(n) + 1);
    for (int k = 1; k <= n; ++k) g[static_cast<size_t>(k)] = 2 * std::sin((2 * k - 1) * pi / (2 * n));
    return g;
}

inline std::vector<double> chebyshevg(int n, double ripple) {
    std::vector<double> g(static_cast<size_t>(n) + 1), a(g.size()), b(g.size());
    double beta = std::log(1 / std::tanh(ripple / 17.37));
    double gamma = std::sinh(beta / (2 * n));
    for (int k = 1; k <= n; ++k) {
        a[static_cast<size_t>(k)] = std::sin((2 * k - 1) * pi / (2 * n));
        b[static_cast<size_t>(k)] = gamma * gamma + std::pow(std::sin(k * pi / n), 2);
    }
    g[1] = 2 * a[1] / gamma;
    for (size_t k = 2; k <= static_cast<size_t>(n); ++k) g[k] = 4 * a[k - 1] * a[k] / (b[k - 1] * g[k - 1]);
    return g;
}

// One dipole of a ladder: its catalogue type and values.
struct Part {
    int type;
    double R = 0, C = 0, L = 0, Ca = 0, La = 0, Qu = 0;
};

// Writes the parts as dipoles 1.. of slot s (the first the source, the last the load).
inline DesignSlot& writeladder(int s, const std::vector<Part>& parts) {
    DesignSlot& sl = slot(s);
    for (auto& d : sl.dipoles) d = Dipole{};
    int n = 0;
    for (const Part& p : parts) {
        Dipole& d = sl.dip(++n);
        d.type = static_cast<short>(p.type);
        d.R = p.R, d.C = p.C, d.L = p.L, d.Ca = p.Ca, d.La = p.La, d.Qu = p.Qu;
    }
    sl.dipolecount = n;
    return sl;
}

// The types of the dipoles of slot s, source to load.
inline std::vector<int> types(int s = 0) {
    std::vector<int> t;
    for (int d = 1; d <= slot(s).count(); ++d) t.push_back(slot(s).dip(d).type);
    return t;
}

// Slot 0 as the one open design with the given dipoles, code and title.
inline DesignSlot& ladder(const std::vector<Part>& parts, const std::string& code = "BLP",
                          const std::string& designtitle = "Test") {
    store.lastslot = 0;
    store.curslot = 0;
    DesignSlot& s = writeladder(0, parts);
    s.code = code;
    s.title = "Test filter";
    s.designtitle = designtitle;
    return s;
}

// Slot 0 as the current design with a 10 MHz test crystal (Qx 200000, Rs 6.3 ohms,
// Cp 2.8 pF) and order n.
inline DesignSlot& crystalslot(int n) {
    store.curslot = store.lastslot = 0;
    DesignSlot& s = slot(0);
    const double w = 6.283185308 * 10e6;
    s.Qx = 200000;
    s.Rs = 6.3;
    s.Fs = 10e6;
    s.Cp = 2.8e-12;
    s.Ls = 200000 * 6.3 / w;
    s.Cs = 1 / w / w / double(s.Ls);
    s.order = n;
    return s;
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

// The textbook low-pass to LP/HP/BP/BR transform of g into slot s, in Pi or T.
inline void buildladder(int s, const Ladder& sp) {
    const double R0 = sp.R0;
    const double w1 = 2 * pi * sp.f1, w2 = 2 * pi * sp.f2;
    const double w0 = sp.kind == Kind::BP || sp.kind == Kind::BR ? std::sqrt(w1 * w2) : w1;
    const double bw = w2 - w1;
    std::vector<Part> parts{{1, R0}};
    if (!sp.pi) parts.push_back({38}); // no shunt part ahead of the first series arm
    for (size_t k = 1; k < sp.g.size(); ++k) {
        const double g = sp.g[k];
        const bool shunt = parts.size() % 2 == 1;
        Part p{0};
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
        parts.push_back(p);
    }
    if (parts.size() % 2 == 0) parts.push_back({6}); // the load sits in a shunt place
    parts.push_back({31, R0});
    DesignSlot& sl = writeladder(s, parts);
    sl.Zin = R0, sl.Zout = R0;
    sl.w0 = w0 / (2 * pi) * TWOPI, sl.w1 = sp.f1 * TWOPI, sl.w2 = sp.f2 * TWOPI;
    sl.title = "test ladder";
}

// The ladder of fields i.. of a row of tests/data/ladders.txt: kind, family, ripple,
// order, Pi or T, terminations, f1, f2, Qu.
inline Ladder ladderrow(const Row& r, size_t i = 0) {
    const int n = r.whole(i + 3);
    return {static_cast<Kind>(std::string("LPHPBPBR").find(r.text(i)) / 2),
            r.text(i + 1) == "butterworth" ? butterworthg(n) : chebyshevg(n, r.num(i + 2)),
            r.text(i + 4) == "Pi", r.num(i + 5), r.num(i + 6), r.num(i + 7), r.num(i + 8)};
}

// A chain matrix built arm by arm from the source end.
struct Chain {
    cplx A = 1, B = 0, C = 0, D = 1;
    void series(cplx z) { B += A * z, D += C * z; }
    void shunt(cplx y) { A += B * y, C += D * y; }
    // Transducer gain between source and load resistors (1 when matched and lossless).
    double gain(double rs, double rl) const { return 4 * rs * rl / std::norm(A * rl + B + C * rs * rl + D * rs); }
};

// Impedance of the series form of a dipole type (a shunt type, 30 above, is the same
// network across the line), lossless, written from its circuit; NaN for a type it lacks.
// type < 0: the dipole's own.
inline cplx seriesform(const Dipole& d, double w, int type = -1) {
    if (type < 0) type = d.type;
    const int t = type > 30 ? type - 30 : type;
    const cplx zl(0, w * d.L), zc(0, -1 / (w * d.C)), zla(0, w * d.La), zca(0, -1 / (w * d.Ca));
    auto par = [](cplx a, cplx b) { return a * b / (a + b); };
    switch (t) {
    case 1: return d.R;
    case 2: return zl;
    case 3: return zc;
    case 4: return zl + zc;
    case 5: return par(zl, zc);
    case 9: return par(zl + zc, zca);
    case 10: return par(zl, zc) + zca;
    case 12: return par(par(zl, zc) + zla, zca);
    case 13: return par(par(zl + zc, zla), zca);
    case 17: return par(zl + zc, zla + zca);
    case 18: return par(zl, zc) + par(zla, zca);
    case 19: return par(zl, zc) + zla + zca;
    case 20: return par(zl + zc, zla);
    case 21: return par(zl, zc) + zla;
    case 22: return par(zl + zc, zla) + zca;
    case 23: return par(zl + zc, zca) + zla;
    case 24: return par(par(zl, zc) + zca, zla);
    }
    return {NAN, NAN};
}

// Impedance of a series arm or admittance of a shunt arm, lossless; a wire (6) in a series
// place and an open (38) in a shunt place are nothing at all.
inline cplx armvalue(const Dipole& p, double w, bool shunt) {
    if (p.type == 6 || p.type == 38) return 0.0;
    const cplx z = seriesform(p, w);
    return shunt ? 1.0 / z : z;
}

// Insertion loss in dB of slot s at w rad/s, dipole 1 the source and the last the load,
// both resistances divided by r0 (for normalised ladders).
inline double insertionloss(int s, double w, double r0 = 1) {
    const DesignSlot& sl = slot(s);
    Chain m;
    const int n = sl.count();
    for (int d = 2; d < n; ++d) {
        const cplx v = armvalue(sl.dip(d), w, d % 2 == 0);
        if (d % 2) m.series(v); else m.shunt(v);
    }
    return -10 * std::log10(m.gain(sl.dip(1).R / r0, sl.dip(n).R / r0));
}

// The loss of a direct connection of unequal resistors.
inline double mismatchloss(double rs, double rl) { return 10 * std::log10((rs + rl) * (rs + rl) / (4 * rs * rl)); }

} // namespace zelk::test
