#include <gtest/gtest.h>

#include <limits>

#include "core/hostmath.h"

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

TEST(HostMath, ValReadsTheNumberAtTheHead) {
    for (auto [text, want] : std::initializer_list<std::pair<const char*, double>>{
             {"  12.5abc", 12.5}, {"1 2 3", 123}, {"-4.5e2x", -450}, {"1e", 1}, {"1e-", 1}, {"1E+3", 1000},
             {"See Notes", 0}, {"", 0}, {".5", 0.5}, {"1.2.3", 1.2}})
        EXPECT_EQ(Val(text), want) << text;
}

TEST(HostMath, FormatMasks) {
    // Half away from zero at the mask's last digit, after 15 significant digits; integer
    // digits beyond the mask stay. 1.005 is 1.00499999999999989... in binary, but
    // 1.00500000000000 at 15 digits.
    const struct {
        double v;
        const char *mask, *want;
    } cases[] = {{2.0005, "###.###", "2.001"}, {-2.0005, "###.###", "-2.001"}, {2, "###.###", "2."},
                 {0.5, "###.###", ".5"},       {470, "###.###", "470."},      {123456.7, "###.#", "123456.7"},
                 {0.1, "#.#00", ".100"},       {0.125, "#.#00", ".125"},      {5.723998, "##.000", "5.724"},
                 {5, "##.#", "5."},            {12.345, "**.00", "12.35"},  {0.0047, "#.######", ".0047"},
                 {999.9995, "###.###", "1000."}, {0.00004, "###.###", "."},   {1.005, "#.##", "1.01"},     {0.5, "**.00", ".50"}};
    for (const auto& c : cases) EXPECT_EQ(Format(c.v, c.mask), c.want) << c.v << " " << c.mask;
}

TEST(HostMath, StrIsTheUnmaskedForm) {
    for (auto [v, want] : std::initializer_list<std::pair<double, const char*>>{
         {0, "0"}, {5, "5"}, {-3, "-3"}, {0.25, "0.25"},
         {100000, "100000"}, {62831853.08, "62831853.08"}, {1.0 / 3, "0.333333333333333"}, {1.5e-5, "1.5E-05"},
         {1e-4, "0.0001"}, {2e15, "2E+15"}, {999999999999999.0, "999999999999999"}, {4.5e-12, "4.5E-12"},
         {-1.9e-14, "-1.9E-14"}}) EXPECT_EQ(Str(v), want) << v;
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
