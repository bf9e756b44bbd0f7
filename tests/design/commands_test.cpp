// The design commands that lay out their own ladders. Coupled-resonator band-pass designs:
// the closed-form and table prototypes, the capacitive end match and its boundary, and the
// band edges of an analysed design read from the plotted curve. Hand entry from the
// dipole palettes: a typed ladder against the synthesised one, and the palette that comes
// up for each place.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "analysis/plotframe.h"
#include "core/commands.h"
#include "core/designflow.h"
#include "core/designstore.h"
#include "design/handentry.h"
#include "entry/panel.h"
#include "synthesis/bwcheby.h"
#include "schematic/undo.h"
#include "synthesis/coupled.h"
#include "files.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

using test::pi;

// The three windows of a coupled-resonator command in the order they open, then the title.
std::string crscript(const std::string& command, const std::string& band,
                     const std::string& lc = "accept", const std::string& zcr = "accept") {
    return "> Getdata: " + band + "\n> Getdata: " + lc + "\n> Getdata: " + zcr +
           "\n>? designtitle: Text1=\"CR\" Command1\n" + command + "\n";
}

TEST(CoupledResonator, ButterworthOrder3CouplingsAndBandEdges) {
    test::Session s;
    ASSERT_TRUE(s.ok(crscript("BCR", "10M 500K 3") + "> Getdata: 9.5M 10.5M 0 -40\nPEG\n"));
    const DesignSlot& d = slot(0);
    ASSERT_EQ(d.code, "BCR");
    ASSERT_EQ(d.count(), 10);
    const std::vector<double> g = test::butterworthg(3);
    const double w0 = d.w0, bw = d.bw, L = d.dip(4).L;
    for (int i = 1; i <= 2; ++i) {
        const double k = 1 / std::sqrt(g[i] * g[i + 1]);
        EXPECT_NEAR(prototerms.kcoupling[static_cast<size_t>(i)], k, 1e-8 * k);
        // The coupling capacitor normalised by the resonator's own C and the loaded Q.
        EXPECT_NEAR(d.dip(2 * i + 3).C * (w0 / bw) * w0 * w0 * L, k, 1e-8 * k);
    }
    for (int i = 1; i <= 3; ++i) EXPECT_EQ(d.dip(2 * i + 2).Qu, 1000) << "lossless reads Q 1000";
    // The -3 dB crossings of the transducer gain, from the plotted points.
    const auto c = test::curve(s, "plotPEG");
    ASSERT_GE(c.size(), 512u);
    std::vector<double> edges;
    for (size_t j = 1; j < c.size(); ++j) {
        const double y0 = c[j - 1].value + 3, y1 = c[j].value + 3;
        if (y0 * y1 < 0) edges.push_back(c[j - 1].x + (c[j].x - c[j - 1].x) * -y0 / (y1 - y0));
    }
    ASSERT_EQ(edges.size(), 2u);
    EXPECT_NEAR(edges[0], 9.75e6, 0.02 * 9.75e6);
    EXPECT_NEAR(edges[1], 10.25e6, 0.02 * 10.25e6);
}

TEST(CoupledResonator, ChebyshevElementsAreTextbookValuesMovedToThreeDecibels) {
    test::Session s;
    store.curslot = 0;
    // The published 0.1 dB prototypes, the load g(n+1) included.
    for (const test::Row& r : test::datarows("prototypes.txt", "chebyshev")) {
        if (r.num(1) != 0.1) continue;
        const int n = r.whole(0);
        slot(0).order = n;
        slot(0).Apass = 0.1;
        chebyshevelements();
        const double eps = std::sqrt(std::pow(10, 0.01) - 1);
        const double h = std::cosh(std::acosh(std::sqrt(std::pow(10, 0.3) - 1) / eps) / n);
        for (int k = 1; k <= n; ++k)
            EXPECT_NEAR(store.g[static_cast<size_t>(k)] / h, r.num(static_cast<size_t>(k) + 1), 6e-5) << n << ' ' << k;
        EXPECT_NEAR(store.g[static_cast<size_t>(n + 1)], r.num(static_cast<size_t>(n) + 2), 6e-5) << "load not rescaled";
        EXPECT_EQ(store.oddorder, n % 2 == 1);
    }
}

// The prompt's refusals and defaults are the golden scripts coupled_prompts and
// coupled_defaults.

// The layout on its own, with the design resistance known to the test.
TEST(CoupledResonator, EndMatchAndItsBoundary) {
    test::Session s;
    store.curslot = 0;
    DesignSlot& d = slot(0);
    d.order = 3;
    d.w1 = 2 * pi * 9.75e6;
    d.w2 = 2 * pi * 10.25e6;
    butterworthCRproto();
    crcentre();
    coupled.Lres = 1.6e-7;
    flow.Qdesign = 1000;
    const double w0 = d.w0, bw = d.bw;
    const double r0 = w0 * coupled.Lres * prototerms.g1term * (w0 / bw);
    const double cres = 1 / (w0 * w0) / coupled.Lres;
    struct Case {
        double zin, zout;
        bool inmatch, outmatch;
    };
    const Case cases[] = {{r0, r0, false, false},       {r0 - 1, r0 - 1, false, false},
                          {r0 - 1.01, r0, true, false}, {50, 1e6, true, false},
                          {r0, 75, false, true},        {50, 75, true, true}};
    for (const Case& c : cases) {
        d.Zin = c.zin;
        d.Zout = c.zout;
        crlayout();
        ASSERT_EQ(d.count(), 10);
        EXPECT_NEAR(d.r0, r0, 1e-12 * r0);
        EXPECT_EQ(d.dip(3).type, c.inmatch ? 3 : 6) << c.zin;
        EXPECT_EQ(d.dip(9).type, c.outmatch ? 3 : 6) << c.zout;
        EXPECT_EQ(d.dip(1).R, c.inmatch ? c.zin : r0);
        EXPECT_NEAR(d.dip(10).R, c.outmatch ? c.zout : r0, 1e-9 * r0);
        // Each resonator node keeps the total capacitance that tunes it to w0.
        for (int i = 1; i <= 3; ++i)
            EXPECT_NEAR(d.dip(2 * i + 1).C + d.dip(2 * i + 2).C + d.dip(2 * i + 3).C, cres,
                        1e-12 * cres);
        const double T = prototerms.g1term * w0 * 1000 / (bw * 1000 - prototerms.g1term * w0);
        if (c.inmatch) {
            EXPECT_NEAR(d.dip(3).C,
                        1 / w0 / std::sqrt(c.zin * T * w0 * coupled.Lres - c.zin * c.zin),
                        1e-12 * d.dip(3).C);
        }
    }
    // The tapped form: the end resonators become types 57 and 58.
    d.Zin = 50;
    d.Zout = 75;
    crlayouttapped();
    EXPECT_EQ(d.count(), 8);
    EXPECT_EQ(d.dip(2).type, 57);
    EXPECT_EQ(d.dip(6).type, 58);
    EXPECT_NEAR(d.dip(2).Ca / std::sqrt(r0 / 50), cres - d.dip(3).C, 1e-12 * cres);
}

TEST(CoupledResonator, MatchedDesignPassesThePowerOfAFiftyOhmSource) {
    for (const char* z : {"50 50", "getvalue(0)=50 accept", "getvalue(1)=50 accept"}) {
        test::Session s;
        ASSERT_TRUE(s.ok(crscript("BCR", "10M 500K 3", "accept", z) + "> Getdata: 9.5M 10.5M 0 -40\nPEG\n"))
            << z << s.err.str();
        double peak = -1e9;
        for (const auto& p : test::curve(s, "plotPEG")) peak = std::max(peak, p.value);
        EXPECT_GT(peak, -1.5) << z;
    }
}

TEST(CoupledResonator, TableCommandsReadTheFirstRecordOfTheOrder) {
    for (const test::Row& c : test::datarows("design.txt", "crtables")) {
        // The first record of order 5 in the file, read here on its own.
        std::vector<double> first;
        for (const auto& v : test::tablelines(c.text(1) + ".tbl"))
            if (v[0] == 5 && first.empty()) first.assign(v.begin() + 2, v.end());
        ASSERT_EQ(first.size(), 5u) << c.text(1);
        test::Session s;
        ASSERT_TRUE(s.ok(crscript(c.text(0), "10M 500K 5"))) << c.text(0) << s.err.str();
        EXPECT_EQ(slot(0).code, "TCR");
        EXPECT_EQ(slot(0).title, c.text(2));
        EXPECT_EQ(prototerms.g1term, first[0]) << c.text(0);
        EXPECT_EQ(prototerms.gnterm, first[4]) << c.text(0);
        EXPECT_NEAR(prototerms.kcoupling[2], 1 / std::sqrt(first[1] * first[2]), 1e-15)
            << c.text(0);
        EXPECT_EQ(slot(0).count(), 14);
    }
}

// The run-time faults of a zero load and a Q too low are the golden script design_faults.

// Hand entry: a value with every digit.
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
