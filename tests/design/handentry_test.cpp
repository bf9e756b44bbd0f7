// Hand entry from the dipole palettes: a typed ladder against the synthesised one, and the
// palette that comes up for each place.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "analysis/plotframe.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "design/handentry.h"
#include "schematic/undo.h"
#include "testsupport.h"

namespace zelk {
namespace {

std::string full(double v) {
    char b[40];
    std::snprintf(b, sizeof b, "%.17g", v);
    return b;
}

// A click on a palette entry with the value panel's first row answered.
std::string place(bool vertical, int type, const std::string& value = {}) {
    std::string s;
    if (!value.empty()) s += "> Getdata: getvalue(0)=" + value + " accept\n";
    s += std::string("event ") + (vertical ? "dipolesV vdipole(" : "dipolesH Hdipole(") + std::to_string(type) +
         ") click\n";
    return s;
}

TEST(HandEntry, TypedButterworthGivesTheSynthesisedCurve) {
    test::Session session;
    ASSERT_TRUE(session.ok(test::lowpass + "> Getdata: 1M 100M 0 -80\nPEG\n"));
    const auto synthesised = test::curve(session, "plotPEG");
    // The ladder as the synthesis left it, typed back in with every digit.
    std::vector<Dipole> ladder(slot(0).dipoles.begin() + 1, slot(0).dipoles.begin() + 1 + slot(0).count());
    ASSERT_EQ(ladder.size(), 8u);
    std::string script = "newfilter\nenter\n";
    for (size_t k = 0; k < ladder.size(); ++k) {
        const Dipole& d = ladder[k];
        const bool vertical = k % 2 == 1;
        std::string v = d.type == 1 || d.type == 31 ? full(d.R) : d.type == 2 ? full(d.L) : d.type == 33 ? full(d.C) : "";
        script += place(vertical, d.type, v);
    }
    script += "> Getdata: 10M\n> designtitle: Text1=\"Typed\" Command1\n" + place(false, 8) +
              "> Getdata: 1M 100M 0 -80\nPEG\n";
    ASSERT_TRUE(session.ok(script));
    const auto typed = test::curve(session, "plotPEG");
    ASSERT_EQ(typed.size(), 513u);
    ASSERT_EQ(synthesised.size(), typed.size());
    for (size_t i = 0; i < typed.size(); ++i) {
        EXPECT_EQ(typed[i].x, synthesised[i].x);
        EXPECT_NEAR(typed[i].value, synthesised[i].value, 1e-9 * std::abs(synthesised[i].value)) << i;
    }
    EXPECT_EQ(slot(0).code, "ENT");
    EXPECT_EQ(slot(0).count(), 8);
}

// After each click: the count, and which palette is up (H series, V shunt).
TEST(HandEntry, PaletteFollowsTheParityOfTheCount) {
    const struct {
        const char* what;
        std::string script;
        int count;
        bool seriesup;
    } steps[] = {
        {"entry starts on the series palette", "enter\n", 0, true},
        {"a first dipole that is no resistor is refused", place(false, 2), 0, true},
        {"the source resistor", place(false, 1, "50"), 1, false},
        {"a cancelled value panel keeps the place", "> Getdata: close\n" + place(true, 33), 1, false},
        {"a shunt capacitor", place(true, 33, "1n"), 2, true},
        {"a series wire has no panel", place(false, 6), 3, false},
        {"an open shunt place", place(true, 38), 4, true},
        {"a cancelled series panel", "> Getdata: close\n" + place(false, 2), 4, true},
        {"a series inductor", place(false, 2, "1u"), 5, false},
    };
    test::Session session;
    for (const auto& s : steps) {
        ASSERT_TRUE(session.ok(s.script)) << s.what << session.err.str();
        EXPECT_EQ(slot(0).count(), s.count) << s.what;
        EXPECT_EQ(dipolesH.visible, s.seriesup) << s.what;
        EXPECT_EQ(dipolesV.visible, !s.seriesup) << s.what;
        EXPECT_TRUE(store.entering) << s.what;
    }
    EXPECT_EQ(slot(0).dip(1).R, 50);
    EXPECT_FALSE(dipolesV.ctl("vdipole", 57).visible);
    EXPECT_FALSE(dipolesV.ctl("vdipole", 58).visible);
    // DONE after the load closes both palettes and leaves nothing to undo.
    ASSERT_TRUE(session.ok(place(true, 31, "50") + "> Getdata: 10M\n> designtitle: Command1\n" + place(false, 8)));
    EXPECT_FALSE(store.entering);
    EXPECT_FALSE(dipolesH.visible || dipolesV.visible);
    EXPECT_EQ(undostate.undodepth, 0);
    EXPECT_FALSE(menuenabled("undo"));
}

// DONE refused before the load and accepted after it, the design frequency and the plot
// defaults it sets, and replace with undo are the golden scripts entry_done and
// entry_replace; CANCEL on either palette and the thirty-third dipole are entry_cancel's.

} // namespace
} // namespace zelk
