#include "analysis/sweep.h"

#include <cfloat>
#include <cmath>
#include <cstring>

#include "analysis/walkers.h"
#include "core/designstore.h"
#include "core/dipolecatalogue.h"
#include "core/dipoles.h"
#include "core/hostmath.h"

// No fused multiply-add: a sum of squares rounds twice, as in the one-point walk, so that
// the resistive ladders' input walk gives its very numbers.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC optimize("fp-contract=off")
#elif defined(__clang__)
#pragma clang fp contract(off)
#endif

namespace zelk {

void sweepfrequencies(double F1, double F2, double* wA, int n) {
    // (F2/F1)^(i/np) as the product of its powers at 32 a and at b, i = 32 a + b: 48 calls
    // of pow in place of 513, every 32nd point the formula's own.
    // The host stops where the formula faults: F1 = 0, a negative ratio raised to the
    // fractional powers (its second point), a frequency too large for a double.
    const int np = store.npoints;
    const double base = TWOPI * F1, r = hdiv(F2, F1);
    if (r < 0 && n > 1) raisefault(5);
    double lo[32];
    for (int b = 0; b < 32 && b < n; ++b) lo[b] = std::pow(r, static_cast<double>(b) / np);
    for (int a = 0; 32 * a < n; ++a) {
        const double hi = std::pow(r, static_cast<double>(32 * a) / np);
        wA[32 * a] = base * hi;
        for (int b = 1; b < 32 && 32 * a + b < n; ++b) wA[32 * a + b] = base * (hi * lo[b]);
    }
    bool finite = true;
    for (int i = 0; i < n; ++i) finite &= std::isfinite(wA[i]);
    if (!finite) raisefault(6);
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
// The block walk. 64 sweep points go through the ladder together, dipole by dipole: the
// loop over the dipoles chooses the arm's form once, and the loop inside it runs over the
// points in vectors of eight, with the dipole's coefficients prepared ahead, no call and
// no branch. Each plot computes only what its quantity needs: the gains the voltage
// ratio and two magnitudes, the output impedance the running impedance, the phase and
// the group delay the phase, the input impedance and the return loss the walk from the
// load.
//
// The forward walk is the one-point walk rearranged to divide less: one division per
// section where the one-point walk takes seven divisions and three square roots. The
// voltage ratio is carried squared; the phase as the product of the arm angles' vectors
// with a count of whole turns, taken out by one arctangent at the end. The walk from the
// load does the catalogue's own operations in its order. Where a rounding decides a
// branch of the catalogue (the tank's guard for exact resonance) or is all there is of
// a value (the reactance of a tuned arm at resonance, over its 1e-06 ohm), those values
// are formed as the catalogue forms them. Every value that the one-point walk would see
// leave the finite numbers, or divide by zero, is caught by range checks with a wide
// margin; a block where any point fails them goes through the one-point walk, with its
// fault prompts, point by point.

// The kernels pass wide vectors between inlined helpers of one translation unit; the
// compilers' notes on the calling convention of such vectors do not concern them.
#if defined(__clang__)
#pragma clang diagnostic ignored "-Wpsabi"
#elif defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wpsabi"
#endif
#define ZELK_INLINE inline __attribute__((always_inline))

constexpr int W = 8;       // lanes of a vector
constexpr int NV = 8;      // vectors of a block
constexpr int B = W * NV;  // points of a block
typedef double V __attribute__((vector_size(W * sizeof(double))));
typedef long long M __attribute__((vector_size(W * sizeof(double))));

// The margin: a block point keeps every magnitude the walk forms inside [LO, HI] (the
// squared ones) or below HI, far from where a rounding of the one-point walk could
// overflow or meet a zero.
constexpr double LO = 1e-280, HI = 1e280;

// How an arm's immittance is formed from its prepared coefficients.
enum class Form : unsigned char {
    Direct,    // Z and Y constant (R, empty place, open circuit)
    Capacitor, // Z = 1e-06 - j/(wC), Y = 1e-06 + jwC
    ZThenY,    // Z = loss + jwL, Y its inverse (L)
    Tuned,   // the same with a reactance that cancels at resonance (series LC, series RLC)
    YThenZ,  // Y linear with the tank's resonance guard, Z its inverse (parallel LC)
    Crystal, // Z linear, then Y = 1/Z + jwCp, then Z = 1/Y (crystal, crystal with C across)
};

// The arm's immittance from prepared coefficients, in two ways. Fast: Z = (zr0 + zrw w)
// + j(ziw w - ziiw/w), Y = (yr0 + yriw/w) + j(yiw w - yiiw/w), the divisions by the
// part values done once ahead. Exact: the catalogue's own operations in its order,
// Zr = zr0 + (w zrL)/zrQ, Zi = w ziw - (1/w)/zidiv, Yr = yr0 + ((1/w)/yrL)/yrQ,
// Yi = w yiw - (1/w)/yidiv, or -1/Zi for the capacitor; an absent term divides by
// infinity into 0.
struct Coef {
    Form form;
    double zr0, zrL, zrQ, ziw, zidiv;
    double yr0, yrL, yrQ, yiw, yidiv;
    double zrw, ziiw, yriw, yiiw;
};

struct Ladder {
    Coef arm[MAXDIPOLE + 2];
    int count = 0; // the slot's dipole count
    int last = 0;  // the last dipole of the forward walk (count, or count + 1 when odd)
};

bool finitevalue(double x) { return std::isfinite(x); }

// The prepared coefficients of dipole d of slot s; false for a type or values the block
// walk leaves to the one-point walk.
bool translate(int s, int d, Coef& c) {
    const Dipole& dp = dipole(s, d);
    constexpr double none = INFINITY;
    c = Coef{Form::Direct, 0, 0, 1, 0, none, 0, none, 1, 0, none, 0, 0, 0, 0};
    const bool lossy = dp.Qu > 0;
    auto seriesloss = [&] { // wL/Qu, or the catalogue's 1e-06
        if (lossy) c.zrL = dp.L, c.zrQ = dp.Qu;
        else c.zr0 = 1e-06;
    };
    const Eval form = dipoletype(dp.type).eval;
    switch (form) {
    case Eval::Resistor:
        if (dp.R == 0) return false;
        c.zr0 = dp.R;
        c.yr0 = 1 / dp.R;
        break;
    case Eval::Inductor:
        c.form = Form::ZThenY;
        seriesloss();
        c.ziw = dp.L;
        break;
    case Eval::Capacitor:
        if (dp.C == 0) return false;
        c.form = Form::Capacitor;
        c.zr0 = 1e-06;
        c.zidiv = dp.C;
        c.yr0 = 1e-06;
        c.yiw = dp.C;
        break;
    case Eval::SeriesLC:
        if (dp.C == 0) return false;
        c.form = Form::Tuned;
        seriesloss();
        c.ziw = dp.L;
        c.zidiv = dp.C;
        break;
    case Eval::SeriesRLC:
        if (dp.C == 0) return false;
        c.form = Form::Tuned;
        c.zr0 = dp.R;
        if (lossy) c.zrL = dp.L, c.zrQ = dp.Qu;
        c.ziw = dp.L;
        c.zidiv = dp.C;
        break;
    case Eval::Tank:
        if (dp.L == 0) return false;
        c.form = Form::YThenZ;
        if (lossy) c.yrL = dp.L, c.yrQ = dp.Qu;
        else c.yr0 = 1e-06;
        c.yiw = dp.C;
        c.yidiv = dp.L;
        break;
    case Eval::Wire: break;
    case Eval::Open: c.zr0 = 1000000000000.0; break;
    case Eval::Crystal:
    case Eval::CrystalAcrossC:
        if (dp.Cs == 0) return false;
        c.form = Form::Crystal;
        c.zr0 = dp.Rs == 0 ? 1e-06 : dp.Rs;
        c.ziw = dp.Ls;
        c.zidiv = dp.Cs;
        c.yiw = form == Eval::Crystal ? dp.Cp : dp.C + dp.Cp;
        break;
    default: return false;
    }
    c.zrw = c.zrL / c.zrQ;
    c.ziiw = 1 / c.zidiv;
    c.yriw = 1 / (c.yrL * c.yrQ);
    c.yiiw = 1 / c.yidiv;
    for (double v : {c.zr0, c.zrw, c.ziw, c.ziiw, c.yr0, c.yriw, c.yiw, c.yiiw})
        if (!finitevalue(v) || std::abs(v) > HI) return false;
    return true;
}

bool buildladder(int s, Ladder& lad) {
    const DesignSlot& sl = slot(s);
    double count = sl.dipolecount.value();
    if (!(count >= 2 && count <= MAXDIPOLE) || count != Int(count)) return false;
    int n = clampint(count, 2, MAXDIPOLE);
    lad.count = n;
    lad.last = n % 2 ? n + 1 : n;
    if (lad.last > MAXDIPOLE) return false;
    for (int d = 1; d <= lad.last; ++d)
        if (!translate(s, d, lad.arm[d])) return false;
    return true;
}

// The points of one block and the walk's running values at each.
struct Block {
    V w[NV], iw[NV];
    V Rt[NV], Xt[NV]; // running impedance
    V den[NV];        // |Rt + jXt|^2 after the series arm
    V V2[NV];         // voltage ratio squared
    V Pr[NV], Pi[NV]; // product of the arm angles' vectors, scaled to [1, 2)
    V turns[NV];      // whole turns the product has made
    V Z1[NV], Zo[NV], ZL[NV]; // |Z|^2 after dipole 1, after the last series arm; last shunt arm
    V Gt[NV], Bt[NV]; // running admittance (backward walk)
    M ok[NV];
    V out[NV];  // a gain plot's decibels
    M fine[NV]; // and the lanes clear of the formula's faults
    int nv = NV; // the vectors in use: the last block of a sweep may fill fewer
};

enum class Walk { Gain, Phase, GainPhase, Impedance, Input };

// One kernel per instruction set, each compiled whole for its vectors.
namespace isabase {
#include "analysis/blockwalk.inc"
}
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define ZELK_MULTIWIDTH 1
#pragma GCC push_options
#pragma GCC target("avx2,fma")
namespace isaavx2 {
#include "analysis/blockwalk.inc"
}
#pragma GCC pop_options
#pragma GCC push_options
#pragma GCC target("avx512f,avx512dq,avx512vl,avx2,fma")
namespace isaavx512 {
#include "analysis/blockwalk.inc"
}
#pragma GCC pop_options
#endif

// The vector width in use: the widest the processor has, at most sweepvectorlevel.
int vectorlevel() {
#if defined(ZELK_MULTIWIDTH)
    static const int level = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") ? 2
                             : (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) ? 1
                                                                                                 : 0;
    return level < sweepvectorlevel ? level : sweepvectorlevel;
#else
    return 0;
#endif
}

void rungains(Block& b, Quantity q) {
    static const double ln10 = std::log(10.0);
#if defined(ZELK_MULTIWIDTH)
    const int use = vectorlevel();
    if (use >= 2) return isaavx512::gaindecibels(b, q, ln10);
    if (use == 1) return isaavx2::gaindecibels(b, q, ln10);
#endif
    isabase::gaindecibels(b, q, ln10);
}

// Loads points w[0 .. lanes) into the block (the rest repeat the last) and walks it.
// True when every point stayed inside the checked ranges.
bool walkpoints(const Ladder& lad, Block& b, Walk k, const double* w, const double* iw, int lanes) {
#if defined(ZELK_MULTIWIDTH)
    const int use = vectorlevel();
    if (use >= 2) {
        isaavx512::loadblock(b, w, iw, lanes);
        isaavx512::walkblock(lad, b, k);
        return isaavx512::blockok(b);
    }
    if (use == 1) {
        isaavx2::loadblock(b, w, iw, lanes);
        isaavx2::walkblock(lad, b, k);
        return isaavx2::blockok(b);
    }
#endif
    isabase::loadblock(b, w, iw, lanes);
    isabase::walkblock(lad, b, k);
    return isabase::blockok(b);
}

ZELK_INLINE double lane(const V* v, int i) { return v[i / W][i % W]; }

Walk walkfor(Quantity q) {
    switch (q) {
    case Quantity::PEG:
    case Quantity::PIG:
    case Quantity::VEG:
    case Quantity::VIG:
    case Quantity::CEG:
    case Quantity::CIG: return Walk::Gain;
    case Quantity::OutputImpedance: return Walk::Impedance;
    case Quantity::Phase:
    case Quantity::GroupDelay: return Walk::Phase;
    default: return Walk::Input;
    }
}

Ladder ladder; // the block walk's translation of the slot in hand
Block block;

} // namespace

void rotationsums(const double* cr, const double* ci, int K, const double* zr, const double* zi, int n,
                  double* out) {
#if defined(ZELK_MULTIWIDTH)
    const int use = vectorlevel();
    if (use >= 2) return isaavx512::rotationsums(cr, ci, K, zr, zi, n, out);
    if (use == 1) return isaavx2::rotationsums(cr, ci, K, zr, zi, n, out);
#endif
    isabase::rotationsums(cr, ci, K, zr, zi, n, out);
}

bool blockwalkable(Quantity, int s) { return buildladder(s, ladder); }

// After a sweep whose last block went through the block walk: the dipole results in
// the store and the running impedance as the one-point walk leaves them at the last
// point (the catalogue's "results as they were" types read them in a later walk).
void leavelikeonepoint(int s, double w, bool input, double Rt, double Xt) {
    store.wA = w;
    dipoleimmittance(input ? 2 : ladder.last, s);
    walk.Rt = Rt;
    walk.Xt = Xt;
}
void leavelikeonepoint(int s, const Block& b, int lastlane, double w, bool input) {
    leavelikeonepoint(s, w, input, lane(b.Rt, lastlane), lane(b.Xt, lastlane));
}

// The sweep of the ladder in hand (buildladder has taken slot s).
bool sweepladder(Quantity q, int s, const double* wA, const double* iwA, double* out, int n) {
    const Walk k = walkfor(q);
    // Every dipole of the block walk's types sets the impedance scale to 1.
    store.zscale = 1.0;
    GroupDelayState gd;
    Block& b = block;
    for (int i0 = 0; i0 < n; i0 += B) {
        const int lanes = n - i0 < B ? n - i0 : B;
        const bool lastblock = i0 + lanes == n;
        if (!walkpoints(ladder, b, k, wA + i0, iwA ? iwA + i0 : nullptr, lanes)) {
            // A point of the block leaves the checked ranges: the one-point walk takes
            // the whole block, with the fault prompt where the dipole evaluation faults.
            for (int i = i0; i < i0 + lanes; ++i) {
                store.wA = wA[i];
                out[i] = response(q, s, gd);
                ++sweepstats.onepoints;
                if (store.abortanalysis) return false;
            }
            continue;
        }
        WalkValues& wv = walk;
        if (k == Walk::Gain) {
            // The decibels of the whole block at once when no point's formula faults.
            rungains(b, q);
            bool fine = true;
            for (int l = 0; l < lanes; ++l) fine &= b.fine[l / W][l % W] != 0;
            if (fine) {
                std::memcpy(out + i0, b.out, static_cast<size_t>(lanes) * sizeof(double));
                sweepstats.blockpoints += lanes;
                sweepstats.wholepoints += lanes;
                if (lastblock) leavelikeonepoint(s, b, lanes - 1, wA[n - 1], false);
                continue;
            }
        }
        for (int l = 0; l < lanes; ++l) {
            const int i = i0 + l;
            store.wA = wA[i];
            if (k == Walk::Input) {
                out[i] = responsefrominput(q, lane(b.Rt, l), lane(b.Xt, l));
            } else {
                if (k == Walk::Gain) {
                    wv.Vratio = std::sqrt(lane(b.V2, l));
                    wv.Zmag1 = std::sqrt(lane(b.Z1, l));
                    wv.Zdmag = std::sqrt(lane(b.ZL, l));
                } else if (k == Walk::Impedance) {
                    wv.Zmag = std::sqrt(lane(b.Zo, l));
                } else {
                    wv.Vphase = lane(b.Pr, l);
                }
                out[i] = responsefromwalk(q, gd);
            }
            ++sweepstats.blockpoints;
        }
        if (lastblock) leavelikeonepoint(s, b, lanes - 1, wA[n - 1], k == Walk::Input);
    }
    return true;
}

namespace {

// The ladder in hand as a key: count, last, then each arm's form and coefficients.
void ladderkey(std::vector<double>& arms) {
    arms.clear();
    arms.push_back(ladder.count);
    arms.push_back(ladder.last);
    for (int d = 1; d <= ladder.last; ++d) {
        const Coef& c = ladder.arm[d];
        arms.insert(arms.end(), {static_cast<double>(c.form), c.zr0, c.zrL, c.zrQ, c.ziw, c.zidiv, c.yr0,
                                 c.yrL, c.yrQ, c.yiw, c.yidiv});
    }
}

// The same numbers bit for bit (a coefficient's sign of zero counts).
bool samebits(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

// The sweep, keeping its values when key is given (see keptsweepvalues).
bool sweep(Quantity q, int s, const double* wA, const double* iwA, double* out, SweepKey* key,
           std::uint64_t stamp, int n) {
    sweepstats = SweepStats{};
    const bool had = key && key->valid;
    if (key) key->valid = false;
    if (!buildladder(s, ladder)) {
        sweepstats.onepoints = n;
        return sweepvalues_onepoint(q, s, wA, out, n);
    }
    if (!key) return sweepladder(q, s, wA, iwA, out, n);
    static std::vector<double> arms;
    ladderkey(arms);
    SweepKey& k = *key;
    if (had && k.q == q && k.n == n && k.frequencies == stamp && k.level == vectorlevel() && samebits(k.arms, arms)) {
        // The walk's effects on the store, as its last block leaves them.
        store.zscale = 1.0;
        leavelikeonepoint(s, wA[n - 1], false, k.lastRt, k.lastXt);
        k.valid = true;
        sweepstats.keptpoints = n;
        return true;
    }
    if (!sweepladder(q, s, wA, iwA, out, n)) return false;
    if (sweepstats.wholepoints == n) {
        k.q = q;
        k.n = n;
        k.frequencies = stamp;
        k.level = vectorlevel();
        k.arms = arms;
        k.lastRt = walk.Rt;
        k.lastXt = walk.Xt;
        k.valid = true;
    }
    return true;
}

} // namespace

bool sweepvalues(Quantity q, int s, const double* wA, double* out, int n) {
    return sweep(q, s, wA, nullptr, out, nullptr, 0, n);
}

bool keptsweepvalues(Quantity q, int s, const double* wA, const double* iwA, double* out, SweepKey& key,
                     std::uint64_t stamp, int n) {
    return sweep(q, s, wA, iwA, out, &key, stamp, n);
}

int forwardwalkvalues(int s, const double* w, int n, double* vratio, double* vphase) {
    if (!buildladder(s, ladder)) {
        for (int i = 0; i < n; ++i) {
            store.wA = w[i];
            forwardwalk(s);
            if (store.abortanalysis) return i;
            vratio[i] = walk.Vratio;
            vphase[i] = walk.Vphase;
        }
        return n;
    }
    store.zscale = 1.0;
    Block& b = block;
    for (int i0 = 0; i0 < n; i0 += B) {
        const int lanes = n - i0 < B ? n - i0 : B;
        if (!walkpoints(ladder, b, Walk::GainPhase, w + i0, nullptr, lanes)) {
            for (int i = i0; i < i0 + lanes; ++i) {
                store.wA = w[i];
                forwardwalk(s);
                if (store.abortanalysis) return i;
                vratio[i] = walk.Vratio;
                vphase[i] = walk.Vphase;
            }
            continue;
        }
        for (int l = 0; l < lanes; ++l) {
            vratio[i0 + l] = std::sqrt(lane(b.V2, l));
            vphase[i0 + l] = lane(b.Pr, l);
        }
        if (i0 + lanes == n) leavelikeonepoint(s, b, lanes - 1, w[n - 1], false);
    }
    return n;
}

} // namespace zelk
