#include "core/dipoles.h"

#include <cfenv>
#include <cmath>

#include "core/designstore.h"
#include "core/dipolecatalogue.h"
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

// The evaluation of one dipole, written once for both runs: the parts every form shares,
// then one routine per family of forms. zs is the impedance scale (zscale) of this call,
// which starts at 1. den, K2, a1 and a2 live for the whole evaluation: a statement the
// user skips in the error box leaves them as they were for the statements after it.
template <class E> struct Evaluation {
    E& e;
    const Dipole& dp;
    const int d;
    const double wA;
    double& zs;
    double& Zr = store.Zr;
    double& Zi = store.Zi;
    double& Yr = store.Yr;
    double& Yi = store.Yi;
    WalkValues& w = walk;
    double den = 0, K2 = 0, a1 = 0, a2 = 0;

    double q(double L, double Q) const { return Q > 0 ? wA * L / Q : 1e-06; }
    double p(double L, double Q) const { return Q > 0 ? ((1 / wA) / L) / Q : 1e-06; }
    // inv(a, b) into the pair (x, y).
    void inv(double& x, double& y, const double& a, const double& b) {
        SET(den, a * a + b * b);
        SET(x, a / den);
        SET(y, -b / den);
    }
    void invZ() { inv(Yr, Yi, Zr, Zi); } // Yr, Yi = inv(Zr, Zi)
    void invY() { inv(Zr, Zi, Yr, Yi); } // Zr, Zi = inv(Yr, Yi)
    // Series L and C.
    void S(double L, double C, double Q) {
        SET(Zr, q(L, Q));
        SET(Zi, wA * L - (1 / wA) / C);
        invZ();
    }
    // Parallel L and C (tank), with the guard for exact resonance.
    void P(double L, double C, double Q) {
        SET(Yr, p(L, Q));
        SET(Yi, wA * C - (1 / wA) / L);
        if (Yi == 0) SET(Yi, 1e-18);
        invY();
    }
    // The dipole's own crystal, without its holder capacitance.
    void X() {
        SET(Zr, dp.Rs);
        if (Zr == 0) SET(Zr, 1e-06);
        SET(Zi, wA * dp.Ls - (1 / wA) / dp.Cs);
        invZ();
    }
    // An inductor with its loss q(L, Q).
    void coil(double L) {
        SET(Zr, q(L, dp.Qu));
        SET(Zi, wA * L);
        invZ();
    }
    // The capacitor of a composite: no loss resistance.
    void cap(double C) {
        SET(Zr, 0);
        SET(Zi, (-1 / wA) / C);
        SET(Yr, 0);
        SET(Yi, -1 / Zi);
    }
    // The capacitor with the 1e-06 in both results, so that they are not inverses.
    void residualcap(double C) {
        SET(Zr, 1e-06);
        SET(Zi, (-1 / wA) / C);
        SET(Yr, 1e-06);
        SET(Yi, -1 / Zi);
    }
    void open() {
        SET(Zr, 1000000000000.0);
        SET(Zi, 0);
        SET(Yr, 0);
        SET(Yi, 0);
    }
    // Transformer steps on the walker's running values.
    void t1(double K) {
        SET(zs, zs * K2);
        SET(w.Rt, w.Rt / K2);
        SET(w.Xt, w.Xt / K2);
        SET(w.Vratio, w.Vratio / K);
        inv(w.Gt, w.Bt, w.Rt, w.Xt);
    }
    void t2(double K) {
        SET(zs, zs / K2);
        SET(w.Rt, w.Rt * K2);
        SET(w.Xt, w.Xt * K2);
        SET(w.Vratio, w.Vratio * K);
        inv(w.Gt, w.Bt, w.Rt, w.Xt);
    }
    // The shunt half of the forward walk, for the composites.
    void shuntstep() {
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
    }
    void seriesstep(bool zmag1rule) {
        SET(w.Rt, w.Rt + Zr);
        SET(w.Xt, w.Xt + Zi);
        SET(den, w.Rt * w.Rt + w.Xt * w.Xt);
        inv(w.Gt, w.Bt, w.Rt, w.Xt);
        SET(w.Zmag, std::sqrt(den));
        if (zmag1rule && d == 1) SET(w.Zmag1, w.Zmag);
    }

    void plain(Eval f);
    void seriespair(Eval f);
    void tankpair(Eval f);
    void tap(Eval f);
    void transformer(Eval f);
    void crystal(Eval f);
    void composite(Eval f);
    void coupled(Eval f);
};

// Single parts, series LC, tank, series RLC, the wire and the open circuit.
template <class E> void Evaluation<E>::plain(Eval f) {
    switch (f) {
    case Eval::Resistor:
        SET(Zr, dp.R);
        SET(Zi, 0);
        SET(Yr, 1 / dp.R);
        SET(Yi, 0);
        break;
    case Eval::Inductor: coil(dp.L); break;
    case Eval::Capacitor: residualcap(dp.C); break;
    case Eval::SeriesLC: S(dp.L, dp.C, dp.Qu); break;
    case Eval::Tank: P(dp.L, dp.C, dp.Qu); break;
    case Eval::Wire: // a wire in series, nothing in shunt
        SET(Zr, 0);
        SET(Zi, 0);
        SET(Yr, 0);
        SET(Yi, 0);
        break;
    case Eval::Open: open(); break;
    case Eval::SeriesRLC:
        SET(Zr, dp.R);
        if (dp.Qu > 0) SET(Zr, Zr + wA * dp.L / dp.Qu);
        SET(Zi, wA * dp.L - (1 / wA) / dp.C);
        invZ();
        break;
    default: break;
    }
}

// A series LC with La, Ca or R across it or after it.
template <class E> void Evaluation<E>::seriespair(Eval f) {
    switch (f) {
    case Eval::SeriesLCAcrossCa:
        S(dp.L, dp.C, dp.Qu);
        SET(Yi, Yi + wA * dp.Ca);
        invY();
        break;
    case Eval::SeriesLCAcrossLaCa:
        S(dp.L, dp.C, dp.Qu);
        if (dp.Qa > 0) SET(Yr, Yr + ((1 / wA) / dp.La) / dp.Qa);
        SET(Yi, Yi + wA * dp.Ca - (1 / wA) / dp.La);
        invY();
        break;
    case Eval::TwoBranches:
    case Eval::TwoBranchesR: { // R across on the second
        S(dp.L, dp.C, dp.Qu);
        double r2 = 0, x2 = 0;
        if (dp.Qa > 0) SET(r2, wA * dp.La / dp.Qa);
        SET(x2, wA * dp.La - (1 / wA) / dp.Ca);
        SET(den, r2 * r2 + x2 * x2);
        SET(Yr, Yr + r2 / den);
        SET(Yi, Yi - x2 / den);
        if (f == Eval::TwoBranchesR) SET(Yr, 1 / dp.R + Yr);
        invY();
        break;
    }
    case Eval::SeriesLCAcrossLa:
        S(dp.L, dp.C, dp.Qu);
        if (dp.Qa > 0) SET(Yr, Yr + ((1 / wA) / dp.La) / dp.Qa);
        SET(Yi, Yi - (1 / wA) / dp.La);
        invY();
        break;
    case Eval::SeriesLCAcrossLaThenCa:
        S(dp.L, dp.C, dp.Qu);
        SET(Yi, Yi - (1 / wA) / dp.La);
        if (dp.Qa > 0) SET(Yr, Yr + ((1 / wA) / dp.La) / dp.Qa);
        invY();
        SET(Zi, Zi - (1 / wA) / dp.Ca);
        invZ();
        break;
    case Eval::SeriesLCAcrossCaThenLa:
        S(dp.L, dp.C, dp.Qu);
        SET(Yi, Yi + wA * dp.Ca);
        invY();
        if (dp.Qa > 0) SET(Zr, Zr + wA * dp.La / dp.Qa);
        SET(Zi, Zi + wA * dp.La);
        invZ();
        break;
    default: break;
    }
}

// A tank with La, Ca or R across it or in series.
template <class E> void Evaluation<E>::tankpair(Eval f) {
    switch (f) {
    case Eval::TankThenCa: // Yr is den/den, 1 siemens, on purpose
        P(dp.L, dp.C, dp.Qu);
        SET(Zi, Zi - (1 / wA) / dp.Ca);
        SET(den, Zr * Zr + Zi * Zi);
        SET(Yr, den / den);
        SET(Yi, -Zi / den);
        break;
    case Eval::TankLaAcrossCa: // the loss of L stands for La too
        P(dp.L, dp.C, dp.Qu);
        if (dp.Qu > 0) SET(Zr, Zr + wA * dp.L / dp.Qu);
        SET(Zi, Zi + wA * dp.La);
        invZ();
        SET(Yi, Yi + wA * dp.Ca);
        invY();
        break;
    case Eval::TwoTanks:
    case Eval::TwoTanksR: { // the first tank's real part is dropped on purpose
        P(dp.L, dp.C, dp.Qu);
        double g2 = 0, b2 = 0;
        if (dp.Qa > 0) SET(g2, ((1 / wA) / dp.La) / dp.Qa);
        SET(b2, wA * dp.Ca - (1 / wA) / dp.La);
        SET(den, g2 * g2 + b2 * b2);
        SET(Zi, Zi - b2 / den);
        SET(Zr, g2 / den);
        if (f == Eval::TwoTanksR) SET(Zr, Zr + dp.R);
        invZ();
        break;
    }
    case Eval::TankLaCa:
        P(dp.L, dp.C, dp.Qu);
        if (dp.Qa > 0) SET(Zr, Zr + wA * dp.La / dp.Qa);
        SET(Zi, Zi - (1 / wA) / dp.Ca + wA * dp.La);
        invZ();
        break;
    case Eval::TankLa: // the last step recomputes the tank alone, so La and Qa have no
                       // effect. Kept as it always was.
        P(dp.L, dp.C, dp.Qu);
        if (dp.Qa > 0) SET(Zr, Zr + wA * dp.La / dp.Qa);
        SET(Zi, Zi + wA * dp.La);
        SET(den, Yr * Yr + Yi * Yi);
        SET(Zr, Yr / den);
        SET(Zi, -Yi / den);
        break;
    case Eval::TankCaAcrossLa:
        P(dp.L, dp.C, dp.Qu);
        SET(Zi, Zi - (1 / wA) / dp.Ca);
        invZ();
        if (dp.Qa > 0) SET(Yr, Yr + ((1 / wA) / dp.La) / dp.Qa);
        SET(Yi, Yi - (1 / wA) / dp.La);
        invY();
        break;
    case Eval::TankThenR: // Yr takes the imaginary part, on purpose
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
    default: break;
    }
}

// Tanks reached through a tap of their coil, and the transformed series arm.
template <class E> void Evaluation<E>::tap(Eval f) {
    switch (f) {
    case Eval::TapTank:
        SET(Yr, 1e-06);
        if (dp.Qu > 0) SET(Yr, ((1 / wA) / dp.Qu) / (dp.L * K2));
        SET(Yi, (wA * dp.C) / K2 - (1 / wA) / (dp.L * K2));
        invY();
        break;
    case Eval::TapTankCa: // Ca at the tap
        SET(Yr, 1e-06);
        if (dp.Qu > 0) SET(Yr, ((1 / wA) / dp.Qu) / (dp.L * K2));
        SET(Yi, wA * (dp.Ca / K2 + dp.C) - (1 / wA) / (dp.L * K2));
        invY();
        break;
    case Eval::TransformedArm: // with the Cp of the current slot's design crystal
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
    default: break;
    }
}

// Steps of the impedance level, alone or to a tank or an inductor.
template <class E> void Evaluation<E>::transformer(Eval f) {
    switch (f) {
    case Eval::StepDownTank:
        t1(dp.K);
        P(dp.L, dp.C, dp.Qu);
        break;
    case Eval::StepUpTank: // no resonance guard
        t2(dp.K);
        SET(Yr, p(dp.L, dp.Qu));
        SET(Yi, (wA * dp.C) / K2 - ((1 / wA) / dp.L) / K2);
        invY();
        break;
    case Eval::StepDown: t1(dp.K); break; // the previous dipole's results stand
    case Eval::StepUp: t2(dp.K); break;
    case Eval::StepDownTankCa: // Ca at the tap
        t1(dp.K);
        SET(Yr, p(dp.L, dp.Qu));
        SET(Yi, wA * (dp.Ca + dp.C * K2) - (1 / wA) / dp.L);
        invY();
        break;
    case Eval::StepUpTankCa:
        t2(dp.K);
        SET(Yr, p(dp.L, dp.Qu));
        SET(Yi, wA * (dp.Ca / K2 + dp.C) - ((1 / wA) / dp.L) / K2);
        invY();
        break;
    case Eval::StepDownCoil:
        t1(dp.K);
        coil(dp.L);
        break;
    case Eval::StepUpCoil: {
        t2(dp.K);
        double Lx = 0;
        SET(Lx, dp.L * K2);
        coil(Lx);
        break;
    }
    default: break;
    }
}

// The crystal, alone or with C across it, C in series, or both and Ca.
template <class E> void Evaluation<E>::crystal(Eval f) {
    X();
    switch (f) {
    case Eval::Crystal:
        SET(Yi, Yi + wA * dp.Cp);
        invY();
        break;
    case Eval::CrystalAcrossC:
        SET(Yi, Yi + wA * (dp.C + dp.Cp));
        invY();
        break;
    case Eval::CrystalThenC:
        SET(Yi, Yi + wA * dp.Cp);
        invY();
        SET(Zi, Zi - (1 / wA) / dp.C);
        invZ();
        break;
    case Eval::CrystalAcrossCThenCa: // 1 siemens, as the tank in series with Ca
        SET(Yi, Yi + wA * (dp.C + dp.Cp));
        invY();
        SET(Zi, Zi - (1 / wA) / dp.Ca);
        SET(den, Zr * Zr + Zi * Zi);
        SET(Yr, den / den);
        SET(Yi, -Zi / den);
        break;
    default: break;
    }
}

// The dividers: three arms in one dipole, walked on the walker's running values.
template <class E> void Evaluation<E>::composite(Eval f) {
    if (f == Eval::DividerIn) { // shunt Ca, series C, shunt L
        cap(dp.Ca);
        shuntstep();
        cap(dp.C);
        seriesstep(false);
        coil(dp.L);
    } else { // shunt L, series C, shunt Ca
        coil(dp.L);
        shuntstep();
        cap(dp.C);
        seriesstep(false);
        cap(dp.Ca);
    }
}

// Coupled coils as a T of inductors; the second leg (La - M or L - M with Qa) never
// enters a result, so it is not formed here.
template <class E> void Evaluation<E>::coupled(Eval f) {
    const bool Lside = f == Eval::Coupled || f == Eval::CoupledThenLC;
    double M = 0, Lm = 0, Cm = 0;
    SET(M, std::sqrt(dp.L * dp.La) * dp.K);
    if (Lside) {
        SET(Lm, dp.L - M);
        SET(Cm, dp.C);
    } else {
        SET(Lm, dp.La - M);
        if (f == Eval::CoupledLaCa) SET(Cm, dp.Ca);
    }
    if (Lside) {
        residualcap(Cm);
        shuntstep();
    } else {
        open();
    }
    SET(Zr, q(Lm, dp.Qu));
    if (f == Eval::CoupledLaCa) SET(Zi, wA * Lm - (1 / wA) / Cm);
    else SET(Zi, wA * Lm);
    invZ();
    seriesstep(true);
    SET(Zr, q(M, dp.Qu));
    SET(Zi, wA * M);
    invZ();
    seriesstep(true);
    if (f == Eval::CoupledThenLC) {
        S(dp.L, dp.C, dp.Qu);
        seriesstep(true);
    }
}

template <class E> void evaluate(E& e, const Dipole& dp, int d, double wA, double& zs) {
    const DipoleType& type = dipoletype(dp.type);
    Evaluation<E> v{e, dp, d, wA, zs};
    if (type.squaresK) SET(v.K2, dp.K * dp.K);
    switch (type.eval) {
    case Eval::None: break; // results as they were
    case Eval::Resistor:
    case Eval::Inductor:
    case Eval::Capacitor:
    case Eval::SeriesLC:
    case Eval::Tank:
    case Eval::Wire:
    case Eval::Open:
    case Eval::SeriesRLC: v.plain(type.eval); break;
    case Eval::SeriesLCAcrossCa:
    case Eval::SeriesLCAcrossLaCa:
    case Eval::TwoBranches:
    case Eval::TwoBranchesR:
    case Eval::SeriesLCAcrossLa:
    case Eval::SeriesLCAcrossLaThenCa:
    case Eval::SeriesLCAcrossCaThenLa: v.seriespair(type.eval); break;
    case Eval::TankThenCa:
    case Eval::TankLaAcrossCa:
    case Eval::TwoTanks:
    case Eval::TwoTanksR:
    case Eval::TankLaCa:
    case Eval::TankLa:
    case Eval::TankCaAcrossLa:
    case Eval::TankThenR: v.tankpair(type.eval); break;
    case Eval::TapTank:
    case Eval::TapTankCa:
    case Eval::TransformedArm: v.tap(type.eval); break;
    case Eval::StepDown:
    case Eval::StepUp:
    case Eval::StepDownTank:
    case Eval::StepUpTank:
    case Eval::StepDownTankCa:
    case Eval::StepUpTankCa:
    case Eval::StepDownCoil:
    case Eval::StepUpCoil: v.transformer(type.eval); break;
    case Eval::Crystal:
    case Eval::CrystalAcrossC:
    case Eval::CrystalThenC:
    case Eval::CrystalAcrossCThenCa: v.crystal(type.eval); break;
    case Eval::DividerIn:
    case Eval::DividerOut: v.composite(type.eval); break;
    case Eval::Coupled:
    case Eval::CoupledThenLC:
    case Eval::CoupledLaCa:
    case Eval::CoupledLa: v.coupled(type.eval); break;
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
