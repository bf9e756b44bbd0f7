// Hand entry from the dipole palettes: a typed ladder against the synthesised one, the
// palette that comes up for each place, the end checks, CANCEL, and replace with undo.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/plotframe.h"
#include "core/designstore.h"
#include "design/handentry.h"
#include "schematic/undo.h"
#include "testsupport.h"

namespace zelk {
namespace {

// The PEG curve of slot 0 as `dump curve plotPEG` gives it: frequency and value.
std::vector<std::pair<double, double>> curve(const std::string& dump) {
    std::vector<std::pair<double, double>> c;
    std::istringstream in(dump);
    std::string line;
    while (std::getline(in, line)) {
        int s, i;
        double x, v;
        if (std::sscanf(line.c_str(), "%d %d %lf %lf", &s, &i, &x, &v) == 4 && s == 0) c.emplace_back(x, v);
    }
    return c;
}

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

// R | 33 | 2 | 33 | 31 with the values given, entry still running.
std::string shortladder() {
    return "enter\n" + place(false, 1, "50") + place(true, 33, "1n") + place(false, 2, "1u") +
           place(true, 33, "1n") + place(false, 6) + place(true, 31, "50");
}

TEST(HandEntry, TypedButterworthGivesTheSynthesisedCurve) {
    test::Session session;
    ASSERT_EQ(session.run("> selfunction: selection(0) \"Accept design\"\n"
                          "> Getdata: 10M 15M 3 \"\" 5 50 50\n"
                          "> Getdata: Lossless\n"
                          ">? designtitle: Text1=\"Syn\" Command1\n"
                          "butterworth\n"
                          "> Getdata: 1M 100M 0 -80\n"
                          "PEG\n"
                          "dump curve plotPEG\n"),
              0);
    const auto synthesised = curve(session.take());
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
              "> Getdata: 1M 100M 0 -80\nPEG\ndump curve plotPEG\n";
    ASSERT_EQ(session.run(script), 0) << session.err.str();
    const auto typed = curve(session.take());
    ASSERT_EQ(typed.size(), 513u);
    ASSERT_EQ(synthesised.size(), typed.size());
    for (size_t i = 0; i < typed.size(); ++i) {
        EXPECT_EQ(typed[i].first, synthesised[i].first);
        EXPECT_NEAR(typed[i].second, synthesised[i].second, 1e-9 * std::abs(synthesised[i].second)) << i;
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
        ASSERT_EQ(session.run(s.script), 0) << s.what << session.err.str();
        EXPECT_EQ(slot(0).count(), s.count) << s.what;
        EXPECT_EQ(dipolesH.visible, s.seriesup) << s.what;
        EXPECT_EQ(dipolesV.visible, !s.seriesup) << s.what;
        EXPECT_TRUE(store.entering) << s.what;
    }
    EXPECT_EQ(slot(0).dip(1).R, 50);
    EXPECT_FALSE(dipolesV.ctl("vdipole", 57).visible);
    EXPECT_FALSE(dipolesV.ctl("vdipole", 58).visible);
}

TEST(HandEntry, DoneWantsTheLoadResistorLast) {
    test::Session session;
    ASSERT_EQ(session.run("enter\n" + place(false, 1, "50") + place(true, 33, "1n") + place(false, 2, "1u") +
                          place(true, 33, "2n") + place(false, 8)),
              0);
    // Refused: undo took the DONE step back, entry goes on with the series palette.
    EXPECT_NE(session.runner.desk.messages.back().text.find("The last dipole must be a resistor"), std::string::npos);
    EXPECT_EQ(slot(0).count(), 4);
    EXPECT_TRUE(store.entering);
    EXPECT_TRUE(dipolesH.visible);
    EXPECT_TRUE(dipolesH.ctl("Hdipole", 8).visible);

    ASSERT_EQ(session.run(place(false, 6) + place(true, 31, "75") +
                          "> Getdata: getvalue(0)=2M accept\n> designtitle: Text1=\"T\" Command1\n" +
                          place(false, 8)),
              0)
        << session.err.str();
    const DesignSlot& s = slot(0);
    EXPECT_FALSE(store.entering);
    EXPECT_EQ(s.count(), 6);
    EXPECT_EQ(s.code, "ENT");
    EXPECT_EQ(s.designtitle, "T");
    EXPECT_DOUBLE_EQ(s.w0, 4e6 * 3.141592654);
    EXPECT_EQ(s.w1, 0);
    EXPECT_EQ(s.r0, 50);
    EXPECT_DOUBLE_EQ(plotshared.plotfreq1, 2e6 * 2 / 20);
    EXPECT_DOUBLE_EQ(plotshared.plotfreq2, 2e6 * 2 * 5);
    EXPECT_EQ(plotshared.plotdb2, -60);
    EXPECT_EQ(undostate.undodepth, 0);
    EXPECT_FALSE(findmenu("undo")->enabled);
    EXPECT_FALSE(dipolesH.visible);
    EXPECT_FALSE(dipolesV.visible);
}

TEST(HandEntry, CancelOnEitherPaletteDropsTheEntry) {
    for (bool vertical : {false, true}) {
        test::Session session;
        std::string script = "enter\n" + place(false, 1, "50");
        if (!vertical) script += place(true, 33, "1n");
        script += place(vertical, vertical ? 30 : 26);
        ASSERT_EQ(session.run(script), 0) << vertical;
        EXPECT_EQ(store.lastslot, -1) << vertical;
        EXPECT_FALSE(store.entering) << vertical;
        EXPECT_EQ(slot(0).count(), 0) << vertical;
        EXPECT_FALSE(dipolesH.visible || dipolesV.visible) << vertical;
    }
}

TEST(HandEntry, ThirtyThirdDipoleEndsInTheSubscriptBox) {
    test::Session session;
    std::string script = "enter\n" + place(false, 1, "50");
    for (int n = 2; n <= 32; ++n) script += n % 2 == 0 ? place(true, 38) : place(false, 6);
    script += place(false, 6);
    ASSERT_EQ(session.run(script), 0) << session.err.str();
    EXPECT_NE(session.runner.desk.messages.back().text.find("Subscript out of range"), std::string::npos);
    EXPECT_EQ(slot(0).count(), 33); // the count stands where the fault left it
}

TEST(HandEntry, ReplaceThroughThePaletteAndUndo) {
    test::Session session;
    ASSERT_EQ(session.run(shortladder() + "> Getdata: 1M\n>? designtitle: Text1=\"R\" Command1\n" + place(false, 8)),
              0);
    ASSERT_FALSE(store.entering);
    // Series place 3: an inductor becomes a series LC; the panel opens on the new type.
    ASSERT_EQ(session.run("event schematic symbol(3) click\nreplace\n"), 0);
    EXPECT_TRUE(dipolesH.visible);
    EXPECT_FALSE(dipolesV.visible);
    ASSERT_EQ(session.run("> Getdata: 2u Lossless 3n\n" + place(false, 4)), 0) << session.err.str();
    EXPECT_EQ(slot(0).dip(3).type, 4);
    EXPECT_DOUBLE_EQ(slot(0).dip(3).L, 2e-6);
    EXPECT_DOUBLE_EQ(slot(0).dip(3).C, 3e-9);
    EXPECT_FALSE(dipolesH.visible);
    ASSERT_EQ(session.run("undo\n"), 0);
    EXPECT_EQ(slot(0).dip(3).type, 2);
    EXPECT_DOUBLE_EQ(slot(0).dip(3).L, 1e-6);

    // Shunt place 2 with CANCEL on the shunt palette: nothing changes, the palette goes.
    ASSERT_EQ(session.run("event schematic symbol(2) click\nreplace\n"), 0);
    EXPECT_TRUE(dipolesV.visible);
    ASSERT_EQ(session.run(place(true, 30)), 0);
    EXPECT_FALSE(dipolesV.visible);
    EXPECT_EQ(slot(0).dip(2).type, 33);
    EXPECT_DOUBLE_EQ(slot(0).dip(2).C, 1e-9);

    // A cancelled panel keeps the new type with the old values.
    ASSERT_EQ(session.run("event schematic symbol(2) click\nreplace\n> Getdata: close\n" + place(true, 32)), 0);
    EXPECT_EQ(slot(0).dip(2).type, 32);
    EXPECT_DOUBLE_EQ(slot(0).dip(2).C, 1e-9);
}

} // namespace
} // namespace zelk
