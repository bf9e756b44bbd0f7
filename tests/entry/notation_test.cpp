#include <gtest/gtest.h>

#include "core/commands.h"
#include "core/notation.h"
#include "testsupport.h"

using namespace zelk;

namespace {
void setnano(bool on) {
    addmenu("nano", "nano units", "options");
    setchecked("nano", on);
}
} // namespace

TEST(Notation, EngformatEveryRow) {
    test::Session s;
    setnano(false);
    EXPECT_EQ(engformatvalue(0), "0");
    EXPECT_EQ(engformatvalue(1000), "1.K");
    EXPECT_EQ(engformatvalue(1500000), "1.5M");
    EXPECT_EQ(engformatvalue(62831853.08), "62.831853M");
    EXPECT_EQ(engformatvalue(4700), "4.7K");
    EXPECT_EQ(engformatvalue(2), "2.");
    EXPECT_EQ(engformatvalue(470), "470.");
    EXPECT_EQ(engformatvalue(50), "50.");
    EXPECT_EQ(engformatvalue(0.5), "500.m");
    EXPECT_EQ(engformatvalue(0.001), "1.m");
    EXPECT_EQ(engformatvalue(2.2e-6), "2.2u");
    EXPECT_EQ(engformatvalue(1e-6), "1.u");
    EXPECT_EQ(engformatvalue(4.7e-9), ".0047u");
    EXPECT_EQ(engformatvalue(1e-9), ".001u");
    EXPECT_EQ(engformatvalue(47e-12), "47.p");
    EXPECT_EQ(engformatvalue(1.5e-13), ".15p");
    setnano(true);
    EXPECT_EQ(engformatvalue(4.7e-9), "4.7n");
    EXPECT_EQ(engformatvalue(1e-9), "1.n");
    EXPECT_EQ(engformatvalue(47e-12), "47.p");
    EXPECT_EQ(engformatvalue(2.2e-6), "2.2u");
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
    EXPECT_EQ(parsevalue("10K"), 10000);
    EXPECT_EQ(parsevalue("10k"), 10); // case-sensitive: "k" is no suffix
    EXPECT_DOUBLE_EQ(parsevalue("4.7u"), 4.7e-6);
    EXPECT_EQ(parsevalue("4.7U"), 4.7);
    EXPECT_EQ(parsevalue("10M"), 10000000);
    EXPECT_DOUBLE_EQ(parsevalue("3m"), 0.003);
    EXPECT_DOUBLE_EQ(parsevalue("22n"), 22e-9);
    EXPECT_DOUBLE_EQ(parsevalue("100p"), 100e-12);
    EXPECT_EQ(parsevalue("1e3"), 1000);
    EXPECT_EQ(parsevalue("12%"), 12);
    EXPECT_EQ(parsevalue(""), 0);
    EXPECT_EQ(parsevalue("See Notes"), 0);
    EXPECT_EQ(parsevalue("Lossless"), 0);
    EXPECT_EQ(parsevalue("1 0 K"), 10000);  // blanks anywhere are ignored
    EXPECT_DOUBLE_EQ(parsevalue("2.2 n"), 2.2e-9);
    EXPECT_EQ(parsevalue("1e"), 1);
    EXPECT_EQ(parsevalue("-5"), -5);
    EXPECT_EQ(parsevalue("K"), 0);
    // A text written by engformat reads back to its value.
    EXPECT_DOUBLE_EQ(parsevalue(".0047u"), 4.7e-9);
    EXPECT_DOUBLE_EQ(parsevalue("62.831853M"), 62831853);
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
