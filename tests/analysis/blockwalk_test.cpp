// The fast paths of the plots against the one-point walk: every frequency quantity on
// designs of every family, on unusual ladders and on every dipole type, at every vector
// width the processor has; the time plots' harmonic passes and their cosine sums; and a
// fault inside a block.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <vector>

#include "analysis/agreement.h"
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

using test::Kind;

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
