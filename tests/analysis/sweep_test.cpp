// The sweep: the block walk against the one-point walk, and gains against closed forms.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "analysis/sweep.h"
#include "core/designstore.h"
#include "analysis/agreement.h"
#include "testsupport.h"

namespace zelk {
namespace {

// A ladder in slot 0: dipole 1 the source resistor, then the given arms, last the load.
struct Arm {
    short type;
    double L = 0, C = 0, Qu = 0, R = 0;
};

void buildladder(const std::vector<Arm>& arms, double rs = 50, double rl = 50) {
    store.lastslot = 0;
    store.curslot = 0;
    DesignSlot& s = slot(0);
    s.code = "BLP";
    s.Zin = rs;
    int d = 1;
    dipole(0, d).type = 1;
    dipole(0, d).R = rs;
    for (const Arm& a : arms) {
        ++d;
        Dipole& p = dipole(0, d);
        p.type = a.type;
        p.L = a.L;
        p.C = a.C;
        p.Qu = a.Qu;
        p.R = a.R;
    }
    // The load stands in a shunt place: an empty series place before it when needed.
    if (d % 2 == 0) dipole(0, ++d).type = 6;
    ++d;
    dipole(0, d).type = 31;
    dipole(0, d).R = rl;
    s.dipolecount = d;
}

// A doubly terminated Butterworth low-pass of order n (odd) at fc, 50 ohms: shunt C first.
std::vector<Arm> butterworth(int n, double fc, double r = 50, double qu = 0) {
    std::vector<Arm> arms;
    double wc = 2 * std::numbers::pi * fc;
    for (int k = 1; k <= n; ++k) {
        double g = 2 * std::sin((2 * k - 1) * std::numbers::pi / (2 * n));
        if (k % 2) arms.push_back({33, 0, g / (r * wc), 0});
        else arms.push_back({2, g * r / wc, 0, qu});
    }
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
        if (blockexpected) EXPECT_EQ(sweepstats.blockpoints, SWEEPPOINTS) << static_cast<int>(q);
        else EXPECT_EQ(sweepstats.onepoints, SWEEPPOINTS) << static_cast<int>(q);
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
    buildladder(butterworth(15, 1e6, 50, 80), 50, 75);
    expectsame(1e5, 1e8, true);
    // A band-pass of series LC arms and parallel LC shunts, lossy and lossless, with an
    // empty series place and an open shunt place in it.
    double w0 = 2 * std::numbers::pi * 10e6;
    buildladder({{35, 1e-6, 1 / (w0 * w0 * 1e-6), 100},
                 {4, 20e-6, 1 / (w0 * w0 * 20e-6), 0},
                 {38},
                 {6},
                 {35, 1e-6, 1 / (w0 * w0 * 1e-6), 0},
                 {4, 20e-6, 1 / (w0 * w0 * 20e-6), 150},
                 {31, 0, 0, 0, 1e6},
                 {8}});
    expectsame(5e6, 20e6, true);
    // A band-reject: parallel LC in series, series LC in shunt; exactly on resonance too.
    buildladder({{34, 2e-6, 1 / (w0 * w0 * 2e-6), 0}, {5, 3e-6, 1 / (w0 * w0 * 3e-6), 0},
                 {34, 2e-6, 1 / (w0 * w0 * 2e-6), 50}});
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

TEST(Sweep, GainsMatchTheClosedForms) {
    test::Session session;
    // Doubly terminated Butterworth, equal terminations: |S21|^2 = 1/(1 + (f/fc)^2n).
    // The 1e-6 ohm and siemens that the catalogue gives every part bound the agreement.
    const int n = 7;
    const double fc = 1e6;
    buildladder(butterworth(n, fc));
    double wA[SWEEPPOINTS], peg[SWEEPPOINTS], veg[SWEEPPOINTS], pig[SWEEPPOINTS], ph[SWEEPPOINTS];
    sweepfrequencies(1e5, 1e7, wA);
    ASSERT_TRUE(sweepvalues(Quantity::PEG, 0, wA, peg));
    ASSERT_TRUE(sweepvalues(Quantity::VEG, 0, wA, veg));
    ASSERT_TRUE(sweepvalues(Quantity::PIG, 0, wA, pig));
    ASSERT_TRUE(sweepvalues(Quantity::Phase, 0, wA, ph));
    for (int i = 0; i < SWEEPPOINTS; i += 8) {
        double f = wA[i] / 6.283185308;
        double ref = -10 * std::log10(1 + std::pow(f / fc, 2 * n));
        EXPECT_NEAR(peg[i], ref, 2e-3) << f;
        // Voltage effective gain sits 6.02 dB lower; insertion gain equals PEG here.
        EXPECT_NEAR(veg[i], ref + 20 * std::log10(0.5), 2e-3) << f;
        EXPECT_NEAR(pig[i], ref, 2e-3) << f;
    }
    // At the cut-off the power is halved: -3.0103 dB.
    sweepfrequencies(fc, fc * 2, wA, 1);
    ASSERT_TRUE(sweepvalues(Quantity::PEG, 0, wA, peg, 1));
    EXPECT_NEAR(peg[0], -3.0103, 1e-3);
    // Phase of the 7th-order Butterworth at the cut-off: -7*45 = -315 degrees, wrapped by
    // the walk's principal arctangents into a sum of arm angles (not unwrapped); the
    // 1e-6 siemens of each capacitor moves it by a few thousandths of a degree.
    ASSERT_TRUE(sweepvalues(Quantity::Phase, 0, wA, ph, 1));
    double wrapped = std::fmod(ph[0] + 315.0, 180.0);
    EXPECT_NEAR(std::min(std::abs(wrapped), 180 - std::abs(wrapped)), 0, 1e-2) << ph[0];
}

} // namespace
} // namespace zelk
