#include "analysis/walkers.h"

#include <cmath>

#include "core/designstore.h"
#include "core/dipoles.h"
#include "core/hostmath.h"

namespace zelk {

namespace {

// A division of the walk as the host does it: x/0 is "Division by zero", 0/0 "Overflow".
inline double wdiv(double a, double b) {
    if (b == 0) raisefault(a == 0 ? 6 : 11);
    return a / b;
}

// The principal-value arctangent of y/x, or a quarter turn by the sign of y when x is
// exactly 0 (the sign of 0 being 0).
inline double arm_angle(double y, double x) {
    if (x == 0) return (PI / 2) * Sgn(y);
    return std::atan(y / x);
}

} // namespace

void forwardwalk(int s) {
    WalkValues& w = walk;
    double& Zr = store.Zr;
    double& Zi = store.Zi;
    w.Rt = 0, w.Xt = 0, Zr = 0, Zi = 0, w.Vratio = 1, w.Vphase = 0;
    const int n = slot(s).count();
    for (int d = 1; d <= n; d += 2) {
        dipoleimmittance(d, s);
        if (store.abortanalysis) return;
        // Series arm.
        w.Rt = w.Rt + Zr;
        w.Xt = w.Xt + Zi;
        double den = w.Xt * w.Xt + w.Rt * w.Rt;
        w.Gt = wdiv(w.Rt, den);
        w.Bt = wdiv(-w.Xt, den);
        w.Zmag = std::sqrt(den);
        if (d == 1) w.Zmag1 = w.Zmag;

        dipoleimmittance(d + 1, s);
        if (store.abortanalysis) return;
        // Shunt arm: the divider of the running source impedance and the arm.
        double a1 = arm_angle(Zi, Zr);
        double a2 = arm_angle(Zi + w.Xt, Zr + w.Rt);
        w.Vphase = w.Vphase + a1 - a2;
        w.Zdmag = std::sqrt(Zi * Zi + Zr * Zr);
        w.Rsum = Zr + w.Rt;
        w.Xsum = Zi + w.Xt;
        w.Zsummag = std::sqrt(w.Xsum * w.Xsum + w.Rsum * w.Rsum);
        w.Vratio = wdiv(w.Zdmag * w.Vratio, w.Zsummag);
        w.Gt = store.Yr + w.Gt;
        w.Bt = store.Yi + w.Bt;
        den = w.Bt * w.Bt + w.Gt * w.Gt;
        w.Rt = wdiv(w.Gt, den);
        w.Xt = wdiv(-w.Bt, den);
        // The floor of every response, about -240 dB.
        if (w.Vratio < 1e-12) w.Vratio = 1e-12;
    }
}

void backwardwalk(int s) {
    WalkValues& w = walk;
    w.Rt = w.Xt = w.Gt = w.Bt = 0;
    const int n = slot(s).count();
    for (int d = n; d >= 2; d -= 2) {
        dipoleimmittance(d, s);
        if (store.abortanalysis) return;
        w.Gt = store.Yr + w.Gt;
        w.Bt = store.Yi + w.Bt;
        double den = w.Bt * w.Bt + w.Gt * w.Gt;
        if (den == 0) den = 1e-18;
        w.Rt = w.Gt / den;
        w.Xt = -w.Bt / den;
        if (d > 2) {
            dipoleimmittance(d - 1, s);
            if (store.abortanalysis) return;
            w.Rt = store.Zr + w.Rt;
            w.Xt = store.Zi + w.Xt;
            den = w.Xt * w.Xt + w.Rt * w.Rt;
            if (den == 0) den = 1e-18;
            w.Gt = w.Rt / den;
            w.Bt = -w.Xt / den;
        }
    }
}

} // namespace zelk
