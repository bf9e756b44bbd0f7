// Part tolerances and standard series: Tpercent's asymmetric step and its closed zero
// trap, Set Part Tolerance with the inductor percent for every group, and the standard
// window's series rounding against values worked by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "core/designstore.h"
#include "schematic/tolerance.h"
#include "testsupport.h"

namespace zelk {
namespace {

const char* const chebyshevbp =
    "> selfunction: selection(2) selection(4)\n> Getdata: 10M 2M 2 0.5 \"\" 5 50 50\n"
    ">? Getdata: Lossless\n>? designtitle: Command1\nchebyshev\n";

struct TpercentCase {
    double value, percent, expected;
};

class TpercentTest : public ::testing::TestWithParam<TpercentCase> {};

TEST_P(TpercentTest, RoundsToTheStepOfTheLeadingDigit) {
    const TpercentCase& c = GetParam();
    double v = c.value;
    Tpercent(v, c.percent);
    EXPECT_NEAR(v, c.expected, std::abs(c.expected) * 1e-12) << c.value << " at " << c.percent;
}

INSTANTIATE_TEST_SUITE_P(
    Values, TpercentTest,
    ::testing::Values(
        // 4.7 on a step of 0.05 stays; 4.73 goes to 4.75.
        TpercentCase{4.7e-7, 5, 4.7e-7}, TpercentCase{4.73e-7, 5, 4.75e-7},
        // Below 1 the value is brought to 1..10 first: 4.712 on 0.01 steps.
        TpercentCase{0.4712, 1, 0.471}, TpercentCase{0.0123456, 10, 0.012},
        // 1 or more is rounded to an absolute step of percent / 100: nearly unchanged.
        TpercentCase{123.456, 10, 123.5}, TpercentCase{47.123, 1, 47.12},
        // Percent 0, a value of 0 and a negative value stay as they are.
        TpercentCase{3.3, 0, 3.3}, TpercentCase{0, 5, 0}, TpercentCase{-2.5e-9, 5, -2.5e-9},
        // Above 100 % the step is wider than the digit: 3.3 on steps of 1.5.
        TpercentCase{3.3e-9, 150, 3e-9}));

// Set Part Tolerance with the inductor percent for every group, its cancel, and Set Q are
// the golden script tolerance_parts.

// The standard series, in order: `lower` carries from one value to the next, which the
// last row shows (a mantissa of exactly 1 takes the lower value left by the row before).
struct SeriesCase {
    double value, ratio, scale, expected;
};

TEST(StandardSeries, RoundsOntoPowersOfTheRatioWorkedByHand) {
    const SeriesCase cases[] = {
        // .5 %: 5.0 lies between 1.012^134 = 4.94525 and 1.012^135 = 5.00460; upper is
        // nearer and rounds to 5.00.
        {50, 1.012, 100, 50},
        // 5 %: 4.7 between 4.66274 and 5.13375: lower, 4.7 to one decimal.
        {4.7e-6, 1.10100694171, 10, 4.7e-6},
        // 10 %: 3.3 between 3.16228 and 3.83118: lower, 3.2.
        {3.3e-9, 1.211527659, 10, 3.2e-9},
        // 20 %: 2.2 between 2.15443 and 3.16228: lower, 2.2.
        {220, 1.467799268, 10, 220},
        // 2 %: 6.8 between 6.49382 and 6.81292: upper, 6.81.
        {0.68, 1.049139729, 100, 0.681},
        // 1 %: 1.5 between 1.46780 and 1.50342: upper is nearer and rounds to 1.50.
        {1.5e-3, 1.024275221, 100, 1.5e-3},
        // A mantissa of 1 skips the search: lower is still 1.46780 from the row before,
        // 1 - 1.4678 is not above 0, so lower is taken and rounds to 1.5.
        {1e-6, 1.10100694171, 10, 1.5e-6},
    };
    standard.reset();
    for (const SeriesCase& c : cases) {
        double v = c.value;
        standard.standardize(v, c.ratio, c.scale);
        EXPECT_NEAR(v, c.expected, c.expected * 1e-12) << c.value;
    }
}

TEST(StandardWindow, OptionsSetRatiosAndTheSharedScale) {
    test::Session s;
    ASSERT_EQ(s.run(chebyshevbp + std::string("standardT\n")), 0) << s.err.str();
    EXPECT_TRUE(standard.loaded);
    EXPECT_EQ(standard.caption, "Standardize values");
    struct Step {
        const char* option;
        double Rratio, Lratio, Cratio, Lscale, RCscale;
    };
    const Step steps[] = {
        {"Option2", 1.024275221, 0, 0, 0, 0},  // R 1 %: ratio only, no scale
        {"Option11", 1.024275221, 1.211527659, 0, 10, 0},
        {"Option13", 1.024275221, 1.211527659, 1.012, 10, 100}, // C writes the shared scale
        {"Option1", 1.012, 1.211527659, 1.012, 10, 100},
        {"Option18", 1.012, 1.211527659, 1.467799268, 10, 10},
    };
    for (const Step& st : steps) {
        ASSERT_EQ(s.run(std::string("event standard ") + st.option + " click\n"), 0);
        EXPECT_EQ(standard.Rratio, st.Rratio) << st.option;
        EXPECT_EQ(standard.Lratio, st.Lratio) << st.option;
        EXPECT_EQ(standard.Cratio, st.Cratio) << st.option;
        EXPECT_EQ(standard.Lscale, st.Lscale) << st.option;
        EXPECT_EQ(standard.RCscale, st.RCscale) << st.option;
    }
    EXPECT_EQ(standard.ctl("Option13").value, 0); // exclusive within the C frame
    EXPECT_EQ(standard.ctl("Option18").value, 1);
}

TEST(StandardWindow, ResistorOptionAloneFaultsAndLeavesTheDesign) {
    test::Session s;
    ASSERT_EQ(s.run(chebyshevbp + std::string("standardT\nevent standard Option4 click\n")), 0);
    const auto before = slot(0).dipoles;
    s.runner.desk.messages.clear();
    ASSERT_EQ(s.run("event standard Command1 click\n"), 0) << s.err.str();
    ASSERT_EQ(s.runner.desk.messages.size(), 1u);
    EXPECT_NE(s.runner.desk.messages[0].text.find("Run-time error"), std::string::npos);
    for (int d = 1; d <= slot(0).count(); ++d) {
        EXPECT_EQ(dipole(0, d).R, before[static_cast<size_t>(d)].R) << d;
        EXPECT_FALSE(std::isnan(dipole(0, d).L)) << d;
    }
    // A C option first gives the resistors their scale.
    ASSERT_EQ(s.run("event standard Option16 click\nevent standard Command1 click\n"), 0);
    // 5.0 between 4.66274 and 5.13375 on the 5 % series: upper, 5.1.
    EXPECT_EQ(dipole(0, 1).R, 51);
    EXPECT_TRUE(standard.loaded);  // OK leaves the window open
}

} // namespace
} // namespace zelk
