// An independent two-port analysis of a finished ladder for the tests: the chain matrix
// of the arms between the source and load resistors, and from it the insertion loss in
// dB (transducer gain relative to a matched source), at a frequency in rad/s.
#pragma once

#include <cmath>
#include <complex>

#include "core/designstore.h"

namespace zelk::test {

using cplx = std::complex<double>;

// Impedance of a series arm or admittance of a shunt arm, by the layout of each type.
inline cplx armvalue(const Dipole& p, double w) {
    const cplx j(0, 1);
    auto zl = [&](double L) { return j * w * L; };
    auto zc = [&](double C) { return 1.0 / (j * w * C); };
    switch (p.type) {
    case 2: return zl(p.L);                          // series L
    case 3: return zc(p.C);                          // series C
    case 4: return zl(p.L) + zc(p.C);                // series L-C in series
    case 5: return 1.0 / (1.0 / zl(p.L) + 1.0 / zc(p.C)); // series L||C
    case 6: return 0.0;                              // wire
    case 32: return 1.0 / zl(p.L);                   // shunt L (admittance)
    case 33: return 1.0 / zc(p.C);                   // shunt C
    case 34: return 1.0 / (zl(p.L) + zc(p.C));       // shunt L-C in series
    case 35: return 1.0 / zl(p.L) + 1.0 / zc(p.C);   // shunt L||C
    case 38: return 0.0;                             // open
    default: return NAN;
    }
}

// Insertion loss in dB of slot s at w rad/s, with dipole 1 as source and the last as load.
inline double insertionloss(int s, double w) {
    const DesignSlot& sl = slot(s);
    cplx A = 1, B = 0, C = 0, D = 1;
    const int n = sl.count();
    for (int d = 2; d < n; ++d) {
        const cplx v = armvalue(sl.dip(d), w);
        cplx a = 1, b = 0, c = 0, e = 1;
        if (d % 2) b = v; else c = v;
        const cplx nA = A * a + B * c, nB = A * b + B * e, nC = C * a + D * c, nD = C * b + D * e;
        A = nA, B = nB, C = nC, D = nD;
    }
    const double rs = sl.dip(1).R, rl = sl.dip(n).R;
    const double gain = 4 * rs * rl / std::norm(A * rl + B + C * rs * rl + D * rs);
    return -10 * std::log10(gain);
}

// The loss of a direct connection of unequal resistors.
inline double mismatchloss(double rs, double rl) { return 10 * std::log10((rs + rl) * (rs + rl) / (4 * rs * rl)); }

} // namespace zelk::test
