// The frame's menu tree and the enabled states of the three menu blocks, checked entry by
// entry against the table of the frame's behaviour written out independently here.
#include <gtest/gtest.h>

#include <set>

#include "core/commands.h"
#include "core/designstore.h"
#include "shell/frame.h"
#include "testsupport.h"

using namespace zelk;

namespace {

std::vector<std::string> childrenof(const std::string& parent) {
    std::vector<std::string> out;
    for (const MenuItem& m : menuitems())
        if (m.parent == parent) out.push_back(m.name);
    return out;
}

// Expected state per block: 1 on, 0 off, -1 not named (keeps what it had).
struct Row {
    std::vector<std::string> names;
    int none, one, two;
};

std::vector<Row> table() {
    std::vector<std::string> printclip = {"pSch"};
    for (const char* p : {"PEG", "PIG", "VEG", "VIG", "CEG", "CIG", "Zin", "Zout", "RL", "Phase", "GD", "IR",
                          "USR", "PR", "TPR"}) {
        printclip.push_back(std::string("p") + p);
        printclip.push_back(std::string("c") + p);
        printclip.push_back(std::string("x") + p);
    }
    printclip.push_back("xSch");
    return {
        {{"openfilter"}, 1, 1, 0},
        {{"savefilter"}, 0, 1, 0},
        {{"delete", "printerSU", "printfilter", "clip", "exitfilter", "analysis", "export"}, 1, 1, 1},
        {{"xTouchstone", "xSpice"}, 0, 1, 1},
        {printclip, 0, -1, -1},
        {{"undo"}, 0, -1, 0},
        {{"enter"}, 1, 0, 0},
        {{"append", "insert", "qu", "tzfm", "tolerance", "standardT", "statistical"}, 0, 1, 0},
        {{"PEG", "PIG", "VEG", "VIG", "CEG", "CIG", "inputz", "outputz", "RL", "PHA", "GD", "IR", "USR", "pr", "TPR"},
         0, 1, 1},
        {{"design"}, 1, 0, 1},
        {{"linearphase", "GaussianChebyshev", "coupled", "LPCR", "GCCR", "crystal", "attn"}, 1, 1, 1},
        {{"butterworth", "chebyshev", "elliptic", "Bessel", "linearphase05", "linearphase5", "gaussian1", "legendre",
          "Gaussian6", "gaussian12", "BCR", "CCR", "BesselCR", "LP05CR", "LP5CR", "GaussianCR", "LegendreCR",
          "Gaussian6CR", "gaussian12CR", "BCL", "CCL", "attnp", "attnt"},
         1, 0, 0},
        {{"helpL"}, 1, 1, 1},
        {{"partslist", "nano", "Showxtal", "showtuning", "showcoil", "sfp"}, 1, 1, 0},
        {{"dinductor"}, 0, 1, 0},
    };
}

// Sets every entry to `fill`, runs updatemenus for `lastslot` and checks each row.
void checkblock(int lastslot, int column, bool fill) {
    for (MenuItem& m : menuitems()) m.enabled = fill;
    store.lastslot = static_cast<short>(lastslot);
    updatemenus();
    std::set<std::string> named;
    for (const Row& r : table()) {
        int want = column == 0 ? r.none : column == 1 ? r.one : r.two;
        for (const std::string& n : r.names) {
            named.insert(n);
            ASSERT_NE(findmenu(n), nullptr) << n;
            bool expect = want < 0 ? fill : want == 1;
            EXPECT_EQ(menuenabled(n), expect) << n << " lastslot=" << lastslot << " fill=" << fill;
        }
    }
    // Every entry the table does not name keeps what it had, the gaps of the
    // crystal menus among them.
    for (const MenuItem& m : menuitems()) {
        if (!named.count(m.name)) {
            EXPECT_EQ(m.enabled, fill) << m.name << " lastslot=" << lastslot;
        }
    }
}

} // namespace

TEST(Menus, TreeInMenuOrderWithCaptions) {
    test::Session s;
    // The seven top menus of the bar, in order, and the edit pop-up; the design menu in
    // the order the families are offered.
    EXPECT_EQ(childrenof(""),
              (std::vector<std::string>{"file", "utilities", "analysis", "design", "options", "window", "about", "edit"}));
    EXPECT_EQ(childrenof("design"), (std::vector<std::string>{"butterworth", "chebyshev", "elliptic", "Bessel",
                                                              "linearphase", "gaussian1", "legendre",
                                                              "GaussianChebyshev", "coupled", "crystal", "attn"}));
    EXPECT_EQ(childrenof("printfilter").size(), 16u);
    EXPECT_EQ(childrenof("clip").size(), 15u);
    // Only the edit tree is a pop-up; every name is unique.
    std::set<std::string> seen;
    for (const MenuItem& m : menuitems()) {
        EXPECT_TRUE(seen.insert(m.name).second) << "twice: " << m.name;
        bool inedit = m.name == "edit" || m.parent == "edit" || m.parent == "ungroup";
        EXPECT_EQ(m.popup, inedit) << m.name;
    }
    // A reset rebuilds the model from nothing (captions changed by a command come back).
    findmenu("fordipole")->caption = "For Dipole  3";
    resetall();
    ASSERT_NE(findmenu("fordipole"), nullptr);
    EXPECT_EQ(findmenu("fordipole")->caption, "For Dipole");
}

TEST(Menus, UpdatemenusBlocksEntryByEntry) {
    test::Session s;
    for (bool fill : {false, true}) {
        checkblock(-1, 0, fill);
        checkblock(0, 1, fill);
        checkblock(1, 2, fill);
        checkblock(5, 2, fill);
    }
    // The start-up state is the nothing-open block.
    resetall();
    designframe_load();
    EXPECT_TRUE(menuenabled("openfilter"));
    EXPECT_FALSE(menuenabled("savefilter"));
    EXPECT_FALSE(menuenabled("PEG"));
    EXPECT_FALSE(menuenabled("pSch"));
    EXPECT_TRUE(menuenabled("MCL"));
}

TEST(Menus, DisabledCommandRefused) {
    // A command the menus disable cannot be run from a script either.
    test::Session t;
    EXPECT_EQ(t.run("PEG\n"), 1);
}

TEST(Menus, MenuTitleHelpLines) {
    test::Session s;
    EXPECT_EQ(s.run("option helpL on\n"), 0);
    EXPECT_TRUE(menutitle_Click("file"));
    EXPECT_EQ(frame.helplabel[0], "Open an existing filter file.");
    EXPECT_TRUE(menutitle_Click("options"));
    EXPECT_EQ(store.help3, "");
    EXPECT_TRUE(menutitle_Click("analysis"));
    // A menu without help lines leaves the last ones standing.
    EXPECT_FALSE(menutitle_Click("window"));
    EXPECT_EQ(store.help4, "Plotting parameters can be changed by re-selecting the analysis type.");
}
