// Structural edits: grouping, ungrouping, splitting and inserting blanks keep the power
// effective gain over 200 frequencies, except where a merge or a write order drops a value
// on purpose; Replace shows the palette of the arm. Then the edit pop-up that a click on
// a dipole opens: which entries are on for each type and place, the sticky transform
// entry, the Norton flags, and the entry-mode restrictions.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "core/commands.h"
#include "files.h"
#include "reference.h"
#include "schematic/schematicview.h"
#include "schematic/structuraledits.h"
#include "schematic/undo.h"
#include "testsupport.h"

namespace zelk {
namespace {

using test::Part;

// Loss of slot 0 over 200 frequencies, 0.3 to 30 MHz, by the chain matrix.
std::vector<double> losscurve() {
    std::vector<double> v;
    for (int i = 0; i < 200; ++i) v.push_back(test::insertionloss(0, TWOPI * 0.3e6 * std::pow(100.0, i / 199.0)));
    return v;
}

// Largest difference of two gain curves, relative to the gain in dB (at least 1 dB).
double worst(const std::vector<double>& a, const std::vector<double>& b) {
    double w = 0;
    for (size_t i = 0; i < a.size(); ++i)
        if (const double d = std::fabs(a[i] - b[i]) / std::max(1.0, std::fabs(a[i])); !(d <= w))
            w = d; // a NaN sticks
    return w;
}

// The gain is unchanged, or changed where the edit drops a value on purpose (the reason
// in field `why` of the row, when it has one).
void expectgain(const std::vector<double>& before, const test::Row& r, size_t why) {
    const double w = worst(before, losscurve());
    if (r.field.size() > why) {
        EXPECT_GT(w, 1e-6) << r.text(why);
    } else {
        EXPECT_LT(w, 1e-9);
    }
}

bool run(const char* name, int n) {
    schematicwindow(0).click("symbol", n);
    return runcommand(*findcommand(name));
}

// The values a dipole of a given type is given: L, C, La, Ca, distinct per side.
Part part(int type, double k) {
    return {type, 0, 1e-9 * k, 1e-6 * k, 0.47e-9 * k, 2.2e-6 * k};
}

// Series pairs sit at 3 and 5 around an open at 4; shunt pairs at 2 and 4 around a wire
// (rows of tests/data/structural.txt).
TEST(Group, MergesThePairIntoOneDipoleWithTheSameGain) {
    for (const test::Row& r : test::datarows("structural.txt", "group")) {
        SCOPED_TRACE(r.text(1) + " with " + r.text(2) + " across " + r.text(0));
        test::Session session;
        if (r.whole(0) == 38)
            test::ladder({{1, 50}, {33, 0, 0.3e-9}, part(r.whole(1), 1), {38}, part(r.whole(2), 1.7), {33, 0, 0.4e-9},
                          {6}, {31, 50}});
        else
            test::ladder({{1, 50}, part(r.whole(1), 1), {6}, part(r.whole(2), 1.7), {2, 0, 0, 0.8e-6}, {31, 50}});
        schematicbuild();
        const int d = r.whole(0) == 38 ? 4 : 3;
        const int count = slot(0).count();
        const std::vector<double> before = losscurve();
        ASSERT_TRUE(run("group", d));
        EXPECT_EQ(dipole(0, d - 1).type, r.whole(3));
        EXPECT_EQ(slot(0).count(), count - 2);
        EXPECT_EQ(undostate.undodepth, 1);
        expectgain(before, r, 4);
    }
}

TEST(Ungroup, SeparatesTheDipoleWithTheSameGain) {
    for (const test::Row& r : test::datarows("structural.txt", "ungroup")) {
        SCOPED_TRACE(r.text(0) + " " + r.text(1));
        test::Session session;
        const bool series = r.whole(0) < 30;
        if (series)
            test::ladder({{1, 50}, {33, 0, 0.3e-9}, part(r.whole(0), 1), {33, 0, 0.4e-9}, {6}, {31, 50}});
        else
            test::ladder({{1, 50}, part(r.whole(0), 1), {2, 0, 0, 0.8e-6}, {31, 50}});
        schematicbuild();
        const int d = series ? 3 : 2;
        const std::vector<double> before = losscurve();
        ASSERT_TRUE(run(r.text(1) == "L" ? "ungroupL" : "ungroupR", d));
        EXPECT_EQ(dipole(0, d).type, r.whole(2));
        EXPECT_EQ(dipole(0, d + 1).type, series ? 38 : 6);
        EXPECT_EQ(dipole(0, d + 2).type, r.whole(3));
        expectgain(before, r, 4);
    }
}

// A fifth-order Butterworth low-pass (R 33 2 33 2 33 6 R) or high-pass, Pi, 10 MHz, 50 ohms.
void lowpass(test::Kind kind = test::Kind::LP) {
    test::buildladder(0, {kind, test::butterworthg(5), true, 50, 10e6, 0, 1e12});
    store.lastslot = store.curslot = 0;
    slot(0).designtitle = "Test";
    schematicbuild();
}

// Shunt C and series L of the low-pass, shunt L and series C of the high-pass.
TEST(Split, EachSplittableTypeKeepsTheGain) {
    for (test::Kind kind : {test::Kind::LP, test::Kind::HP})
        for (int d : {2, 3}) {
            test::Session session;
            lowpass(kind);
            const std::vector<double> before = losscurve();
            ASSERT_TRUE(run("split", d));
            EXPECT_EQ(dipole(0, d + 2).type, dipole(0, d).type);
            EXPECT_EQ(dipole(0, d + 1).type, d % 2 ? 38 : 6);
            EXPECT_LT(worst(before, losscurve()), 1e-9);
        }
}

// An open and a wire inserted before a shunt dipole change nothing. On a series dipole
// the ladder from d + 1 moves on and d, d + 1 are cleared into the blanks: the dipole in
// hand is gone and d + 2 keeps its old contents, which also moved to d + 4.
TEST(Insert, BlanksKeepTheGainOnShuntPlacesAndOverwriteASeriesDipole) {
    const int count = 8;
    for (int d = 2; d <= count; ++d) {
        test::Session session;
        lowpass();
        const DesignSlot old = slot(0);
        const std::vector<double> want = losscurve();
        ASSERT_TRUE(run("insertdipoles", d));
        EXPECT_EQ(slot(0).count(), count + 2);
        EXPECT_EQ(dipole(0, d).type, d % 2 ? 6 : 38);
        EXPECT_EQ(dipole(0, d + 1).type, d % 2 ? 38 : 6);
        EXPECT_EQ(dipole(0, d).C + dipole(0, d).L + dipole(0, d + 1).C + dipole(0, d + 1).L, 0);
        if (d % 2 == 0) {
            EXPECT_LT(worst(want, losscurve()), 1e-9) << "insert at " << d;
            continue;
        }
        for (int n = d + 2; n <= count + 2; ++n) {
            const int from = n == d + 2 ? d + 2 : n - 2;
            EXPECT_EQ(dipole(0, n).type, old.dip(from).type) << "insert at " << d << ", " << n;
            EXPECT_EQ(dipole(0, n).L, old.dip(from).L) << "insert at " << d << ", " << n;
        }
    }
}

// A pair without a merged form, Split C with its refusal and its values by hand, Swap
// across an open, and every edit that would grow a full ladder are the golden scripts
// structural_nogroup, structural_splitc, structural_swap and structural_full; the
// amplitude equaliser of each kind of filter is structural_equaliser.

// Replace shows the palette of the dipole's arm, and a type of the other arm is never
// written. (The type written before a closed panel, and its undo, are the golden script
// entry_replace's.)
TEST(Replace, PaletteOfTheArmOnly) {
    test::Session session;
    lowpass();
    ASSERT_TRUE(run("replace", 4));
    EXPECT_TRUE(structural.replacing);
    EXPECT_TRUE(findwindow("dipolesV")->visible);
    EXPECT_FALSE(findwindow("dipolesH")->visible);
    replacedipole(3);
    EXPECT_EQ(dipole(0, 4).type, 33) << "a series type in a shunt place";
    EXPECT_EQ(undostate.undodepth, 0);
}

// The edit pop-up that a click on a dipole opens: which entries are on for each type and
// place, the sticky transform entry, the Norton flags, and the entry-mode restrictions.
void click(int n) { schematicwindow(0).click("symbol", n); }

TEST(EditMenu, EntriesFollowTheTypeOfTheDipoleClicked) {
    test::Session session;
    // R | 35 tank | 3 C | 35 tank | 4 series LC | 33 C | 2 L | 38 | 6 | 31
    DesignSlot& s = test::ladder({{1, 50}, {35, 0, 1e-9, 1e-6}, {3, 0, 1e-9}, {35, 0, 1e-9, 1e-6},
                                  {4, 0, 1e-9, 1e-6}, {33, 0, 1e-9}, {2, 0, 0, 1e-6}, {38}, {6}, {31, 50}});
    schematicbuild();
    for (const test::Row& r : test::datarows("schematic.txt", "editmenu")) {
        s.w1 = r.num(1);
        click(r.whole(0));
        EXPECT_DOUBLE_EQ(schem.selecteddipole, r.whole(0));
        std::istringstream in(r.text(2));
        for (std::string e; in >> e;) EXPECT_EQ(menuenabled(e.substr(1)), e[0] == '+') << r.text(0) << " " << e;
        if (r.whole(0) == 3) {
            EXPECT_EQ(findmenu("fordipole")->caption, "For Dipole  3");
        }
    }
    EXPECT_TRUE(schem.dipoleselected);
}

TEST(EditMenu, TransformEntryKeepsItsStateAcrossTypesWithoutARuleOfTheirOwn) {
    test::Session session;
    // 1: R, 2: tank (n = 2), 3: type 9, 4: tank, 5: C, 6: tank (n = count - 2), 7: C, 8: R
    test::ladder({{1, 50}, {35, 0, 1e-9, 1e-6}, {9, 0, 1e-9, 1e-6, 1e-9}, {35, 0, 1e-9, 1e-6}, {3, 0, 1e-9},
                  {35, 0, 1e-9, 1e-6}, {3, 0, 1e-9}, {31, 50}});
    schematicbuild();
    // Type 9 and the C's leave the entry as the click before set it; a resistor turns it
    // off; a tank turns it on only as dipole 2 or dipolecount - 2.
    const std::pair<int, bool> clicks[] = {{2, true}, {3, true}, {1, false}, {3, false},
                                           {4, false}, {6, true}, {3, true}};
    for (auto [d, on] : clicks) {
        click(d);
        EXPECT_EQ(menuenabled("transform"), on) << d;
    }
}

TEST(EditMenu, NortonNeedsTheMateOnOneSideAndTheMateOrBlankOnTheOther) {
    test::Session session;
    // 1 R | 2: 32 | 3: 2 | 4: 32 | 5: 2 | 6: 38 | 7: 3 | 8: 33 | 9: 6 | 10: 33 | 11: 1 | 12: 31
    test::ladder({{1, 50}, {32, 0, 0, 1e-6}, {2, 0, 0, 1e-6}, {32, 0, 0, 1e-6}, {2, 0, 0, 1e-6}, {38},
                  {3, 0, 1e-9}, {33, 0, 1e-9}, {6}, {33, 0, 1e-9}, {1, 10}, {31, 50}});
    schematicbuild();
    for (const test::Row& r : test::datarows("schematic.txt", "nortonflags")) {
        click(r.whole(0));
        EXPECT_EQ(schem.stepupok, r.whole(1) == 1) << r.text(0);
        EXPECT_EQ(schem.stepdownok, r.whole(2) == 1) << r.text(0);
        EXPECT_EQ(menuenabled("norton"), r.whole(1) + r.whole(2) > 0) << r.text(0);
    }
}

TEST(EditMenu, EnteringDisablesTheStructuralEditsAndTwoFiltersIgnoreClicks) {
    test::Session session;
    test::ladder({{1, 50}, {32, 0, 0, 1e-6}, {2, 0, 0, 1e-6}, {32, 0, 0, 1e-6}, {31, 50}});
    schematicbuild();
    store.entering = true;
    click(3);
    for (const char* e : {"transform", "auto", "swap", "split", "ungroup", "group", "norton"})
        EXPECT_FALSE(menuenabled(e)) << e;
    EXPECT_EQ(findmenu("fordipole")->caption, "For Dipole  3");
    store.entering = false;
    click(3);
    EXPECT_TRUE(menuenabled("split"));
    EXPECT_TRUE(menuenabled("norton"));

    // With a second filter open nothing happens at all.
    store.lastslot = 1;
    schem.dipoleselected = false;
    click(2);
    EXPECT_FALSE(schem.dipoleselected);
    EXPECT_DOUBLE_EQ(schem.selecteddipole, 3);
}

} // namespace
} // namespace zelk
