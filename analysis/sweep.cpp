#include "analysis/sweep.h"

#include <cfloat>
#include <cmath>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "analysis/walkers.h"
#include "core/designstore.h"
#include "core/hostmath.h"

// No fused multiply-add in this file: the AVX-512 entry would otherwise contract a*b + c
// into one rounding where the one-point walk rounds twice.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC optimize("fp-contract=off")
#elif defined(__clang__)
#pragma clang fp contract(off)
#endif

namespace zelk {

void sweepfrequencies(double F1, double F2, double* wA, int n) {
    for (int i = 0; i < n; ++i) wA[i] = sweepfrequency(F1, F2, i, store.npoints);
}

bool sweepvalues_onepoint(Quantity q, int s, const double* wA, double* out, int n) {
    GroupDelayState gd;
    for (int i = 0; i < n; ++i) {
        store.wA = wA[i];
        out[i] = response(q, s, gd);
        if (store.abortanalysis) return false;
    }
    return true;
}

namespace {

// ---------------------------------------------------------------------------------------
// The block walk. W sweep points travel through the ladder side by side, one lane each;
// every lane does exactly the operations of the one-point walk and of the dipole
// evaluation, in the same order, so that its numbers are those of the one-point walk.

// Eight lanes: four SSE2 registers per operation, or two AVX registers where the
// processor has them. Each ladder step is a chain of dependent divisions and square
// roots, so several registers side by side keep the divider busy. The lane vectors never
// cross a call boundary: the kernel is inlined whole into one entry per instruction set.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wpsabi"
#endif
constexpr int W = 8;
#define ZELK_INLINE inline __attribute__((always_inline))
typedef double V __attribute__((vector_size(W * sizeof(double))));
typedef long long M __attribute__((vector_size(W * sizeof(double))));

ZELK_INLINE V splat(double x) { return V{} + x; }

ZELK_INLINE V vsqrt(V x) {
#if defined(__SSE2__)
    V r;
    double* pr = reinterpret_cast<double*>(&r);
    const double* px = reinterpret_cast<const double*>(&x);
    for (int k = 0; k < W; k += 2) _mm_storeu_pd(pr + k, _mm_sqrt_pd(_mm_loadu_pd(px + k)));
    return r;
#else
    V r;
    for (int k = 0; k < W; ++k) r[k] = std::sqrt(x[k]);
    return r;
#endif
}

// |x| <= DBL_MAX: false for infinities and NaN.
ZELK_INLINE M finite(V x) {
    V a = x < 0 ? -x : x;
    return a <= DBL_MAX;
}

// The dipole kinds the block walk knows.
enum class Arm : unsigned char {
    Resistor,   // types 1, 31
    Inductor,   // types 2, 32
    Capacitor,  // types 3, 33
    SeriesLC,   // types 4, 34
    ParallelLC, // types 5, 35
    Empty,      // type 6
    Open,       // types 8, 38
};

struct Step {
    Arm kind;
    bool lossy; // Qu > 0
    double R, invR, L, C, Qu;
};

// The ladder as the block walk sees it: dipoles 1 .. last, no allocation.
struct Ladder {
    Step step[MAXDIPOLE + 2];
    int last = 0; // the last dipole walked (count, or count + 1 when count is odd)
};

bool finitevalue(double x) { return std::isfinite(x); }

// Translates dipole d of slot s; false for a type or values the block walk leaves to the
// one-point walk (a zero divisor, a non-finite field, a type it does not know).
bool translate(int s, int d, Step& st) {
    const Dipole& dp = dipole(s, d);
    st = Step{Arm::Empty, false, 0, 0, 0, 0, 0};
    switch (dp.type) {
    case 1:
    case 31:
        st.kind = Arm::Resistor;
        st.R = dp.R;
        if (dp.R == 0 || !finitevalue(dp.R)) return false;
        st.invR = 1 / dp.R;
        return finitevalue(st.invR);
    case 2:
    case 32: st.kind = Arm::Inductor; break;
    case 3:
    case 33:
        st.kind = Arm::Capacitor;
        if (dp.C == 0) return false;
        break;
    case 4:
    case 34:
        st.kind = Arm::SeriesLC;
        if (dp.C == 0) return false;
        break;
    case 5:
    case 35:
        st.kind = Arm::ParallelLC;
        if (dp.L == 0) return false;
        break;
    case 6: st.kind = Arm::Empty; return true;
    case 8:
    case 38: st.kind = Arm::Open; return true;
    default: return false;
    }
    st.L = dp.L;
    st.C = dp.C;
    st.Qu = dp.Qu;
    st.lossy = dp.Qu > 0;
    return finitevalue(dp.L) && finitevalue(dp.C) && finitevalue(dp.Qu);
}

bool buildladder(int s, Ladder& lad) {
    const DesignSlot& sl = slot(s);
    double count = sl.dipolecount.value();
    if (!(count >= 2 && count <= MAXDIPOLE) || count != Int(count)) return false;
    int n = clampint(count, 2, MAXDIPOLE);
    lad.last = n % 2 ? n + 1 : n;
    if (lad.last > MAXDIPOLE) return false;
    for (int d = 1; d <= lad.last; ++d)
        if (!translate(s, d, lad.step[d])) return false;
    return true;
}

// The immittance of one dipole in W lanes. iw is 1/wA. With needy false (a series arm)
// Yr, Yi are not formed where the walk does not use them; ok then records whether they
// would have been finite, as the dipole evaluation's fault check demands.
struct Imm {
    V Zr, Zi, Yr, Yi;
};

template <bool needy>
ZELK_INLINE void evaluate(const Step& st, V w, V iw, Imm& r, M& ok) {
    const V tiny = splat(1e-06);
    switch (st.kind) {
    case Arm::Resistor:
        r.Zr = splat(st.R);
        r.Zi = V{};
        r.Yr = splat(st.invR);
        r.Yi = V{};
        return;
    case Arm::Inductor: {
        V wl = w * st.L;
        r.Zr = st.lossy ? wl / st.Qu : tiny;
        r.Zi = wl;
        V den = r.Zr * r.Zr + r.Zi * r.Zi;
        ok &= den <= DBL_MAX;
        if (needy) {
            r.Yr = r.Zr / den;
            r.Yi = -r.Zi / den;
        } else {
            ok &= den >= DBL_MIN;
        }
        return;
    }
    case Arm::Capacitor:
        r.Zr = tiny;
        r.Zi = (-iw) / st.C;
        r.Yr = tiny;
        if (needy) r.Yi = -1.0 / r.Zi;
        else ok &= r.Zi != 0;
        return;
    case Arm::SeriesLC: {
        V wl = w * st.L;
        r.Zr = st.lossy ? wl / st.Qu : tiny;
        r.Zi = wl - iw / st.C;
        V den = r.Zr * r.Zr + r.Zi * r.Zi;
        ok &= den <= DBL_MAX;
        if (needy) {
            r.Yr = r.Zr / den;
            r.Yi = -r.Zi / den;
        } else {
            ok &= den >= DBL_MIN;
        }
        return;
    }
    case Arm::ParallelLC: {
        V il = iw / st.L;
        r.Yr = st.lossy ? il / st.Qu : tiny;
        V yi = w * st.C - il;
        r.Yi = yi == 0 ? splat(1e-18) : yi;
        V den = r.Yr * r.Yr + r.Yi * r.Yi;
        ok &= den <= DBL_MAX;
        r.Zr = r.Yr / den;
        r.Zi = -r.Yi / den;
        return;
    }
    case Arm::Empty:
        r.Zr = r.Zi = r.Yr = r.Yi = V{};
        return;
    case Arm::Open:
        r.Zr = splat(1000000000000.0);
        r.Zi = r.Yr = r.Yi = V{};
        return;
    }
}

// The principal arctangent of y/x, or pi/2 with the sign of y when x is exactly 0.
ZELK_INLINE double armangle(double y, double x) {
    if (x == 0) return (PI / 2) * Sgn(y);
    return std::atan(y / x);
}

struct LaneResult {
    V Vratio, Vphase, Zmag, Zmag1, Zdmag;
    M ok;
};

// One forward walk of W points.
template <bool phase>
ZELK_INLINE void forwardblock(const Ladder& lad, const double* wlanes, LaneResult& res) {
    V w;
    std::memcpy(&w, wlanes, sizeof w);
    M ok = finite(w) & (w > 0);
    V iw = 1.0 / w;
    V Rt{}, Xt{}, Gt{}, Bt{}, Zmag{}, Zmag1{}, Zdmag{}, Vphase{};
    V Vratio = splat(1);
    Imm a{};
    for (int d = 1; d <= lad.last; d += 2) {
        // Series arm.
        evaluate<false>(lad.step[d], w, iw, a, ok);
        Rt = Rt + a.Zr;
        Xt = Xt + a.Zi;
        V den = Xt * Xt + Rt * Rt;
        Gt = Rt / den;
        Bt = -Xt / den;
        ok &= finite(Rt + Xt + Gt + Bt + den + a.Zr + a.Zi);
        if (d == 1 || d + 1 >= lad.last) {
            Zmag = vsqrt(den);
            if (d == 1) Zmag1 = Zmag;
        }
        // Shunt arm: the divider step.
        evaluate<true>(lad.step[d + 1], w, iw, a, ok);
        if (phase) {
            for (int k = 0; k < W; ++k) {
                double a1 = armangle(a.Zi[k], a.Zr[k]);
                double a2 = armangle(a.Zi[k] + Xt[k], a.Zr[k] + Rt[k]);
                Vphase[k] = Vphase[k] + a1 - a2;
            }
        }
        Zdmag = vsqrt(a.Zi * a.Zi + a.Zr * a.Zr);
        V Rsum = a.Zr + Rt;
        V Xsum = a.Zi + Xt;
        V Zsummag = vsqrt(Xsum * Xsum + Rsum * Rsum);
        Vratio = Zdmag * Vratio / Zsummag;
        Gt = a.Yr + Gt;
        Bt = a.Yi + Bt;
        den = Bt * Bt + Gt * Gt;
        Rt = Gt / den;
        Xt = -Bt / den;
        Vratio = Vratio < 1e-12 ? splat(1e-12) : Vratio;
        ok &= finite(a.Zr + a.Zi + a.Yr + a.Yi + Rsum + Xsum + Zsummag + Zdmag + Vratio + Rt +
                     Xt + Gt + Bt + Vphase);
    }
    res.Vratio = Vratio;
    res.Vphase = Vphase;
    res.Zmag = Zmag;
    res.Zmag1 = Zmag1;
    res.Zdmag = Zdmag;
    res.ok = ok;
}

// The entries, one per instruction set; the same operations in the same order, so the
// same numbers.
void forwardblock_base(const Ladder& lad, const double* w, LaneResult& res, bool phase) {
    if (phase) forwardblock<true>(lad, w, res);
    else forwardblock<false>(lad, w, res);
}

#if defined(__x86_64__) && defined(__GNUC__)
__attribute__((target("avx"))) void forwardblock_avx(const Ladder& lad, const double* w,
                                                       LaneResult& res, bool phase) {
    if (phase) forwardblock<true>(lad, w, res);
    else forwardblock<false>(lad, w, res);
}
__attribute__((target("avx512f"))) void forwardblock_avx512(const Ladder& lad, const double* w,
                                                             LaneResult& res, bool phase) {
    if (phase) forwardblock<true>(lad, w, res);
    else forwardblock<false>(lad, w, res);
}
bool hasavx() {
    static const bool yes = __builtin_cpu_supports("avx");
    return yes;
}
bool hasavx512() {
    static const bool yes = __builtin_cpu_supports("avx512f");
    return yes;
}
#endif

void runblock(const Ladder& lad, const double* w, LaneResult& res, bool phase) {
#if defined(__x86_64__) && defined(__GNUC__)
    if (hasavx512()) return forwardblock_avx512(lad, w, res, phase);
    if (hasavx()) return forwardblock_avx(lad, w, res, phase);
#endif
    forwardblock_base(lad, w, res, phase);
}

bool forwardquantity(Quantity q) {
    switch (q) {
    case Quantity::PEG:
    case Quantity::PIG:
    case Quantity::VEG:
    case Quantity::VIG:
    case Quantity::CEG:
    case Quantity::CIG:
    case Quantity::OutputImpedance:
    case Quantity::Phase:
    case Quantity::GroupDelay: return true;
    default: return false;
    }
}

Ladder ladder; // the block walk's translation of the slot in hand

} // namespace

bool blockwalkable(Quantity q, int s) { return forwardquantity(q) && buildladder(s, ladder); }

bool sweepvalues(Quantity q, int s, const double* wA, double* out, int n) {
    sweepstats = SweepStats{};
    if (!forwardquantity(q) || !buildladder(s, ladder)) {
        sweepstats.onepoints = n;
        return sweepvalues_onepoint(q, s, wA, out, n);
    }
    const bool phase = q == Quantity::Phase || q == Quantity::GroupDelay;
    GroupDelayState gd;
    LaneResult res;
    for (int i0 = 0; i0 < n; i0 += W) {
        double w[W];
        int lanes = n - i0 < W ? n - i0 : W;
        for (int k = 0; k < W; ++k) w[k] = wA[i0 + (k < lanes ? k : lanes - 1)];
        runblock(ladder, w, res, phase);
        for (int k = 0; k < lanes; ++k) {
            int i = i0 + k;
            store.wA = wA[i];
            if (res.ok[k]) {
                walk.Vratio = res.Vratio[k];
                walk.Vphase = res.Vphase[k];
                walk.Zmag = res.Zmag[k];
                walk.Zmag1 = res.Zmag1[k];
                walk.Zdmag = res.Zdmag[k];
                out[i] = responsefromwalk(q, gd);
                ++sweepstats.blockpoints;
            } else {
                // Outside the finite numbers: the one-point walk gives the point, and its
                // fault prompt where the dipole evaluation faults.
                out[i] = response(q, s, gd);
                ++sweepstats.onepoints;
                if (store.abortanalysis) return false;
            }
        }
    }
    return true;
}

} // namespace zelk
