#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "synthesis/bwcheby.h"
#include "synthesis/crystal.h"
#include "reference.h"
#include "testsupport.h"

using namespace zelk;

namespace {

constexpr double pi = 3.141592654;

// A fresh program with slot 0 holding a 10 MHz crystal and a ladder of order n, bw in hertz.
struct Ladder : test::Session {
    Ladder(int n, double bwhz = 2000) {
        DesignSlot& s = test::crystalslot(n);
        s.bw = bwhz * 6.283185308;
    }
    DesignSlot& s() { return slot(0); }
};

// The run-time fault a step raises, 0 for none.
int faultof(void (*step)()) {
    try {
        step();
    } catch (const RuntimeFault& f) {
        return f.number;
    }
    return 0;
}

struct ModeCase {
    const char* mode;
    std::vector<int> types;
};
class CouplingModes : public testing::TestWithParam<ModeCase> {};

} // namespace

TEST_P(CouplingModes, GiveTheirDipoleTypesAndCouplingValues) {
    const ModeCase& m = GetParam();
    Ladder l(4);
    flow.Qdesign = 150;
    BCLterms();
    crystaldesignvalues();
    crystalladder(m.mode);
    EXPECT_EQ(test::types(), m.types);
    DesignSlot& s = l.s();
    const double w0 = 1 / std::sqrt(s.Ls * s.Cs), bw = s.bw;
    EXPECT_NEAR(s.r0, bw * s.Ls / (2 * std::sin(pi / 8)), 1e-9 * s.r0);
    const bool capacitive = m.mode[1] == 'C';
    const std::vector<double> g = test::butterworthg(4); // couplings 1 / sqrt(g[i] g[i+1])
    for (size_t i = 1; i <= 3; ++i) {
        const Dipole& c = s.dip(static_cast<int>(2 * i + 2));
        const double k = 1 / std::sqrt(g[i] * g[i + 1]);
        if (capacitive) {
            EXPECT_NEAR(c.C, s.Cs * w0 / k / bw, 1e-9 * c.C) << i;
        } else {
            EXPECT_NEAR(c.L, s.Ls / w0 * k * bw, 1e-9 * c.L) << i;
            EXPECT_EQ(c.Qu, 150);
        }
    }
    // Every crystal carries the design crystal.
    for (int d = 3; d <= 9; d += 2) EXPECT_EQ(s.dip(d).Ls, double(s.Ls));
    if (std::string(m.mode) == "TL") {
        // Each crystal resonates with the coupling inductors at its nodes.
        const double w2 = w0 * w0;
        EXPECT_NEAR(s.dip(3).C, 1 / (w2 * s.dip(4).L), 1e-9 * s.dip(3).C);
        EXPECT_NEAR(s.dip(5).C, 1 / (w2 * (s.dip(4).L + s.dip(6).L)), 1e-9 * s.dip(5).C);
        EXPECT_NEAR(s.dip(9).C, 1 / (w2 * s.dip(8).L), 1e-9 * s.dip(9).C);
    }
    if (std::string(m.mode) == "TC") {
        // End trimmers bring the end nodes to the node capacitance of the first node: in
        // a symmetric ladder the series of C4 and C6 against C4 alone gives back C6.
        EXPECT_NEAR(s.dip(3).C, s.dip(6).C, 1e-6 * s.dip(6).C);
    }
}

INSTANTIATE_TEST_SUITE_P(Crystal, CouplingModes,
                         testing::Values(ModeCase{"UC", {1, 38, 7, 33, 7, 33, 7, 33, 7, 31}},
                                         ModeCase{"UL", {1, 38, 7, 32, 7, 32, 7, 32, 7, 31}},
                                         // The middle nodes already hold Cnode: no trimmer.
                                         ModeCase{"TC", {1, 38, 16, 33, 7, 33, 7, 33, 16, 31}},
                                         ModeCase{"TL", {1, 38, 16, 32, 16, 32, 16, 32, 16, 31}}));

TEST(Crystal, QTestPassesAtExactlyTwiceTheOrder) {
    // (Qx bw) / Fs against 2n, bw in rad/s: Qx 200000, Fs 10 MHz, n 4 -> bw 400 rad/s.
    Ladder l(4);
    l.s().bw = 400;
    EXPECT_TRUE(crystalQsufficient());
    l.s().bw = 399.999;
    EXPECT_FALSE(crystalQsufficient());
    EXPECT_DOUBLE_EQ(narrowestbandwidth(), 2 * 4 * 10e6 / 200000);
}

TEST(Crystal, MinimumLossTermsAreEqualCouplings) {
    Ladder l(4);
    MCLterms();
    const double h = std::pow(2.0, 0.25) / 2;
    EXPECT_NEAR(prototerms.g1term, 1 / h, 1e-12);
    EXPECT_NEAR(prototerms.gnterm, 1 / h, 1e-12);
    for (int i = 1; i <= 3; ++i) EXPECT_NEAR(crystalwork.kcrystal[static_cast<size_t>(i)], h, 1e-12);
}

TEST(Crystal, OrderTwoTunedLaddersTrimBothCrystals) {
    Ladder l(2);
    BCLterms();
    crystaldesignvalues();
    crystalladder("TL");
    EXPECT_EQ(test::types(), (std::vector<int>{1, 38, 16, 32, 16, 31}));
    const double w0 = l.s().w0;
    EXPECT_NEAR(l.s().dip(5).C, 1 / (w0 * w0 * l.s().dip(4).L), 1e-9 * l.s().dip(5).C);
}

// The host's division fault: in capacitor coupling of order 2 the node capacitance takes
// the load's C of 0 as the second coupling; a tap on a crystal without a trimmer divides
// by its C of 0.
TEST(Crystal, DivisionsByZeroAreTheHostsFaults) {
    {
        Ladder l(2);
        BCLterms();
        crystaldesignvalues();
        EXPECT_EQ(faultof([] { crystalladder("TC"); }), 11);
    }
    Ladder l(3);
    BCLterms();
    crystaldesignvalues();
    crystalladder("UC");
    EXPECT_EQ(faultof([] { crystaltapinput(50); }), 11);
}

TEST(Crystal, ATrimmerOutOfRangeLeavesTheCrystalBare) {
    // Order 4, couplings chosen so that node 7 needs 1 / (1/C4 - 1/C8): with C8 = 2 C4 the
    // trimmer is C8, in range; with C8 a hair above C4 it is far above 1000 Cnode.
    for (auto [k3, trimmed] : {std::pair{0.25, true}, {0.4999999, false}}) {
        Ladder l(4);
        BCLterms();
        crystaldesignvalues();
        crystalwork.kcrystal = {};
        crystalwork.kcrystal[1] = 0.5, crystalwork.kcrystal[2] = 0.7, crystalwork.kcrystal[3] = k3;
        crystalladder("TC");
        const Dipole& x = l.s().dip(7);
        EXPECT_EQ(x.type, trimmed ? 16 : 7) << k3;
        if (trimmed) {
            EXPECT_NEAR(x.C, l.s().dip(8).C, 1e-6 * x.C);
        }
        EXPECT_EQ(l.s().dip(9).type, 16);
    }
}

// A tap takes the end crystal's trimmer into the tapped form, 57 or 58 by the side of r0
// (about 252 ohms here) the termination lies on; the crystal is left bare and, at the
// output, the load moves behind a wire.
TEST(Crystal, TapsTakeTheEndTrimmerInBothForms) {
    const struct {
        bool input;
        double z;
        int type;
    } cases[] = {{true, 50, 57}, {true, 1000, 58}, {false, 50, 58}, {false, 1000, 57}};
    for (const auto& c : cases) {
        Ladder l(3);
        flow.Qdesign = 90;
        BCLterms();
        crystaldesignvalues();
        crystalladder("TL");
        DesignSlot& s = l.s();
        const int end = c.input ? 3 : 7;
        const double trim = s.dip(end).C, t = std::sqrt(s.r0 / c.z);
        if (c.input) crystaltapinput(c.z);
        else crystaltapoutput(c.z);
        const Dipole& tap = s.dip(c.input ? 2 : 8);
        EXPECT_EQ(tap.type, c.type) << c.z;
        EXPECT_NEAR(tap.C, t * trim, 1e-12 * trim);
        EXPECT_EQ(tap.Qu, 90);
        EXPECT_EQ(s.dip(end).type, 7);
        EXPECT_EQ(s.dip(end).C, 0);
        if (!c.input) {
            EXPECT_EQ(test::types(), (std::vector<int>{1, 38, 16, 32, 16, 32, 7, c.type, 6, 31}));
            EXPECT_EQ(s.dip(10).R, c.z);
        }
    }
}
