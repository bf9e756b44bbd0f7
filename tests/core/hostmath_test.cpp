#include <gtest/gtest.h>

#include <limits>

#include "core/hostmath.h"
#include "files.h"

using namespace zelk;

TEST(HostMath, IntFixSgn) {
    EXPECT_EQ(Int(2.7), 2);
    EXPECT_EQ(Int(-2.3), -3);
    EXPECT_EQ(Fix(-2.7), -2);
    EXPECT_EQ(Fix(2.7), 2);
    EXPECT_EQ(Sgn(0.0), 0);
    EXPECT_EQ(Sgn(-0.0), 0);
    EXPECT_EQ(Sgn(-1e-300), -1);
    EXPECT_EQ(Sgn(5), 1);
}

// Val, Format and Str against the texts of tests/data/notation.txt.
TEST(HostMath, ValFormatAndStrGiveTheHostsTexts) {
    for (const test::Row& r : test::datarows("notation.txt", "val")) EXPECT_EQ(Val(r.text(0)), r.num(1)) << r.text(0);
    for (const test::Row& r : test::datarows("notation.txt", "format"))
        EXPECT_EQ(Format(r.num(0), r.text(1)), r.text(2)) << r.text(0) << " " << r.text(1);
    for (const test::Row& r : test::datarows("notation.txt", "str")) EXPECT_EQ(Str(r.num(0)), r.text(1)) << r.text(0);
}

TEST(HostMath, FaultsCarryTheHostText) {
    try {
        raisefault(9);
        FAIL();
    } catch (const RuntimeFault& f) {
        EXPECT_EQ(f.number, 9);
        EXPECT_EQ(f.description, "Subscript out of range");
    }
    EXPECT_EQ(faultdescription(11), "Division by zero");
    EXPECT_EQ(faultdescription(6), "Overflow");
}

// Conversions that meet values beyond any integer or no number at all: held within the
// bounds, NaN as 0; the formatters print the host's text for them.
TEST(HostMath, ClampintHoldsEveryValueWithinBounds) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        double x;
        int lo, hi, want;
    } cases[] = {
        {2.9, 0, 10, 2},       {-2.9, -10, 10, -2},   {1e300, 0, 400, 400},
        {-1e300, 0, 400, 0},   {inf, -5, 5, 5},       {-inf, -5, 5, -5},
        {nan, -5, 5, 0},       {nan, 1, 16, 1},       {2147483647.5, -2147483647 - 1, 2147483647, 2147483647},
        {-2147483648.9, -2147483647 - 1, 2147483647, -2147483647 - 1},
    };
    for (auto& c : cases) EXPECT_EQ(clampint(c.x, c.lo, c.hi), c.want) << c.x;
}

TEST(HostMath, FormattersTakeNonFiniteValues) {
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Format(inf, "###.###"), "Inf");
    EXPECT_EQ(Format(-inf, "##.000"), "-Inf");
    EXPECT_EQ(Format(std::numeric_limits<double>::quiet_NaN(), "#.#00"), "NaN");
    EXPECT_EQ(Format(1e300, "###.###").size(), 302u); // every integer digit, then the point
}
