#include "core/dipoles.h"

#include <cfenv>
#include <cmath>

#include "core/designstore.h"
#include "core/desktop.h"
#include "core/hostmath.h"

namespace zelk {

namespace {

constexpr int FAULTFLAGS = FE_DIVBYZERO | FE_OVERFLOW | FE_INVALID;

// The floating-point flags are read and cleared through calls the optimiser cannot see
// into or move arithmetic across, so that a flag belongs to the statements between them.
// On x86-64 all double arithmetic runs in the SSE unit, so its status register alone
// holds the flags; reading it directly costs a few cycles where the full floating-point
// environment (x87 included) costs a hundred, and this runs for every dipole of every
// sweep point.
#if defined(__x86_64__) && defined(__SSE2__)
constexpr unsigned MXCSR_FLAGS = 0x3f; // IE DE ZE OE UE PE
[[gnu::noinline]] void clearflags() {
    unsigned csr;
    asm volatile("stmxcsr %0" : "=m"(csr)::"memory");
    csr &= ~MXCSR_FLAGS;
    asm volatile("ldmxcsr %0" ::"m"(csr) : "memory");
}
[[gnu::noinline]] int testflags() {
    unsigned csr;
    asm volatile("stmxcsr %0" : "=m"(csr)::"memory");
    int flags = 0;
    if (csr & 0x01) flags |= FE_INVALID;
    if (csr & 0x04) flags |= FE_DIVBYZERO;
    if (csr & 0x08) flags |= FE_OVERFLOW;
    return flags;
}
#else
[[gnu::noinline]] void clearflags() {
    asm volatile("" ::: "memory");
    std::feclearexcept(FAULTFLAGS);
    asm volatile("" ::: "memory");
}
[[gnu::noinline]] int testflags() {
    asm volatile("" ::: "memory");
    return std::fetestexcept(FAULTFLAGS);
}
#endif
template <class F> [[gnu::noinline]] double runstatement(F& f) {
    asm volatile("" ::: "memory");
    return f();
}

// The clean path: every statement is a plain assignment; faults are found afterwards
// from the floating-point flags and a finite check of everything the routine writes.
struct FastRun {
    template <class F> void set(double& target, F f) { target = f(); }
};

// The user chose Abort in the error box.
struct AbortEvaluation {};

// The path after a fault: the evaluation is run again statement by statement, and the
// statement that faults brings up the box. Retry runs it again; Ignore leaves its target
// as it was and goes on with the next statement, as the host's error handler does.
struct CarefulRun {
    int d, s;
    bool boxshown = false;
    template <class F> void set(double& target, F f) {
        for (;;) {
            int number = 0;
            double v = 0;
            clearflags();
            try {
                v = runstatement(f);
            } catch (const RuntimeFault& rf) {
                number = rf.number;
            }
            if (number == 0) {
                int flags = testflags();
                if (flags & FE_DIVBYZERO) number = 11;
                else if (flags != 0 || !std::isfinite(v)) number = 6;
            }
            if (number == 0) {
                target = v;
                return;
            }
            boxshown = true;
            int answer = MsgBox(analysiserrortext(number, d, s), vbAbortRetryIgnore, "ANALYSIS ERROR");
            if (answer == vbAbort) throw AbortEvaluation{};
            if (answer == vbIgnore) return;
        }
    }
};

// One statement of the catalogue: target = expression, under the run's fault handling.
#define SET(target, ...) e.set(target, [&]() -> double { return (__VA_ARGS__); })

// The evaluation of one dipole, written once for both runs. zs is the impedance scale
// (zscale) of this call, which starts at 1.
template <class E> void evaluate(E& e, const Dipole& dp, int d, double wA, double& zs) {
    double& Zr = store.Zr;
    double& Zi = store.Zi;
    double& Yr = store.Yr;
    double& Yi = store.Yi;
    WalkValues& w = walk;
    double den = 0;

    auto q = [&](double L, double Q) { return Q > 0 ? wA * L / Q : 1e-06; };
    auto p = [&](double L, double Q) { return Q > 0 ? ((1 / wA) / L) / Q : 1e-06; };
    // inv(a, b) into the pair (x, y).
    auto inv = [&](double& x, double& y, const double& a, const double& b) {
        SET(den, a * a + b * b);
        SET(x, a / den);
        SET(y, -b / den);
    };
    auto invZ = [&] { inv(Yr, Yi, Zr, Zi); }; // Yr, Yi = inv(Zr, Zi)
    auto invY = [&] { inv(Zr, Zi, Yr, Yi); }; // Zr, Zi = inv(Yr, Yi)
    // Series L and C.
    auto S = [&](double L, double C, double Q) {
        SET(Zr, q(L, Q));
        SET(Zi, wA * L - (1 / wA) / C);
        invZ();
    };
    // Parallel L and C (tank), with the guard for exact resonance.
    auto P = [&](double L, double C, double Q) {
        SET(Yr, p(L, Q));
        SET(Yi, wA * C - (1 / wA) / L);
        if (Yi == 0) SET(Yi, 1e-18);
        invY();
    };
    // The dipole's own crystal, without its holder capacitance.
    auto X = [&] {
        SET(Zr, dp.Rs);
        if (Zr == 0) SET(Zr, 1e-06);
        SET(Zi, wA * dp.Ls - (1 / wA) / dp.Cs);
        invZ();
    };
    // The capacitor of a composite: no loss resistance.
    auto cap = [&](double C) {
        SET(Zr, 0);
        SET(Zi, (-1 / wA) / C);
        SET(Yr, 0);
        SET(Yi, -1 / Zi);
    };
    double K2 = 0;
    // Transformer steps on the walker's running values.
    auto t1 = [&](double K) {
        SET(zs, zs * K2);
        SET(w.Rt, w.Rt / K2);
        SET(w.Xt, w.Xt / K2);
        SET(w.Vratio, w.Vratio / K);
        inv(w.Gt, w.Bt, w.Rt, w.Xt);
    };
    auto t2 = [&](double K) {
        SET(zs, zs / K2);
        SET(w.Rt, w.Rt * K2);
        SET(w.Xt, w.Xt * K2);
        SET(w.Vratio, w.Vratio * K);
        inv(w.Gt, w.Bt, w.Rt, w.Xt);
    };
    // The shunt half of the forward walk, for the composites.
    double a1 = 0, a2 = 0;
    auto shuntstep = [&] {
        if (Zr == 0) SET(a1, (PI / 2) * Sgn(Zi));
        else SET(a1, std::atan(Zi / Zr));
        if (Zr + w.Rt == 0) SET(a2, (PI / 2) * Sgn(Zi + w.Xt));
        else SET(a2, std::atan((Zi + w.Xt) / (Zr + w.Rt)));
        SET(w.Vphase, w.Vphase + a1 - a2);
        SET(w.Zdmag, std::sqrt(Zi * Zi + Zr * Zr));
        SET(w.Rsum, Zr + w.Rt);
        SET(w.Xsum, Zi + w.Xt);
        SET(w.Zsummag, std::sqrt(w.Xsum * w.Xsum + w.Rsum * w.Rsum));
        SET(w.Vratio, w.Zdmag * w.Vratio / w.Zsummag);
        SET(w.Gt, Yr + w.Gt);
        SET(w.Bt, Yi + w.Bt);
        SET(den, w.Bt * w.Bt + w.Gt * w.Gt);
        SET(w.Rt, w.Gt / den);
        SET(w.Xt, -w.Bt / den);
        if (w.Vratio < 1e-12) SET(w.Vratio, 1e-12);
    };
    auto seriesstep = [&](bool zmag1rule) {
        SET(w.Rt, w.Rt + Zr);
        SET(w.Xt, w.Xt + Zi);
        SET(den, w.Rt * w.Rt + w.Xt * w.Xt);
        inv(w.Gt, w.Bt, w.Rt, w.Xt);
        SET(w.Zmag, std::sqrt(den));
        if (zmag1rule && d == 1) SET(w.Zmag1, w.Zmag);
    };

    const int type = dp.type;
    if (type == 44 || (type >= 55 && type <= 66) || type == 11 || type == 41 || type == 14 ||
        type == 36)
        SET(K2, dp.K * dp.K);

    switch (type) {
    case 1:
    case 31: // resistor
        SET(Zr, dp.R);
        SET(Zi, 0);
        SET(Yr, 1 / dp.R);
        SET(Yi, 0);
        break;
    case 2:
    case 32: // inductor
        SET(Zr, q(dp.L, dp.Qu));
        SET(Zi, wA * dp.L);
        invZ();
        break;
    case 3:
    case 33: // capacitor: 1e-06 in both results, so they are not inverses
        SET(Zr, 1e-06);
        SET(Zi, (-1 / wA) / dp.C);
        SET(Yr, 1e-06);
        SET(Yi, -1 / Zi);
        break;
    case 4:
    case 34: S(dp.L, dp.C, dp.Qu); break;
    case 5:
    case 35: P(dp.L, dp.C, dp.Qu); break;
    case 6: // empty place: a wire in series, nothing in shunt
        SET(Zr, 0);
        SET(Zi, 0);
        SET(Yr, 0);
        SET(Yi, 0);
        break;
    case 7:
    case 37: // crystal
        X();
        SET(Yi, Yi + wA * dp.Cp);
        invY();
        break;
    case 8:
    case 38: // open circuit
        SET(Zr, 1000000000000.0);
        SET(Zi, 0);
        SET(Yr, 0);
        SET(Yi, 0);
        break;
    case 9:
    case 39: // series LC across Ca
        S(dp.L, dp.C, dp.Qu);
        SET(Yi, Yi + wA * dp.Ca);
        invY();
        break;
    case 10:
    case 40: // tank in series with Ca; Yr is den/den, 1 siemens, on purpose
        P(dp.L, dp.C, dp.Qu);
        SET(Zi, Zi - (1 / wA) / dp.Ca);
        SET(den, Zr * Zr + Zi * Zi);
        SET(Yr, den / den);
        SET(Yi, -Zi / den);
        break;
    case 11:
    case 41: // tank on a tap
        SET(Yr, 1e-06);
        if (dp.Qu > 0) SET(Yr, ((1 / wA) / dp.Qu) / (dp.L * K2));
        SET(Yi, (wA * dp.C) / K2 - (1 / wA) / (dp.L * K2));
        invY();
        break;
    case 14:
    case 36: // tank on a tap with Ca at the tap
        SET(Yr, 1e-06);
        if (dp.Qu > 0) SET(Yr, ((1 / wA) / dp.Qu) / (dp.L * K2));
        SET(Yi, wA * (dp.Ca / K2 + dp.C) - (1 / wA) / (dp.L * K2));
        invY();
        break;
    case 12:
    case 42: // tank in series with La, all across Ca; the loss of L stands for La too
        P(dp.L, dp.C, dp.Qu);
        if (dp.Qu > 0) SET(Zr, Zr + wA * dp.L / dp.Qu);
        SET(Zi, Zi + wA * dp.La);
        invZ();
        SET(Yi, Yi + wA * dp.Ca);
        invY();
        break;
    case 13:
    case 43: // series LC across La and Ca
        S(dp.L, dp.C, dp.Qu);
        if (dp.Qa > 0) SET(Yr, Yr + ((1 / wA) / dp.La) / dp.Qa);
        SET(Yi, Yi + wA * dp.Ca - (1 / wA) / dp.La);
        invY();
        break;
    case 44: { // transformed series arm, with the Cp of the current slot's design crystal
        SET(Zr, dp.R / K2);
        if (Zr == 0) SET(Zr, 1e-06);
        SET(Zi, (wA / dp.L) / K2 - 1 / ((wA * dp.C) * K2));
        SET(den, Zr * Zr + Zi * Zi);
        SET(Yr, den / den);
        if (dp.Qa > 0) SET(Yr, Yr + 1 / (((wA * dp.La) / K2) * dp.Qa));
        SET(Yi, -Zi / den +
                    wA * ((dp.Ca + slot(store.curslot).Cp * K2) - ((1 / wA) / dp.La) * K2));
        invY();
        break;
    }
    case 15:
    case 45: // crystal with C across it
        X();
        SET(Yi, Yi + wA * (dp.C + dp.Cp));
        invY();
        break;
    case 16:
    case 46: // crystal in series with C
        X();
        SET(Yi, Yi + wA * dp.Cp);
        invY();
        SET(Zi, Zi - (1 / wA) / dp.C);
        invZ();
        break;
    case 27: // crystal with C across it, in series with Ca
        X();
        SET(Yi, Yi + wA * (dp.C + dp.Cp));
        invY();
        SET(Zi, Zi - (1 / wA) / dp.Ca);
        SET(den, Zr * Zr + Zi * Zi);
        SET(Yr, den / den);
        SET(Yi, -Zi / den);
        break;
    case 17:
    case 47:
    case 29: { // two series LC branches in parallel, R across on 29
        S(dp.L, dp.C, dp.Qu);
        double r2 = 0, x2 = 0;
        if (dp.Qa > 0) SET(r2, wA * dp.La / dp.Qa);
        SET(x2, wA * dp.La - (1 / wA) / dp.Ca);
        SET(den, r2 * r2 + x2 * x2);
        SET(Yr, Yr + r2 / den);
        SET(Yi, Yi - x2 / den);
        if (type == 29) SET(Yr, 1 / dp.R + Yr);
        invY();
        break;
    }
    case 18:
    case 48:
    case 68: { // two tanks in series; the first tank's real part is dropped on purpose
        P(dp.L, dp.C, dp.Qu);
        double g2 = 0, b2 = 0;
        if (dp.Qa > 0) SET(g2, ((1 / wA) / dp.La) / dp.Qa);
        SET(b2, wA * dp.Ca - (1 / wA) / dp.La);
        SET(den, g2 * g2 + b2 * b2);
        SET(Zi, Zi - b2 / den);
        SET(Zr, g2 / den);
        if (type == 68) SET(Zr, Zr + dp.R);
        invZ();
        break;
    }
    case 19:
    case 49: // tank, La and Ca in series
        P(dp.L, dp.C, dp.Qu);
        if (dp.Qa > 0) SET(Zr, Zr + wA * dp.La / dp.Qa);
        SET(Zi, Zi - (1 / wA) / dp.Ca + wA * dp.La);
        invZ();
        break;
    case 20:
    case 50: // series LC across La
        S(dp.L, dp.C, dp.Qu);
        if (dp.Qa > 0) SET(Yr, Yr + ((1 / wA) / dp.La) / dp.Qa);
        SET(Yi, Yi - (1 / wA) / dp.La);
        invY();
        break;
    case 21:
    case 51: // tank in series with La: the last step recomputes the tank alone, so La
             // and Qa have no effect. Kept as it always was.
        P(dp.L, dp.C, dp.Qu);
        if (dp.Qa > 0) SET(Zr, Zr + wA * dp.La / dp.Qa);
        SET(Zi, Zi + wA * dp.La);
        SET(den, Yr * Yr + Yi * Yi);
        SET(Zr, Yr / den);
        SET(Zi, -Yi / den);
        break;
    case 22:
    case 52: // series LC across La, in series with Ca
        S(dp.L, dp.C, dp.Qu);
        SET(Yi, Yi - (1 / wA) / dp.La);
        if (dp.Qa > 0) SET(Yr, Yr + ((1 / wA) / dp.La) / dp.Qa);
        invY();
        SET(Zi, Zi - (1 / wA) / dp.Ca);
        invZ();
        break;
    case 23:
    case 53: // series LC across Ca, in series with La
        S(dp.L, dp.C, dp.Qu);
        SET(Yi, Yi + wA * dp.Ca);
        invY();
        if (dp.Qa > 0) SET(Zr, Zr + wA * dp.La / dp.Qa);
        SET(Zi, Zi + wA * dp.La);
        invZ();
        break;
    case 24:
    case 54: // tank in series with Ca, across La
        P(dp.L, dp.C, dp.Qu);
        SET(Zi, Zi - (1 / wA) / dp.Ca);
        invZ();
        if (dp.Qa > 0) SET(Yr, Yr + ((1 / wA) / dp.La) / dp.Qa);
        SET(Yi, Yi - (1 / wA) / dp.La);
        invY();
        break;
    case 28: // series RLC
        SET(Zr, dp.R);
        if (dp.Qu > 0) SET(Zr, Zr + wA * dp.L / dp.Qu);
        SET(Zi, wA * dp.L - (1 / wA) / dp.C);
        invZ();
        break;
    case 67: // tank in series with R; Yr takes the imaginary part, on purpose
        SET(Yr, p(dp.L, dp.Qu));
        SET(Yi, wA * dp.C - (1 / wA) / dp.L);
        if (Yi == 0) SET(Yi, 1e-18);
        SET(den, Yr * Yr + Yi * Yi);
        SET(Zr, Yr / den + dp.R);
        SET(Zi, -Yi / den);
        SET(den, Zr * Zr + Zi * Zi);
        SET(Yr, Zi / den);
        SET(Yi, -Zi / den);
        break;
    case 55: // step-down to a tank
        t1(dp.K);
        P(dp.L, dp.C, dp.Qu);
        break;
    case 56: // step-up to a tank, no resonance guard
        t2(dp.K);
        SET(Yr, p(dp.L, dp.Qu));
        SET(Yi, (wA * dp.C) / K2 - ((1 / wA) / dp.L) / K2);
        invY();
        break;
    case 59: t1(dp.K); break; // the previous dipole's results stand
    case 60: t2(dp.K); break;
    case 65: // step-down to a tank with Ca at the tap
        t1(dp.K);
        SET(Yr, p(dp.L, dp.Qu));
        SET(Yi, wA * (dp.Ca + dp.C * K2) - (1 / wA) / dp.L);
        invY();
        break;
    case 66: // step-up to a tank with Ca
        t2(dp.K);
        SET(Yr, p(dp.L, dp.Qu));
        SET(Yi, wA * (dp.Ca / K2 + dp.C) - ((1 / wA) / dp.L) / K2);
        invY();
        break;
    case 61: // step-down to an inductor
        t1(dp.K);
        SET(Zr, q(dp.L, dp.Qu));
        SET(Zi, wA * dp.L);
        invZ();
        break;
    case 62: { // step-up to an inductor
        t2(dp.K);
        double Lx = 0;
        SET(Lx, dp.L * K2);
        SET(Zr, q(Lx, dp.Qu));
        SET(Zi, wA * Lx);
        invZ();
        break;
    }
    case 57: // shunt Ca, series C, shunt L
        cap(dp.Ca);
        shuntstep();
        cap(dp.C);
        seriesstep(false);
        SET(Zr, q(dp.L, dp.Qu));
        SET(Zi, wA * dp.L);
        invZ();
        break;
    case 58: // shunt L, series C, shunt Ca
        SET(Zr, q(dp.L, dp.Qu));
        SET(Zi, wA * dp.L);
        invZ();
        shuntstep();
        cap(dp.C);
        seriesstep(false);
        cap(dp.Ca);
        break;
    case 69:
    case 70:
    case 71:
    case 72:
    case 73: { // coupled coils as a T of inductors; the second leg (La - M or L - M with
               // Qa) never enters a result, so it is not formed here
        double M = 0, Lm = 0, Cm = 0;
        SET(M, std::sqrt(dp.L * dp.La) * dp.K);
        if (type <= 71) {
            SET(Lm, dp.L - M);
            SET(Cm, dp.C);
        } else {
            SET(Lm, dp.La - M);
            if (type == 72) SET(Cm, dp.Ca);
        }
        if (type <= 71) {
            SET(Zr, 1e-06);
            SET(Zi, (-1 / wA) / Cm);
            SET(Yr, 1e-06);
            SET(Yi, -1 / Zi);
            shuntstep();
        } else {
            SET(Zr, 1000000000000.0);
            SET(Zi, 0);
            SET(Yr, 0);
            SET(Yi, 0);
        }
        SET(Zr, q(Lm, dp.Qu));
        if (type == 72) SET(Zi, wA * Lm - (1 / wA) / Cm);
        else SET(Zi, wA * Lm);
        invZ();
        seriesstep(true);
        SET(Zr, q(M, dp.Qu));
        SET(Zi, wA * M);
        invZ();
        seriesstep(true);
        if (type == 70) {
            S(dp.L, dp.C, dp.Qu);
            seriesstep(true);
        }
        break;
    }
    default: break; // 25, 26, 30, 63, 64 and unknown types: results as they were
    }
}

#undef SET

struct Snapshot {
    double Zr, Zi, Yr, Yi;
    WalkValues w;
};

bool allfinite(double zs) {
    const WalkValues& w = walk;
    return std::isfinite(store.Zr) && std::isfinite(store.Zi) && std::isfinite(store.Yr) &&
           std::isfinite(store.Yi) && std::isfinite(zs) && std::isfinite(w.Rt) &&
           std::isfinite(w.Xt) && std::isfinite(w.Gt) && std::isfinite(w.Bt) &&
           std::isfinite(w.Zmag) && std::isfinite(w.Zmag1) && std::isfinite(w.Zdmag) &&
           std::isfinite(w.Rsum) && std::isfinite(w.Xsum) && std::isfinite(w.Zsummag) &&
           std::isfinite(w.Vratio) && std::isfinite(w.Vphase);
}

} // namespace

std::string analysiserrortext(int number, int d, int s) {
    return "ERROR " + std::to_string(number) + ", " + faultdescription(number) + " In DIPOLE " +
           std::to_string(d) + " of FILTER " + std::to_string(s + 1) + "\n" +
           "Filter is probably unrealizable due to a component having a negative or zero value.\n"
           "Check the parts list for negative or zero or missing component values.";
}

void dipoleimmittance(int d, int s) {
    const double wA = store.wA;
    // The record itself: a dipole or slot number outside the tables is a fault of this
    // routine too, and comes to the same box.
    const Dipole* dp = nullptr;
    for (;;) {
        try {
            dp = &dipole(s, d);
            break;
        } catch (const RuntimeFault& rf) {
            int answer = MsgBox(analysiserrortext(rf.number, d, s), vbAbortRetryIgnore, "ANALYSIS ERROR");
            if (answer == vbAbort) store.abortanalysis = true;
            if (answer != vbRetry) return;
        }
    }

    const Snapshot before{store.Zr, store.Zi, store.Yr, store.Yi, walk};
    double zs = 1;
    bool fault = false;
    clearflags();
    try {
        FastRun e;
        evaluate(e, *dp, d, wA, zs);
        fault = testflags() != 0 || !allfinite(zs);
    } catch (const RuntimeFault&) {
        fault = true;
    }
    if (!fault) {
        if (store.zscale.kind() != Number::Kind::Double || store.zscale.value() != zs) store.zscale = zs;
        return;
    }

    // A fault: start again from the values as they stood and find the statement.
    for (;;) {
        store.Zr = before.Zr, store.Zi = before.Zi, store.Yr = before.Yr, store.Yi = before.Yi;
        walk = before.w;
        zs = 1;
        CarefulRun e{d, s};
        try {
            evaluate(e, *dp, d, wA, zs);
        } catch (const AbortEvaluation&) {
            store.abortanalysis = true;
            store.zscale = zs;
            clearflags();
            return;
        }
        clearflags();
        store.zscale = zs;
        if (e.boxshown || allfinite(zs)) return;
        // Every statement was clean but a value came in non-finite and stays so.
        int answer = MsgBox(analysiserrortext(6, d, s), vbAbortRetryIgnore, "ANALYSIS ERROR");
        if (answer == vbAbort) store.abortanalysis = true;
        if (answer != vbRetry) return;
    }
}

} // namespace zelk
