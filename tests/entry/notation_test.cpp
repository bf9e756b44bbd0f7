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
    for (auto [v, want] : std::initializer_list<std::pair<double, const char*>>{
         {0, "0"}, {1000, "1.K"}, {1500000, "1.5M"}, {62831853.08, "62.831853M"},
         {4700, "4.7K"}, {2, "2."}, {470, "470."}, {50, "50."},
         {0.5, "500.m"}, {0.001, "1.m"}, {2.2e-6, "2.2u"}, {1e-6, "1.u"},
         {4.7e-9, ".0047u"}, {1e-9, ".001u"}, {47e-12, "47.p"}, {1.5e-13, ".15p"}}) EXPECT_EQ(engformatvalue(v), want) << v;
    setnano(true);
    for (auto [v, want] : std::initializer_list<std::pair<double, const char*>>{
         {4.7e-9, "4.7n"}, {1e-9, "1.n"}, {47e-12, "47.p"}, {2.2e-6, "2.2u"}}) EXPECT_EQ(engformatvalue(v), want) << v;
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
    // Suffixes are case-sensitive ("k" and "U" are none), blanks anywhere are ignored, and
    // a text written by engformat reads back to its value.
    for (auto [text, want] : std::initializer_list<std::pair<const char*, double>>{
             {"10K", 10000}, {"10k", 10}, {"4.7u", 4.7e-6}, {"4.7U", 4.7}, {"10M", 10000000}, {"3m", 0.003},
             {"22n", 22e-9}, {"100p", 100e-12}, {"1e3", 1000}, {"12%", 12}, {"", 0}, {"See Notes", 0},
             {"Lossless", 0}, {"1 0 K", 10000}, {"2.2 n", 2.2e-9}, {"1e", 1}, {"-5", -5}, {"K", 0},
             {".0047u", 4.7e-9}, {"62.831853M", 62831853}})
        EXPECT_DOUBLE_EQ(parsevalue(text), want) << text;
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
