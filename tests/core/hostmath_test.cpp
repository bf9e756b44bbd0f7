#include <gtest/gtest.h>

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
    EXPECT_EQ(Val("  12.5abc"), 12.5);
    EXPECT_EQ(Val("1 2 3"), 123);
    EXPECT_EQ(Val("-4.5e2x"), -450);
    EXPECT_EQ(Val("1e"), 1);
    EXPECT_EQ(Val("1e-"), 1);
    EXPECT_EQ(Val("1E+3"), 1000);
    EXPECT_EQ(Val("See Notes"), 0);
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val(".5"), 0.5);
    EXPECT_EQ(Val("1.2.3"), 1.2);
}

TEST(HostMath, FormatMasks) {
    // Half away from zero at the mask's last digit, after 15 significant digits.
    EXPECT_EQ(Format(2.0005, "###.###"), "2.001");
    EXPECT_EQ(Format(-2.0005, "###.###"), "-2.001");
    EXPECT_EQ(Format(2, "###.###"), "2.");
    EXPECT_EQ(Format(0.5, "###.###"), ".5");
    EXPECT_EQ(Format(470, "###.###"), "470.");
    EXPECT_EQ(Format(123456.7, "###.#"), "123456.7"); // integer digits beyond the mask
    EXPECT_EQ(Format(0.1, "#.#00"), ".100");
    EXPECT_EQ(Format(0.125, "#.#00"), ".125");
    EXPECT_EQ(Format(5.723998, "##.000"), "5.724");
    EXPECT_EQ(Format(5, "##.#"), "5.");
    EXPECT_EQ(Format(12.345, "**.00"), "12.35"); // a star place prints as #
    EXPECT_EQ(Format(0.5, "**.00"), ".50");
    EXPECT_EQ(Format(0.0047, "#.######"), ".0047");
    EXPECT_EQ(Format(999.9995, "###.###"), "1000.");
    EXPECT_EQ(Format(0.00004, "###.###"), ".");
    // 1.005 is 1.00499999999999989... in binary, but 1.00500000000000 at 15 digits.
    EXPECT_EQ(Format(1.005, "#.##"), "1.01");
}

TEST(HostMath, StrIsTheUnmaskedForm) {
    EXPECT_EQ(Str(0), "0");
    EXPECT_EQ(Str(5), "5");
    EXPECT_EQ(Str(-3), "-3");
    EXPECT_EQ(Str(0.25), "0.25");
    EXPECT_EQ(Str(100000), "100000");
    EXPECT_EQ(Str(62831853.08), "62831853.08");
    EXPECT_EQ(Str(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(Str(1.5e-5), "1.5E-05");
    EXPECT_EQ(Str(1e-4), "0.0001");
    EXPECT_EQ(Str(2e15), "2E+15");
    EXPECT_EQ(Str(999999999999999.0), "999999999999999");
    EXPECT_EQ(Str(4.5e-12), "4.5E-12");
    EXPECT_EQ(Str(-1.9e-14), "-1.9E-14");
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
