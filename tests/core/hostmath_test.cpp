// The host's arithmetic and number texts, and the program's engineering notation.
#include <gtest/gtest.h>

#include <limits>

#include "core/commands.h"
#include "core/hostmath.h"
#include "core/notation.h"
#include "files.h"
#include "testsupport.h"

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

// The engineering notation of the program, read and written.
namespace {
void setnano(bool on) {
    addmenu("nano", "nano units", "options");
    setchecked("nano", on);
}
} // namespace

TEST(Notation, EngformatEveryRow) {
    test::Session s;
    for (const test::Row& r : test::datarows("notation.txt", "engformat")) {
        setnano(r.text(0) == "on");
        EXPECT_EQ(engformatvalue(r.num(1)), r.text(2)) << r.text(1) << " nano " << r.text(0);
    }
}

TEST(Notation, EngformatOfANegativeValueLeavesItPositive) {
    test::Session s;
    double v = -2.5;
    EXPECT_EQ(engformat(v), "-2.5");
    EXPECT_EQ(v, 2.5);
    double c = -4.7e-12;
    EXPECT_EQ(engformat(c), "-4.7p");
    EXPECT_EQ(c, 4.7e-12);
    double k = -1000;
    EXPECT_EQ(engformat(k), "-1.K");
}

TEST(Notation, ParsevalueSuffixesAndCase) {
    for (const test::Row& r : test::datarows("notation.txt", "parse"))
        EXPECT_DOUBLE_EQ(parsevalue(r.text(0)), r.num(1)) << r.text(0);
}

TEST(Notation, NumtextPlainnumRoundvalue) {
    test::Session s;
    setnano(false);
    EXPECT_EQ("For Dipole " + numtext(3), "For Dipole  3");
    EXPECT_EQ(numtext(-3), "-3");
    EXPECT_EQ(numtext(0), " 0");
    EXPECT_EQ(plainnum(12), "12");
    EXPECT_EQ(plainnum(0.25), "0.25");
    EXPECT_EQ(roundvalue(12345, false), "12K");
    EXPECT_EQ(roundvalue(12500, true), "13K");
    EXPECT_EQ(roundvalue(10000000, false), "10M");
    EXPECT_EQ(roundvalue(4.7e-9, false), "0u"); // ".0047u": the number part truncates to 0
    EXPECT_EQ(roundvalue(2, false), "2.");      // only a digit reads as a number: "." stays
    EXPECT_EQ(roundvalue(0, false), "0");
    EXPECT_EQ(roundvalue(1.6, true), "2");
}
