// Part tolerances and standard series: Tpercent's asymmetric step and its closed zero
// trap, Set Part Tolerance with the inductor percent for every group, and the standard
// window's series rounding against values worked by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/designstore.h"
#include "files.h"
#include "schematic/tolerance.h"
#include "testsupport.h"

namespace zelk {
namespace {

const char* const chebyshevbp =
    "> selfunction: selection(2) selection(4)\n> Getdata: 10M 2M 2 0.5 \"\" 5 50 50\n"
    ">? Getdata: Lossless\n>? designtitle: Command1\nchebyshev\n";

// Tpercent and the standard series against the values of tests/data/schematic.txt.
TEST(Tpercent, RoundsToTheStepOfTheLeadingDigit) {
    for (const test::Row& r : test::datarows("schematic.txt", "tpercent")) {
        double v = r.num(0);
        Tpercent(v, r.num(1));
        EXPECT_NEAR(v, r.num(2), std::abs(r.num(2)) * 1e-12) << r.text(0) << " at " << r.text(1);
    }
}

// Set Part Tolerance with the inductor percent for every group, its cancel, and Set Q are
// the golden script tolerance_parts.

TEST(StandardSeries, RoundsOntoPowersOfTheRatioWorkedByHand) {
    standard.reset();
    for (const test::Row& r : test::datarows("schematic.txt", "standard")) {
        double v = r.num(0);
        standard.standardize(v, r.num(1), r.num(2));
        EXPECT_NEAR(v, r.num(3), r.num(3) * 1e-12) << r.text(0);
    }
}

TEST(StandardWindow, OptionsSetRatiosAndTheSharedScale) {
    test::Session s;
    ASSERT_TRUE(s.ok(chebyshevbp + std::string("standardT\n")));
    EXPECT_TRUE(standard.loaded);
    EXPECT_EQ(standard.caption, "Standardize values");
    for (const test::Row& r : test::datarows("schematic.txt", "standardoptions")) {
        ASSERT_TRUE(s.ok("event standard " + r.text(0) + " click\n"));
        EXPECT_EQ(std::vector<double>({standard.Rratio, standard.Lratio, standard.Cratio, standard.Lscale,
                                       standard.RCscale}),
                  r.nums(1))
            << r.text(0);
    }
    EXPECT_EQ(standard.ctl("Option13").value, 0); // exclusive within the C frame
    EXPECT_EQ(standard.ctl("Option18").value, 1);
}

// A resistor series alone faults and leaves the design; a capacitor series first gives the
// resistors their scale: the golden script tolerance_resistors.

} // namespace
} // namespace zelk
