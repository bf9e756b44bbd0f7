// The elliptic ladder layouts from either end and Bartlett's bisection, with marker
// element values so that every placement is visible.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/designflow.h"
#include "core/designstore.h"
#include "synthesis/ellipticproto.h"
#include "synthesis/ellipticrealize.h"
#include "testsupport.h"

namespace zelk {
namespace {

// One expected dipole: type and the normalised value pair (C, L) or R.
struct Want {
    short type;
    double C = 0, L = 0, R = 0;
};

void layout(int n, const std::string& cf, bool fromoutput, double Zin = 50, double Zout = 50) {
    store.lastslot = 0;
    store.curslot = 0;
    DesignSlot& d = slot(0);
    d.order = n;
    d.Zin = Zin;
    d.Zout = Zout;
    store.oddorder = n % 2 != 0;
    elliptic.halforder = n / 2;
    elliptic.fromoutput = fromoutput;
    flow.configuration = cf;
    for (int k = 1; k <= 16; ++k) {
        elliptic.elemA[static_cast<size_t>(k)] = 10 + k; // A1 = 11, A2 = 12, ...
        elliptic.elemB[static_cast<size_t>(k)] = 100 + k; // B2 = 102, ...
    }
    ellipticrealize();
}

void expectladder(const std::vector<Want>& want) {
    ASSERT_EQ(slot(0).count(), static_cast<int>(want.size()));
    for (size_t i = 0; i < want.size(); ++i) {
        SCOPED_TRACE("dipole " + std::to_string(i + 1));
        const Dipole& p = dipole(0, static_cast<int>(i + 1));
        EXPECT_EQ(p.type, want[i].type);
        EXPECT_DOUBLE_EQ(p.C, want[i].C);
        EXPECT_DOUBLE_EQ(p.L, want[i].L);
        EXPECT_DOUBLE_EQ(p.R, want[i].R);
    }
}

TEST(EllipticRealize, LayoutsFromTheSource) {
    test::Session s;
    // Order 3 Pi: source, C, trap, C, wire, load; a ratio of 1 leaves it as it is.
    layout(3, "Pi", false);
    expectladder({{1, 0, 0, 50}, {33, 11}, {5, 12, 102}, {33, 13}, {6}, {31, 0, 0, 50}});
    // "NODAL" is laid out as "Pi".
    layout(3, "NODAL", false);
    expectladder({{1, 0, 0, 50}, {33, 11}, {5, 12, 102}, {33, 13}, {6}, {31, 0, 0, 50}});
    // Order 3 T: source, open, L, trap, L, load.
    layout(3, "T", false);
    expectladder({{1, 0, 0, 50}, {38}, {2, 0, 11}, {34, 102, 12}, {2, 0, 13}, {31, 0, 0, 50}});
    // Order 5 SPPi.
    layout(5, "SPPi", false);
    expectladder({{1, 0, 0, 50}, {33, 11}, {5, 12, 102}, {33, 13}, {5, 14, 104}, {33, 15}, {6},
                  {31, 0, 0, 50}});
    // Even order 4 Pi ends in the closing series inductor B4; T in B4 as a shunt C and a wire.
    layout(4, "Pi", false);
    expectladder({{1, 0, 0, 50}, {33, 11}, {5, 12, 102}, {33, 13}, {2, 0, 104}, {31, 0, 0, 50}});
    layout(4, "SPT", false);
    expectladder({{1, 0, 0, 50}, {38}, {2, 0, 11}, {34, 102, 12}, {2, 0, 13}, {33, 104}, {6},
                  {31, 0, 0, 50}});
    layout(6, "Pi", false);
    expectladder({{1, 0, 0, 50}, {33, 11}, {5, 12, 102}, {33, 13}, {5, 14, 104}, {33, 15}, {2, 0, 106},
                  {31, 0, 0, 50}});
}

TEST(EllipticRealize, LayoutsFromTheLoad) {
    test::Session s;
    layout(3, "Pi", true);
    expectladder({{1, 0, 0, 50}, {33, 13}, {5, 12, 102}, {33, 11}, {6}, {31, 0, 0, 50}});
    layout(5, "T", true);
    expectladder({{1, 0, 0, 50}, {38}, {2, 0, 15}, {34, 104, 14}, {2, 0, 13}, {34, 102, 12}, {2, 0, 11},
                  {31, 0, 0, 50}});
    layout(4, "Pi", true);
    expectladder({{1, 0, 0, 50}, {38}, {2, 0, 104}, {33, 13}, {5, 12, 102}, {33, 11}, {6}, {31, 0, 0, 50}});
    // Even T from the load: n + 3 dipoles, dipole 2 keeps what it held.
    dipole(0, 2).type = 77;
    dipole(0, 2).C = 9;
    layout(4, "T", true);
    ASSERT_EQ(slot(0).count(), 7);
    EXPECT_EQ(dipole(0, 2).type, 77);
    EXPECT_EQ(dipole(0, 2).C, 9);
    EXPECT_EQ(dipole(0, 3).type, 33);
    EXPECT_EQ(dipole(0, 3).C, 104);
    EXPECT_EQ(dipole(0, 4).type, 2);
    EXPECT_EQ(dipole(0, 4).L, 13);
    EXPECT_EQ(dipole(0, 5).type, 34);
    EXPECT_EQ(dipole(0, 6).L, 11);
    EXPECT_EQ(dipole(0, 7).R, 50);
}

TEST(EllipticRealize, BartlettBisectionAtTheMiddleDipole) {
    test::Session s;
    // Order 3 Pi, ratio 3: the middle trap (dipole 3) becomes L = 102/2 * 4 = 204,
    // C = 24 / 4 = 6; the C after it is divided by 3.
    layout(3, "Pi", false, 50, 150);
    expectladder({{1, 0, 0, 50}, {33, 11}, {5, 6, 204}, {33, 13.0 / 3}, {6}, {31, 0, 0, 150}});
    // Order 3 T, ratio 3: the middle is dipole 4 (count 6 / 2 + 1), a shunt trap:
    // L = 24 * 3 / 4 = 18, C = (102 / 2 * 4) / 3 = 68; the last L is multiplied by 3.
    layout(3, "T", false, 50, 150);
    expectladder({{1, 0, 0, 50}, {38}, {2, 0, 11}, {34, 68, 18}, {2, 0, 39}, {31, 0, 0, 150}});
    // Order 5 Pi, ratio 0.5: the middle is shunt C3 (dipole 4): C = 13/2 * 1.5 / 0.5 = 19.5.
    layout(5, "Pi", false, 100, 50);
    expectladder({{1, 0, 0, 100}, {33, 11}, {5, 12, 102}, {33, 19.5}, {5, 28, 52}, {33, 30}, {6},
                  {31, 0, 0, 50}});
    // Order 5 T, ratio 4: the middle is series L3 (dipole 5): L = 13/2 * 5 = 32.5.
    layout(5, "T", false, 50, 200);
    expectladder({{1, 0, 0, 50}, {38}, {2, 0, 11}, {34, 102, 12}, {2, 0, 32.5}, {34, 26, 56}, {2, 0, 60},
                  {31, 0, 0, 200}});
    // A ratio of 10 or more is not bisected; an even order never is.
    layout(3, "Pi", false, 50, 500);
    expectladder({{1, 0, 0, 50}, {33, 11}, {5, 12, 102}, {33, 13}, {6}, {31, 0, 0, 500}});
    layout(4, "Pi", false, 50, 100);
    expectladder({{1, 0, 0, 50}, {33, 11}, {5, 12, 102}, {33, 13}, {2, 0, 104}, {31, 0, 0, 100}});
    // "Maxcurrent" reaches the bisection with a ratio of 0.01.
    layout(3, "Pi", true, 5000, 50);
    expectladder({{1, 0, 0, 5000}, {33, 13}, {5, 24 / 1.01, 51.51}, {33, 1100}, {6}, {31, 0, 0, 50}});
}

} // namespace
} // namespace zelk
