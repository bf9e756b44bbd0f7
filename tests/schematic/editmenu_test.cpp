// The edit pop-up that a click on a dipole opens: which entries are on for each type and
// place, the sticky transform entry, the Norton flags, and the entry-mode restrictions.
#include <gtest/gtest.h>

#include <sstream>

#include "files.h"
#include "reference.h"
#include "schematic/schematicview.h"
#include "testsupport.h"

namespace zelk {
namespace {

using test::Part;

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
