// Undo: up to seven edits come back bit for bit in the fields a snapshot copies; the
// fields it leaves (w4, Zin, Zout, the texts, the La winding record) keep the newer
// values; the eighth push drops the oldest and the menu refuses an eighth undo.
#include <gtest/gtest.h>

#include <cstring>

#include "analysis/response.h"
#include "core/framestate.h"
#include "core/notation.h"
#include "core/commands.h"
#include "reference.h"
#include "schematic/schematicview.h"
#include "testsupport.h"
#include "schematic/undo.h"

namespace zelk {
namespace {

bool same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
bool same(const Number& a, const Number& b) {
    return a.kind() == b.kind() && same(a.value(), b.value());
}

// The fields a snapshot copies, compared bit for bit.
::testing::AssertionResult samecopied(const DesignSlot& a, const DesignSlot& b) {
    for (auto f : {&DesignSlot::r0, &DesignSlot::w0, &DesignSlot::w1, &DesignSlot::w2,
                   &DesignSlot::w3, &DesignSlot::bw, &DesignSlot::dipolecount})
        if (!same(a.*f, b.*f)) return ::testing::AssertionFailure() << "slot field differs";
    for (int n = 1; n <= a.count(); ++n) {
        const Dipole &p = a.dip(n), &q = b.dip(n);
        if (p.type != q.type || p.Lcore != q.Lcore)
            return ::testing::AssertionFailure() << "dipole " << n;
        for (auto f :
             {&Dipole::R, &Dipole::C, &Dipole::Ca, &Dipole::L, &Dipole::Qu, &Dipole::K, &Dipole::Qa,
              &Dipole::Kspare, &Dipole::La, &Dipole::Ls, &Dipole::Cs, &Dipole::Cp, &Dipole::Rs,
              &Dipole::Qx, &Dipole::Lform, &Dipole::Lawg, &Dipole::Lturns, &Dipole::Llength})
            if (!same(p.*f, q.*f))
                return ::testing::AssertionFailure() << "dipole " << n << " field";
    }
    return ::testing::AssertionSuccess();
}

// R | type 12 | 20 | type 17 | R, at 50 ohms and 5 MHz.
void design() {
    DesignSlot& s = test::ladder({{1, 50},
                                  {12, 0, 1e-9, 1e-6, 0.47e-9, 2.2e-6},
                                  {50, 0, 1e-9, 1e-6, 0, 2.2e-6},
                                  {17, 0, 1e-9, 1e-6, 0.22e-9, 3.3e-6},
                                  {31, 50}});
    s.r0 = 50;
    s.w0 = TWOPI * 5e6;
    s.w1 = TWOPI * 4e6;
    s.w2 = TWOPI * 6e6;
    s.w4 = TWOPI * 9e6;
    s.Zin = 50;
    s.Zout = 50;
    schematicbuild();
}

// One edit of the kth kind: the three dipoles stepped in turn, and Transform Z or F.
void edit(test::Session& session, int k) {
    if (k % 4 == 3) {
        ASSERT_TRUE(session.ok("> Getdata: 75 7M\ntzfm\n"));
        return;
    }
    schematicwindow(0).click("symbol", 2 + k % 4);
    ASSERT_TRUE(runcommand(*findcommand("transform")));
}

TEST(Undo, EditsThenAsManyUndosGiveBackTheStartingSlot) {
    for (int edits = 1; edits <= 7; ++edits) {
        test::Session session;
        design();
        dipole(0, 2).Lcore = "T50-2"; // a winding record of dipole 2
        dipole(0, 2).Lturns = 12;
        dipole(0, 2).Lacore = "T37-6";
        const DesignSlot start = slot(0);
        for (int k = 0; k < edits; ++k) edit(session, k);
        EXPECT_EQ(findmenu("undo")->caption, "Undo " + numtext(edits));
        EXPECT_TRUE(dipole(0, 2).Lcore.empty()) << "an edit clears the live L winding record";
        // A snapshot taken at a depth above 1 was copied after the record was cleared.
        if (edits >= 2) {
            EXPECT_TRUE(slot(1).dip(2).Lcore.empty());
        }
        for (int k = 0; k < edits; ++k) ASSERT_TRUE(session.ok("undo\n"));
        const DesignSlot& now = slot(0);
        // The first snapshot was taken at depth 1 and so kept the L winding record.
        EXPECT_TRUE(samecopied(now, start)) << edits << " edits";
        // Left on purpose: w4, Zin and Zout keep the values of the last Transform Z or F,
        // and the La winding record is never touched.
        if (edits >= 4) {
            EXPECT_NE(now.w4.value(), start.w4.value());
            EXPECT_EQ(now.Zin.value(), 75);
        }
        EXPECT_EQ(now.dip(2).Lacore, "T37-6");
        EXPECT_FALSE(menuenabled("undo"));
        EXPECT_EQ(findmenu("undo")->caption, "Undo");
        EXPECT_EQ(session.run("undo\n"), 1) << "the menu refuses an undo on an empty stack";
    }
}

// The eighth edit dropping the oldest snapshot, and a refused zero impedance in Transform Z
// or F whose retry faults before its snapshot, are the golden script undo_limits.

TEST(Undo, TwoFiltersAndFileNewDisableIt) {
    test::Session session;
    design();
    schematicwindow(0).click("symbol", 2);
    runcommand(*findcommand("transform"));
    EXPECT_TRUE(menuenabled("undo"));
    store.lastslot = 1; // a second filter takes slot 1
    updatemenus();
    EXPECT_FALSE(menuenabled("undo")); // (a click is ignored meanwhile: the edit menu's test)
    newfilter_Click();
    EXPECT_EQ(undostate.undodepth, 0);
    EXPECT_EQ(findmenu("undo")->caption, "Undo");
}

// Transform Z or F keeps the shape: the gain of the new design at f * Ffactor is the
// gain of the old one at f.
TEST(TransformZF, PowerEffectiveGainMovesWithTheFrequency) {
    test::Session session;
    // A band-pass of tanks and series circuits with Q 200: every loss term of the
    // catalogue scales with the impedance. (A capacitor's fixed 1e-6 loss does not, so a
    // ladder with bare capacitors moves by about 1e-3 dB on a change of impedance.)
    DesignSlot& s = test::ladder({{1, 50},
                                  {35, 0, 1.2e-9, 84e-9},
                                  {4, 0, 12e-12, 8.4e-6},
                                  {35, 0, 1.2e-9, 84e-9},
                                  {31, 50}});
    for (int n = 2; n <= 4; ++n) dipole(0, n).Qu = 200;
    s.r0 = 50;
    s.w0 = TWOPI * 10e6;
    schematicbuild();
    std::vector<double> before;
    const double fs[] = {5e6, 9e6, 9.8e6, 10e6, 10.3e6, 12e6, 20e6};
    for (double f : fs) {
        store.wA = TWOPI * f;
        before.push_back(response(Quantity::PEG, 0));
    }
    ASSERT_TRUE(session.ok("> Getdata: 600 3.5M\ntzfm\n"));
    const double Ffactor = (3.5e6 + 3.5e6) * PI / (TWOPI * 10e6);
    EXPECT_DOUBLE_EQ(slot(0).r0.value(), 600);
    EXPECT_DOUBLE_EQ(slot(0).dip(1).R, 600);
    for (size_t i = 0; i < std::size(fs); ++i) {
        store.wA = TWOPI * fs[i] * Ffactor;
        EXPECT_NEAR(response(Quantity::PEG, 0), before[i], 1e-9) << fs[i];
    }
    // The snapshot was taken after r0 and w0 took the new values: undo brings the parts
    // back and leaves the new design impedance and frequency.
    ASSERT_TRUE(session.ok("undo\n"));
    EXPECT_EQ(slot(0).dip(3).L, 8.4e-6);
    EXPECT_EQ(slot(0).dip(1).R, 50);
    EXPECT_EQ(slot(0).dip(3).C, 12e-12);
    EXPECT_EQ(slot(0).r0.value(), 600);
    EXPECT_DOUBLE_EQ(slot(0).w0.value(), 7e6 * PI);
}

} // namespace
} // namespace zelk
