// The walks. The one-point walk and the response formulas against closed forms and a
// chain matrix; then the fast paths of the plots against the one-point walk: every
// frequency quantity on designs of every family, on unusual ladders and on every dipole
// type, at every vector width the processor has; the time plots' harmonic passes and their
// cosine sums; and a fault inside a block.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <complex>
#include <vector>

#include "analysis/agreement.h"
#include "analysis/response.h"
#include "reference.h"
#include "analysis/sweep.h"
#include "analysis/timedomain.h"
#include "analysis/walkers.h"
#include "core/designstore.h"
#include "core/dipoles.h"
#include "files.h"
#include "testsupport.h"

namespace zelk {
namespace {

// The walkers and the response formulas against closed forms: the Butterworth corner at
// -3.0103 dB and |H|^2 = 1/(1 + (f/fc)^2n), the Chebyshev ripple, the input impedance
// against a chain-matrix computation, the floor, the open and empty places, the group
// delay's first difference and the stop on Abort.
using test::Kind;

double at(Quantity q, double f, int s = 0) {
    store.wA = TWOPI * f;
    return response(q, s);
}

TEST(Walkers, ButterworthAndChebyshevLowPassFollowTheirClosedForms) {
    test::Session s;
    for (bool pi : {true, false}) {
        test::buildladder(0, {Kind::LP, test::butterworthg(5), pi, 50, 1e6, 0, 0});
        EXPECT_NEAR(at(Quantity::PEG, 1e6), -3.0103, 0.001);
        for (double x : {0.1, 0.5, 0.9, 1.3, 2.0, 4.0}) {
            double want = -10 * std::log10(1 + std::pow(x, 10));
            EXPECT_NEAR(at(Quantity::PEG, x * 1e6), want, 0.001) << x;
            // Equal terminations: the insertion power gain is the effective one, and the
            // effective voltage gain stands 6.02 dB lower.
            EXPECT_NEAR(at(Quantity::PIG, x * 1e6), want, 0.001);
            EXPECT_NEAR(at(Quantity::VEG, x * 1e6), want - 6.0206, 0.001);
        }
        // Matched at low frequency: the input impedance is the 50 ohm load.
        EXPECT_NEAR(at(Quantity::InputImpedance, 1e4), 50, 0.01);
        // The phase at the cut-off is -5 * 45 degrees, wrapped by the walk's principal
        // arctangents into a sum of arm angles; the 1e-6 siemens of each capacitor moves
        // it by a few thousandths of a degree.
        const double wrapped = std::fmod(at(Quantity::Phase, 1e6) + 225.0, 180.0);
        EXPECT_NEAR(std::min(std::abs(wrapped), 180 - std::abs(wrapped)), 0, 1e-2);
    }
    // Chebyshev 0.5 dB, order 5: equiripple between 0 and -0.5 dB below the corner,
    // -0.5 dB at it, and 10log(1 + eps^2 T5(x)^2) beyond.
    test::buildladder(0, {Kind::LP, test::chebyshevg(5, 0.5), true, 50, 1e6, 0, 0});
    double lo = 0, hi = -100;
    for (int i = 0; i <= 400; ++i) {
        double v = at(Quantity::PEG, 1e6 * i / 400.0 + 1);
        lo = std::min(lo, v), hi = std::max(hi, v);
    }
    EXPECT_NEAR(lo, -0.5, 0.002);
    EXPECT_NEAR(hi, 0, 0.001);
    double eps2 = std::pow(10, 0.05) - 1;
    for (double x : {1.0, 1.5, 2.0}) {
        double T5 = std::cosh(5 * std::acosh(x));
        EXPECT_NEAR(at(Quantity::PEG, x * 1e6), -10 * std::log10(1 + eps2 * T5 * T5), 0.002);
    }
}

TEST(Walkers, InputImpedanceAndPhaseAgreeWithAChainMatrix) {
    test::Session s;
    using cd = std::complex<double>;
    test::buildladder(0, {Kind::BP, test::chebyshevg(3, 0.2), false, 75, 9e6, 11e6, 100});
    GroupDelayState gd;
    double prevphase = 0, prevw = 0;
    for (double f : {7e6, 9.5e6, 10e6, 10.7e6, 13e6}) {
        // Reference: chain matrices from the load back, each arm as 1/Y or Z as the
        // catalogue evaluates it, with wA = 2*pi*f at the program's pi.
        store.wA = TWOPI * f;
        test::Chain m; // of dipoles 2..n
        int n = slot(0).count();
        for (int d = 2; d <= n; ++d) {
            dipoleimmittance(d, 0);
            if (d % 2) m.series({store.Zr, store.Zi});
            else m.shunt({store.Yr, store.Yi});
        }
        cd Zin = m.A / m.C; // looking into dipole 2 with the output open (load included)
        EXPECT_NEAR(at(Quantity::InputImpedance, f), std::abs(Zin), 1e-9 * std::abs(Zin));
        double Rs = 75;
        cd H = 1.0 / (m.A + Rs * m.C); // Vout / Vsource
        store.wA = TWOPI * f;
        forwardwalk(0);
        EXPECT_NEAR(walk.Vratio, std::abs(H), 1e-6 * std::abs(H));
        // The phase is a sum of principal-value arctangents: equal modulo 180 degrees.
        double diff = std::remainder(walk.Vphase - std::arg(H), M_PI);
        EXPECT_NEAR(diff, 0, 1e-6);
        // Group delay: the plain first difference against the previous point.
        store.wA = TWOPI * f;
        double tg = response(Quantity::GroupDelay, 0, gd);
        EXPECT_DOUBLE_EQ(tg, std::abs((walk.Vphase - prevphase) / (TWOPI * f - prevw)));
        prevphase = walk.Vphase, prevw = TWOPI * f;
        // Return loss against R of dipole 1: -20 log |(R1+Z)/(R1-Z)|.
        double rl = at(Quantity::ReturnLoss, f);
        EXPECT_NEAR(rl, -20 * std::log10(std::abs((Rs + Zin) / (Rs - Zin))), 1e-9);
    }
}

TEST(Walkers, FloorOpenAndEmptyPlacesAndAbort) {
    test::Session s;
    // Plain dipoles of the given types and resistances, every one with C = 1 nF.
    auto plain = [](std::initializer_list<std::pair<int, double>> ds) {
        std::vector<test::Part> parts;
        for (auto [t, R] : ds) parts.push_back({t, R, 1e-9});
        test::writeladder(0, parts);
    };
    store.wA = TWOPI * 1e6;
    // Type 6 in a shunt place: a1 = 0 by sign(0), Zdmag 0, Vratio to the floor.
    plain({{1, 50}, {6, 0}, {6, 0}, {31, 50}});
    forwardwalk(0);
    EXPECT_EQ(walk.Vratio, 1e-12);
    EXPECT_DOUBLE_EQ(at(Quantity::VEG, 1e6), -240);
    // Type 8 in a series place: a deep but finite loss, 50/(1e12 + 100).
    plain({{1, 50}, {38, 0}, {8, 0}, {31, 50}});
    forwardwalk(0);
    EXPECT_NEAR(walk.Vratio, 50 / (1e12 + 100), 1e-20);
    EXPECT_NEAR(walk.Vphase, 0, 1e-15);
    // Type 38 in a shunt place barely touches the divider: 0.5 for the matched pair.
    plain({{1, 50}, {38, 0}, {6, 0}, {31, 50}});
    forwardwalk(0);
    EXPECT_NEAR(walk.Vratio, 0.5, 1e-10);
    EXPECT_DOUBLE_EQ(walk.Zmag1, 50);
    EXPECT_DOUBLE_EQ(walk.Zdmag, 50);
    EXPECT_NEAR(at(Quantity::PEG, 1e6), 0, 1e-9);
    EXPECT_NEAR(at(Quantity::OutputImpedance, 1e6), 50, 1e-6);
    // Equal R1 and input resistance: a return loss of exactly 120.
    plain({{1, 2}, {31, 2}});
    EXPECT_EQ(at(Quantity::ReturnLoss, 1e6), 120);
    // No dipoles: Vratio 1, Rt, Xt and Vphase 0.
    slot(0).dipolecount = 0;
    forwardwalk(0);
    EXPECT_EQ(walk.Vratio, 1);
    EXPECT_EQ(walk.Vphase, 0);

    // A zero capacitor: the box names dipole 4 of filter 1, Abort stops the walk there and
    // the program goes on with the next point.
    test::buildladder(0, {Kind::LP, test::butterworthg(3), true, 50, 1e6, 0, 0});
    dipole(0, 4).C = 0;
    dipole(0, 4).type = 33;
    dipole(0, 2).C = 0; // now dipole 2 is the first to fault
    s.runner.desk.queue.push_back({"msgbox", {"Abort"}});
    at(Quantity::PEG, 1e6);
    ASSERT_EQ(s.runner.desk.messages.size(), 1u);
    EXPECT_EQ(s.runner.desk.messages[0].title, "ANALYSIS ERROR");
    EXPECT_EQ(s.runner.desk.messages[0].text.substr(0, 51),
              "ERROR 11, Division by zero In DIPOLE 2 of FILTER 1\n");
    EXPECT_TRUE(store.abortanalysis);
    store.abortanalysis = false;
    test::buildladder(0, {Kind::LP, test::butterworthg(3), true, 50, 1e6, 0, 0});
    EXPECT_TRUE(std::isfinite(at(Quantity::PEG, 1e6)));
    EXPECT_EQ(s.runner.desk.messages.size(), 1u);
}


const Quantity allq[] = {Quantity::PEG,         Quantity::PIG,
                         Quantity::VEG,         Quantity::VIG,
                         Quantity::CEG,         Quantity::CIG,
                         Quantity::InputImpedance, Quantity::OutputImpedance,
                         Quantity::ReturnLoss,  Quantity::ReturnLossOverlay,
                         Quantity::Phase,       Quantity::GroupDelay};

// Sweeps slot s for every quantity at every vector width (or the widest), fast and
// one-point; the largest
// deviation, and whether every point took the block walk.
struct Outcome {
    double worst = 0;
    bool allblock = true;
    bool ok = true;
};
Outcome compare(int s, double F1, double F2, bool allwidths = true) {
    Outcome o;
    double wA[SWEEPPOINTS], fast[SWEEPPOINTS], slow[SWEEPPOINTS], phase[SWEEPPOINTS];
    sweepfrequencies(F1, F2, wA);
    o.ok &= sweepvalues_onepoint(Quantity::Phase, s, wA, phase);
    for (int level = allwidths ? 0 : 2; level <= 2; ++level) {
        sweepvectorlevel = level;
        for (Quantity q : allq) {
            o.ok &= sweepvalues(q, s, wA, fast);
            o.allblock &= sweepstats.blockpoints == SWEEPPOINTS;
            o.ok &= sweepvalues_onepoint(q, s, wA, slow);
            for (int i = 0; i < SWEEPPOINTS; ++i) {
                double d = test::deviation(q, fast[i], slow[i], wA, i, phase);
                if (d > o.worst) o.worst = d;
                if (d > 1e-12) {
                    ADD_FAILURE() << "quantity " << static_cast<int>(q) << " point " << i << " width " << level
                                  << ": " << fast[i] << " against " << slow[i];
                    o.ok = false;
                    sweepvectorlevel = 2;
                    return o;
                }
            }
        }
    }
    sweepvectorlevel = 2;
    return o;
}

void useslot(int s) {
    if (store.lastslot < s) store.lastslot = static_cast<short>(s);
    store.curslot = 0;
}

TEST(BlockWalk, EveryPlotOfEveryFamilyIsTheOnePointWalks) {
    test::Session session;
    for (const test::Row& r : test::datarows("ladders.txt", "blockwalk")) {
        const std::string name = r.text(0) + " " + r.text(1) + " " + r.text(3) + " " + r.text(4);
        SCOPED_TRACE(name);
        useslot(0);
        const test::Ladder ladder = test::ladderrow(r);
        test::buildladder(0, ladder);
        Outcome o = compare(0, r.num(9), r.num(10));
        EXPECT_TRUE(o.ok);
        EXPECT_TRUE(o.allblock);
        // The same design as the second filter: its return loss still refers to slot 0.
        test::Ladder other = ladder;
        other.R0 *= 1.5;
        useslot(1);
        test::buildladder(1, other);
        EXPECT_TRUE(compare(1, r.num(9), r.num(10)).ok);
        store.lastslot = 0;
        RecordProperty(name, std::to_string(o.worst));
    }
    EXPECT_TRUE(session.runner.desk.messages.empty());
}


// Ladders the textbook builder does not make: a band-pass, partly lossy, with an open
// shunt place and an empty series place inside and a resistor across and an open series
// place (8) before the load; a band-reject swept across its resonance; and a dipole
// count that is odd (the walk takes count + 1 as its last shunt arm).
TEST(BlockWalk, UnusualLaddersGiveTheOnePointWalks) {
    test::Session session;
    useslot(0);
    const double w0 = 2 * test::pi * 10e6;
    auto c = [w0](double L) { return 1 / (w0 * w0 * L); };
    test::ladder({{1, 50}, {35, 0, c(1e-6), 1e-6, 0, 0, 100}, {4, 0, c(20e-6), 20e-6}, {38}, {6},
                  {35, 0, c(1e-6), 1e-6}, {4, 0, c(20e-6), 20e-6, 0, 0, 150}, {31, 1e6}, {8}, {31, 50}});
    Outcome o = compare(0, 5e6, 20e6, false);
    EXPECT_TRUE(o.ok && o.allblock);
    test::ladder({{1, 50}, {34, 0, c(2e-6), 2e-6}, {5, 0, c(3e-6), 3e-6}, {34, 0, c(2e-6), 2e-6, 0, 0, 50}, {6}, {31, 50}});
    o = compare(0, 1e6, 100e6, false);
    EXPECT_TRUE(o.ok && o.allblock);
    test::buildladder(0, {Kind::LP, test::butterworthg(7), true, 50, 1e6, 0, 0});
    slot(0).dipolecount = 9;
    o = compare(0, 1e5, 1e7, false);
    EXPECT_TRUE(o.ok && o.allblock);
}


// Every dipole type of the catalogue (and the unused numbers) in a series place and in a
// shunt place of a 5th-order ladder, lossy and lossless, with every field it reads set:
// the types the block walk prepares take it, the others the one-point walk, and either
// way every plot is the one-point walk's.
TEST(BlockWalk, EveryDipoleTypeGivesTheOnePointWalks) {
    test::Session session;
    int blocktypes = 0;
    for (int type = 0; type <= 73; ++type) {
        for (double qu : {0.0, 120.0}) {
            SCOPED_TRACE("type " + std::to_string(type) + " Qu " + std::to_string(qu));
            useslot(0);
            test::buildladder(0, {Kind::LP, test::butterworthg(5), true, 50, 10e6, 0, 0});
            for (int d : {3, 4}) {
                Dipole& p = dipole(0, d);
                p.type = static_cast<short>(type);
                p.L = 0.6e-6, p.C = 400e-12, p.La = 0.3e-6, p.Ca = 150e-12, p.Qu = qu, p.Qa = qu * 0.8;
                p.K = 0.6, p.R = 25, p.Ls = 0.0125, p.Cs = 2.0264e-14, p.Cp = 5e-12, p.Rs = 15;
            }
            Outcome o;
            try {
                o = compare(0, 1e5, 1e8, false);
            } catch (const BatchStop&) {
                // The step-down transformers fault in this place (their walk inverts a
                // running impedance of 0): both walks bring the same box, at the same point.
                sweepvectorlevel = 2;
                double wA[SWEEPPOINTS], v[SWEEPPOINTS];
                sweepfrequencies(1e5, 1e8, wA);
                for (Quantity q : allq) {
                    std::string text[2];
                    for (int path = 0; path < 2; ++path) {
                        session.runner.desk.messages.clear();
                        session.runner.desk.queue.push_back({"msgbox", {"Abort"}, false, 0, 0});
                        walk = WalkValues{}; // the running values the transformers read
                        store.Zr = store.Zi = store.Yr = store.Yi = 0;
                        bool done = path ? sweepvalues_onepoint(q, 0, wA, v) : sweepvalues(q, 0, wA, v);
                        store.abortanalysis = false;
                        if (!session.runner.desk.queue.empty()) session.runner.desk.queue.clear();
                        if (!done && !session.runner.desk.messages.empty()) text[path] = session.runner.desk.messages[0].text;
                    }
                    EXPECT_EQ(text[0], text[1]) << static_cast<int>(q);
                }
                session.runner.desk.messages.clear();
                continue;
            }
            EXPECT_TRUE(o.ok);
            if (o.allblock && qu == 0) ++blocktypes;
        }
    }
    // Resistors, inductors, capacitors, series and parallel LC, series RLC, crystals (with
    // C across), the empty place and the open circuit, each in both numberings.
    EXPECT_EQ(blocktypes, 18);
    EXPECT_TRUE(session.runner.desk.messages.empty());
}

// A fault inside a block: filter 2's series inductor so large that its impedance squared
// overflows from a frequency in the middle of the second block. The first block goes
// through the block walk; the second through the one-point walk, whose box names the
// dipole and the filter, and whose points before the fault are the reference's.
TEST(BlockWalk, AFaultInsideABlockBringsTheBoxForItsDipoleAndFilter) {
    test::Session session;
    store.lastslot = 1;
    store.curslot = 0;
    for (int s : {0, 1}) {
        DesignSlot& sl = slot(s);
        for (auto& d : sl.dipoles) d = Dipole{};
        const short types[] = {1, 31, 2, 31, 6, 31};
        for (int d = 1; d <= 6; ++d) sl.dip(d).type = types[d - 1], sl.dip(d).R = 50;
        sl.dip(3).L = 1e147;
        sl.dipolecount = 6;
    }
    // 64 points where the inductor's reactance is of ordinary size, then 64 from 1e6 to
    // 1e9 rad/s: the square of w L leaves the finite numbers above 1.34e7 rad/s.
    std::vector<double> w(128);
    for (int i = 0; i < 64; ++i) w[static_cast<size_t>(i)] = 1e-150 * std::pow(10.0, i / 63.0);
    int first = -1;
    for (int i = 0; i < 64; ++i) {
        double x = 1e6 * std::pow(1e3, i / 63.0);
        w[static_cast<size_t>(64 + i)] = x;
        if (first < 0 && x * 1e147 * x * 1e147 > DBL_MAX) first = 64 + i;
    }
    ASSERT_GT(first, 70);
    ASSERT_LT(first, 120);
    for (Quantity q : {Quantity::PEG, Quantity::Phase, Quantity::OutputImpedance, Quantity::InputImpedance}) {
        SCOPED_TRACE(static_cast<int>(q));
        session.runner.desk.messages.clear();
        session.runner.desk.queue.push_back({"msgbox", {"Abort"}, false, 0, 0});
        std::vector<double> fast(128), slow(128);
        EXPECT_FALSE(sweepvalues(q, 1, w.data(), fast.data(), 128));
        EXPECT_TRUE(store.abortanalysis);
        store.abortanalysis = false;
        EXPECT_EQ(sweepstats.blockpoints, 64);
        // The input walk meets dipole 3 too, from the load's side.
        EXPECT_EQ(sweepstats.onepoints, first - 64 + 1);
        ASSERT_EQ(session.runner.desk.messages.size(), 1u);
        EXPECT_EQ(session.runner.desk.messages[0].title, "ANALYSIS ERROR");
        EXPECT_EQ(session.runner.desk.messages[0].text, analysiserrortext(6, 3, 1));
        ASSERT_TRUE(sweepvalues_onepoint(q, 1, w.data(), slow.data(), first));
        for (int i = 0; i < first; ++i)
            EXPECT_LE(test::deviation(q, fast[static_cast<size_t>(i)], slow[static_cast<size_t>(i)], w.data(), i), 1e-12)
                << i;
    }
    // A time plot's harmonic pass through the same fault ends with the same box.
    session.runner.desk.messages.clear();
    session.runner.desk.queue.push_back({"msgbox", {"Abort"}, false, 0, 0});
    Harmonics h;
    EXPECT_FALSE(harmonicpass(TimeKind::Impulse, 1, TWOPI / 2e5, 0, 0, h));
    store.abortanalysis = false;
    ASSERT_EQ(session.runner.desk.messages.size(), 1u);
    EXPECT_EQ(session.runner.desk.messages[0].text, analysiserrortext(6, 3, 1));
    EXPECT_EQ(h.hamp[68], 0); // 68 w1 = 1.36e7 rad/s: the harmonics from the fault on stay 0
    EXPECT_GT(h.hamp[67], 0);
}

// The time plots: the harmonic pass through the block walk against one-point walks at
// the harmonic frequencies, and the drawn values from the rotation recurrence against
// the direct sums of cosines (harmonicseries), for every kind on designs of several
// families.
TEST(BlockWalk, TimePlotsAreTheOnePointWalksAndTheDirectSums) {
    test::Session session;
    for (const test::Row& r : test::datarows("ladders.txt", "timeplots")) {
        const std::string name = r.text(0) + " " + r.text(1) + " " + r.text(3);
        const double T = r.num(9), D = r.num(10), fT = r.num(11); // plot time, duty cycle, tone
        useslot(0);
        test::buildladder(0, test::ladderrow(r));
        for (TimeKind kind : {TimeKind::Impulse, TimeKind::Step, TimeKind::Pulse, TimeKind::TonePulse}) {
            SCOPED_TRACE(name + " kind " + std::to_string(static_cast<int>(kind)));
            Harmonics h;
            ASSERT_TRUE(harmonicpass(kind, 0, T, D, TWOPI * fT, h));
            // The walk of each harmonic, one point at a time.
            const double w1 = TWOPI / T;
            for (int k = kind == TimeKind::Impulse || kind == TimeKind::Step ? 1 : 0; k <= HARMONICS; ++k) {
                double w = kind == TimeKind::TonePulse ? (k == 0 ? TWOPI * fT : TWOPI * fT + k * w1)
                           : kind == TimeKind::Pulse && k == 0 ? TWOPI
                                                               : k * w1;
                store.wA = w;
                forwardwalk(0);
                double amp = walk.Vratio;
                if (kind == TimeKind::Pulse || kind == TimeKind::TonePulse)
                    amp = k == 0 ? amp * D : (amp + amp) * D * std::sin(k * PI * D) / (k * PI * D);
                EXPECT_LE(std::abs(h.hamp[k] - amp), 1e-12 * std::max(std::abs(amp), 1e-3)) << k;
                double shift = kind == TimeKind::Pulse || kind == TimeKind::TonePulse ? k * ((w1 * D * T) / 2) : 0;
                EXPECT_LE(std::abs(h.hph[k] - (walk.Vphase - shift)), 1e-12 * std::max(std::abs(walk.Vphase), 1.0)) << k;
            }
            // The drawn values against the direct sums of the same harmonics.
            double v[SWEEPPOINTS];
            timevalues(kind, h, T, v);
            double run = 0, uprev = 0, worst = 0;
            for (int i = 0; i < SWEEPPOINTS; ++i) {
                double u = harmonicseries(kind, h, T * i / 512);
                if (kind == TimeKind::Step) {
                    u = (u / 512) * 4;
                    run = run + (u - uprev) + uprev;
                    uprev = u;
                    u = run;
                }
                worst = std::max(worst, std::abs(v[i] - u) / std::max(1.0, std::abs(u)));
            }
            EXPECT_LE(worst, 1e-12);
        }
    }
}

} // namespace
} // namespace zelk
