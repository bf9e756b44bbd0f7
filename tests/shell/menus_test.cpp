// The frame's menu tree, a command the menus disable, and the help lines of a menu title.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

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

// The enabled states of the blocks (nothing open, one design, two designs) are the
// golden scripts menus_blocks and file_twofilters.

TEST(Menus, DisabledCommandRefused) {
    // A command the menus disable cannot be run from a script either.
    test::Session t;
    EXPECT_EQ(t.run("PEG\n"), 1);
}

TEST(Menus, MenuTitleHelpLines) {
    test::Session s;
    EXPECT_TRUE(s.ok("option helpL on\n"));
    EXPECT_TRUE(menutitle_Click("file"));
    EXPECT_EQ(frame.helplabel[0], "Open an existing filter file.");
    EXPECT_TRUE(menutitle_Click("options"));
    EXPECT_EQ(store.help3, "");
    EXPECT_TRUE(menutitle_Click("analysis"));
    // A menu without help lines leaves the last ones standing.
    EXPECT_FALSE(menutitle_Click("window"));
    EXPECT_EQ(store.help4, "Plotting parameters can be changed by re-selecting the analysis type.");
}
