#include <gtest/gtest.h>

#include "core/commands.h"
#include "core/notation.h"
#include "files.h"
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
