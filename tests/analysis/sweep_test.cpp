// The sweep: the block walk against the one-point walk, and gains against closed forms.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "analysis/sweep.h"
#include "core/designstore.h"
#include "analysis/agreement.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

using test::Part;

// Slot 0 as the one open design: a 50 ohm source, the arms, an empty series place where
// the load would otherwise stand in a series place, and the load.
void buildladder(std::vector<Part> arms, double rl = 50) {
    arms.insert(arms.begin(), Part{1, 50});
    if (arms.size() % 2 == 0) arms.push_back({6});
    arms.push_back({31, rl});
    test::ladder(arms).Zin = 50;
}

// The arms of a doubly terminated Butterworth low-pass of order n at fc, 50 ohms, shunt C
// first, the inductors with unloaded Q qu.
std::vector<Part> butterworth(int n, double fc, double qu = 0) {
    const double wc = 2 * test::pi * fc;
    const std::vector<double> g = test::butterworthg(n);
    std::vector<Part> arms;
    for (int k = 1; k <= n; ++k) arms.push_back(k % 2 ? Part{33, 0, g[k] / (50 * wc)} : Part{2, 0, 0, g[k] * 50 / wc, 0, 0, qu});
    return arms;
}

double rel(double a, double b) { return std::abs(a - b) / std::max({std::abs(a), std::abs(b), 1e-300}); }

const Quantity forwardq[] = {Quantity::PEG, Quantity::PIG, Quantity::VEG, Quantity::VIG,
                             Quantity::CEG, Quantity::CIG, Quantity::OutputImpedance,
                             Quantity::Phase, Quantity::GroupDelay};

// Every forward quantity through the block walk equals the one-point walk point by point.
void expectsame(double F1, double F2, bool blockexpected) {
    double wA[SWEEPPOINTS], fast[SWEEPPOINTS], slow[SWEEPPOINTS], phase[SWEEPPOINTS];
    sweepfrequencies(F1, F2, wA);
    ASSERT_TRUE(sweepvalues_onepoint(Quantity::Phase, 0, wA, phase));
    for (Quantity q : forwardq) {
        ASSERT_TRUE(sweepvalues(q, 0, wA, fast));
        if (blockexpected) {
            EXPECT_EQ(sweepstats.blockpoints, SWEEPPOINTS) << static_cast<int>(q);
        } else {
            EXPECT_EQ(sweepstats.onepoints, SWEEPPOINTS) << static_cast<int>(q);
        }
        ASSERT_TRUE(sweepvalues_onepoint(q, 0, wA, slow));
        for (int i = 0; i < SWEEPPOINTS; ++i)
            ASSERT_LE(test::deviation(q, fast[i], slow[i], wA, i, phase), 1e-12)
                << "quantity " << static_cast<int>(q) << " point " << i;
    }
}

TEST(Sweep, BlockWalkGivesTheOnePointNumbers) {
    test::Session session;
    // Lossless and lossy Butterworth, through pass band and deep stop band (the floor).
    buildladder(butterworth(7, 1e6));
    expectsame(1e4, 1e9, true);
    buildladder(butterworth(15, 1e6, 80), 75);
    expectsame(1e5, 1e8, true);
    // A band-pass of series LC arms and parallel LC shunts, lossy and lossless, with an
    // empty series place and an open shunt place in it.
    const double w0 = 2 * test::pi * 10e6, c1 = 1 / (w0 * w0 * 1e-6), c20 = 1 / (w0 * w0 * 20e-6);
    buildladder({{35, 0, c1, 1e-6, 0, 0, 100}, {4, 0, c20, 20e-6}, {38}, {6}, {35, 0, c1, 1e-6},
                 {4, 0, c20, 20e-6, 0, 0, 150}, {31, 1e6}, {8}});
    expectsame(5e6, 20e6, true);
    // A band-reject: parallel LC in series, series LC in shunt; exactly on resonance too.
    const double c2 = 1 / (w0 * w0 * 2e-6), c3 = 1 / (w0 * w0 * 3e-6);
    buildladder({{34, 0, c2, 2e-6}, {5, 0, c3, 3e-6}, {34, 0, c2, 2e-6, 0, 0, 50}});
    expectsame(1e6, 100e6, true);
    // A 32-dipole ladder, the largest a slot holds.
    buildladder(butterworth(29, 1e6));
    EXPECT_EQ(slot(0).count(), 32);
    expectsame(1e5, 1e7, true);
    // An odd count: the walk takes dipole count + 1 as its last shunt arm.
    buildladder(butterworth(7, 1e6));
    slot(0).dipolecount = 9;
    expectsame(1e5, 1e7, true);
}

TEST(Sweep, OtherTypesAndUnfiniteArithmeticTakeTheOnePointWalk) {
    test::Session session;
    // A series LC across a capacitor is not a block-walk type: the whole sweep is
    // one-point, same numbers.
    auto arms = butterworth(5, 1e6);
    arms.push_back({9, 10e-6, 2e-9});
    arms.push_back({33, 0, 1e-9});
    buildladder(arms);
    dipole(0, 7).Ca = 1e-9;
    EXPECT_FALSE(blockwalkable(Quantity::PEG, 0));
    expectsame(1e5, 1e7, false);
    buildladder(butterworth(5, 1e6));
    EXPECT_TRUE(blockwalkable(Quantity::PEG, 0));
    EXPECT_TRUE(blockwalkable(Quantity::InputImpedance, 0));
    // A value so large that the arithmetic overflows at the top of the sweep, and comes
    // near the end of the finite numbers all through it: the one-point walk takes every
    // block, and its fault prompt is answered with Abort.
    dipole(0, 3).L = 1e147;
    session.runner.desk.queue.push_back({"msgbox", {"Abort"}, false, 0, 0});
    double wA[SWEEPPOINTS], fast[SWEEPPOINTS], slow[SWEEPPOINTS];
    sweepfrequencies(1e3, 1e10, wA);
    EXPECT_FALSE(sweepvalues(Quantity::VEG, 0, wA, fast));
    EXPECT_TRUE(store.abortanalysis);
    EXPECT_GT(sweepstats.onepoints, 100);
    ASSERT_FALSE(session.runner.desk.messages.empty());
    EXPECT_EQ(session.runner.desk.messages.back().title, "ANALYSIS ERROR");
    store.abortanalysis = false;
    // The points before it are the one-point walk's.
    int good = sweepstats.blockpoints + sweepstats.onepoints - 1;
    ASSERT_TRUE(sweepvalues_onepoint(Quantity::VEG, 0, wA, slow, good));
    for (int i = 0; i < good; ++i) EXPECT_LE(rel(fast[i], slow[i]), 1e-12) << i;
}

TEST(Sweep, PhaseAtTheCutOff) {
    // The gains against their closed forms are the walkers' tests, and the block walk
    // gives the one-point numbers; the phase of the 7th-order Butterworth at the cut-off
    // is -7*45 = -315 degrees, wrapped by the walk's principal arctangents into a sum of
    // arm angles (not unwrapped); the 1e-6 siemens of each capacitor moves it by a few
    // thousandths of a degree.
    test::Session session;
    buildladder(butterworth(7, 1e6));
    double wA[SWEEPPOINTS], peg[SWEEPPOINTS], ph[SWEEPPOINTS];
    sweepfrequencies(1e6, 2e6, wA, 1);
    ASSERT_TRUE(sweepvalues(Quantity::PEG, 0, wA, peg, 1));
    EXPECT_NEAR(peg[0], -3.0103, 1e-3);
    ASSERT_TRUE(sweepvalues(Quantity::Phase, 0, wA, ph, 1));
    double wrapped = std::fmod(ph[0] + 315.0, 180.0);
    EXPECT_NEAR(std::min(std::abs(wrapped), 180 - std::abs(wrapped)), 0, 1e-2) << ph[0];
}

} // namespace
} // namespace zelk
