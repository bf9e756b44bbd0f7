// Norton transforms and auto transformers: an ideal transformer absorbed into the ladder
// must leave the power effective gain where it was (the load is scaled with the rest), the
// default turns ratio must remove the element it names, and every refusal leaves the design
// and the undo stack as they were.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "analysis/response.h"
#include "core/desktop.h"
#include "entry/panel.h"
#include "files.h"
#include "reference.h"
#include "schematic/norton.h"
#include "schematic/schematicview.h"
#include "schematic/undo.h"
#include "testsupport.h"

namespace zelk {
namespace {

using test::Part;

// 200 frequencies, 100 kHz to 100 MHz.
std::vector<double> pegsweep() {
    std::vector<double> g;
    for (int i = 0; i < 200; ++i) {
        store.wA = TWOPI * 1e5 * std::pow(1000.0, i / 199.0);
        g.push_back(response(Quantity::PEG, 0));
    }
    return g;
}

void expectsamegain(const std::vector<double>& before, const std::vector<double>& after) {
    ASSERT_EQ(before.size(), after.size());
    int compared = 0;
    for (size_t i = 0; i < before.size(); ++i) {
        if (before[i] <= -100) continue;
        ++compared;
        EXPECT_NEAR(after[i], before[i], 1e-4) << "point " << i << " " << before[i];
    }
    EXPECT_GT(compared, 100);
}

// Inductors and capacitors in the live design (blanks hold none).
int elements() {
    int n = 0;
    for (int d = 2; d < slot(0).count(); ++d) {
        const Dipole& p = slot(0).dip(d);
        if (p.type == 6 || p.type == 38) continue;
        n += (p.L != 0) + (p.C != 0);
    }
    return n;
}

// Lossless to 1e-12 everywhere, blanks too (a far neighbour created from a blank keeps
// the blank's Q): the catalogue's fixed loss for Q = 0 would not scale with N squared.
// Capacitors keep a fixed 1e-6 loss whatever is done to them, so the gain tests either
// keep them out of the scaled part or bring the ladder down to an impedance level z
// times its own, where that loss is small in series and in shunt alike.
DesignSlot& build(std::vector<Part> parts, double z = 1) {
    for (Part& p : parts) {
        if (p.type != 1 && p.type != 31) p.Qu = 1e12;
        p.R *= z, p.L *= z, p.C /= z;
    }
    DesignSlot& s = test::ladder(parts);
    s.r0 = 50 * z;
    schematicbuild();
    return s;
}

void click(int n) { schematicwindow(0).click("symbol", n); }

// The ladders the rows of tests/data/norton.txt name.
const std::map<std::string, std::vector<Part>> ladders = {
    // Series places between shunt places and the other way round, with the defaults worked
    // by hand: 2 L 1u between 32 L 2u | 3u: up 4/3 (L 4), down 3/2 (L 2).
    {"seriesL",
     {{1, 50}, {32, 0, 0, 2e-6}, {2, 0, 0, 1e-6}, {32, 0, 0, 3e-6}, {3, 0, 1e-9}, {33, 0, 2e-9}, {6}, {31, 50}}},
    {"seriesLopen", {{1, 50}, {38}, {2, 0, 0, 1e-6}, {32, 0, 0, 3e-6}, {3, 0, 1e-9}, {33, 0, 2e-9}, {6}, {31, 50}}},
    {"seriesC",
     {{1, 50}, {33, 0, 2e-9}, {3, 0, 1e-9}, {33, 0, 3e-9}, {2, 0, 0, 1e-6}, {32, 0, 0, 2e-6}, {6}, {31, 50}}},
    // Tank 5 between tanks: up L 1.625 beats C 7; down L 1.5 beats C 5.
    {"seriesTank", {{1, 50}, {35, 0, 2e-9, 1e-6}, {5, 0, 0.5e-9, 0.5e-6}, {35, 0, 3e-9, 0.8e-6}, {6}, {31, 50}}},
    // (A tank of large L at the end: a bare capacitor's fixed loss would not scale.)
    {"shuntL",
     {{1, 50}, {38}, {2, 0, 0, 2e-6}, {32, 0, 0, 1e-6}, {2, 0, 0, 3e-6}, {35, 0, 1e-9, 1e-5}, {6}, {31, 50}}},
    {"shuntC", {{1, 50}, {38}, {3, 0, 2e-9}, {33, 0, 1e-9}, {3, 0, 3e-9}, {32, 0, 0, 1e-6}, {6}, {31, 50}}},
    // Series L-C in a shunt arm between series L-C arms: up L 3 beats C 5; down C 3/2
    // beats L 4.
    {"shuntLC", {{1, 50}, {38}, {4, 0, 0.5e-9, 2e-6}, {34, 0, 2e-9, 1e-6}, {4, 0, 4e-9, 3e-6}, {31, 50}}},
    {"roundedLC", {{1, 50}, {38}, {4, 0, 0.5e-9, 2e-6}, {34, 0, 2e-9, 1e-6}, {4, 0, 3e-9, 3e-6}, {31, 50}}},
    {"zeroneighbour",
     {{1, 50}, {32, 0, 0, 2e-6}, {2, 0, 0, 1e-6}, {32, 0, 0, 0}, {3, 0, 1e-9}, {33, 0, 2e-9}, {6}, {31, 50}}},
    // A series tank L 1u C 1n between shunt capacitors; a shunt tank L 1u C 1n and a shunt
    // inductor 1u after a series capacitor, with inductors and tanks after the tap, which
    // are scaled with it. Load 50 ohms, r0 50.
    {"stank", {{1, 50}, {33, 0, 2e-9}, {5, 0, 1e-9, 1e-6}, {33, 0, 2e-9}, {6}, {31, 50}}},
    {"ptank",
     {{1, 50}, {38}, {3, 0, 1e-9}, {35, 0, 1e-9, 1e-6}, {2, 0, 0, 2e-6}, {32, 0, 0, 1e-6}, {6}, {31, 50}}},
    {"pind",
     {{1, 50}, {38}, {3, 0, 1e-9}, {32, 0, 0, 1e-6}, {2, 0, 0, 2e-6}, {35, 0, 1e-9, 1e-6}, {6}, {31, 50}}},
};

// Dipole d selected, the menu item run with the panel's answers: no message, one undo
// snapshot.
void transform(test::Session& session, int d, const std::string& item, const std::string& answers) {
    click(d);
    ASSERT_TRUE(menuenabled(item));
    ASSERT_TRUE(session.ok("> Getdata: " + answers + "\n" + item + "\n"));
    EXPECT_TRUE(session.runner.desk.messages.empty());
    EXPECT_EQ(undostate.undodepth, 1);
}

// The Norton default removes the element it names and keeps the gain (rows of [default]).
TEST(Norton, DefaultKeepsTheGainAndRemovesTheNamedElement) {
    for (const test::Row& r : test::datarows("norton.txt", "default")) {
        SCOPED_TRACE(r.text(0) + " at " + r.text(1) + ": " + r.text(2));
        test::Session session;
        build(ladders.at(r.text(0)), 0.04); // 2 ohms
        const std::vector<double> before = pegsweep();
        const int count = elements();
        const double Rload = slot(0).dip(slot(0).count()).R;
        ASSERT_NO_FATAL_FAILURE(transform(session, r.whole(1), "norton", r.text(2)));
        EXPECT_EQ(slot(0).dip(r.whole(3)).type, r.whole(4));
        EXPECT_EQ(slot(0).dip(r.whole(5)).type, r.whole(6));
        EXPECT_EQ(elements(), count + r.whole(7));
        // The load is to the right: scaled by N squared.
        const double N2 = norton.N * norton.N;
        EXPECT_DOUBLE_EQ(slot(0).dip(slot(0).count()).R, norton.stepup ? Rload * N2 : Rload / N2);
        expectsamegain(before, pegsweep());
    }
}

// The auto transformer's tap keeps the gain (rows of [autotap]).
TEST(AutoTransformer, TapsAndKeepsTheGain) {
    for (const test::Row& r : test::datarows("norton.txt", "autotap")) {
        SCOPED_TRACE(r.text(0) + " at " + r.text(1) + ": " + r.text(2));
        test::Session session;
        build(ladders.at(r.text(0)));
        const std::vector<double> before = pegsweep();
        const int d = r.whole(1);
        ASSERT_NO_FATAL_FAILURE(transform(session, d, "auto", r.text(2)));
        const Dipole& t = slot(0).dip(d);
        EXPECT_EQ(t.type, r.whole(3));
        EXPECT_DOUBLE_EQ(t.K, r.num(4));
        EXPECT_NEAR(t.L, r.num(5), 1e-12 * r.num(5));
        EXPECT_NEAR(t.C, r.num(6), 1e-12 * r.num(6));
        EXPECT_NEAR(slot(0).dip(slot(0).count()).R, 50 * r.num(7), 1e-9);
        expectsamegain(before, pegsweep());
    }
}

// Every way out that does not transform (rows of [refusals]): the message
// (or none), the design bit for bit and no snapshot (one only where the panel accepted a
// plain tank). A zero neighbour or a negative impedance is the host's fault with the
// design as it was.
TEST(NortonAndAuto, RefusalsShowTheMessageAndLeaveTheDesign) {
    for (const test::Row& r : test::datarows("norton.txt", "refusals")) {
        SCOPED_TRACE(r.text(0) + " on " + r.text(1) + ": " + r.text(3));
        test::Session session;
        build(ladders.at(r.text(1)));
        const DesignSlot before = slot(0);
        click(r.whole(2));
        const std::string answer = r.text(3) == "-" ? "" : "> Getdata: " + r.text(3) + "\n";
        ASSERT_TRUE(session.ok(answer + r.text(0) + "\n"));
        EXPECT_EQ(undostate.undodepth, r.whole(6));
        for (int d = 1; d <= before.count(); ++d) {
            const Dipole &now = slot(0).dip(d), &was = before.dip(d);
            EXPECT_TRUE(now.type == was.type && now.C == was.C && now.L == was.L && now.R == was.R) << d;
        }
        EXPECT_EQ(slot(0).r0.value(), 50);
        const auto& m = session.runner.desk.messages;
        ASSERT_EQ(m.size(), r.text(4) == "-" ? 0u : 1u);
        if (m.empty()) continue;
        EXPECT_EQ(m[0].text, r.text(4));
        if (r.text(5) != "-") {
            EXPECT_EQ(m[0].title, r.text(5));
        }
    }
}

} // namespace
} // namespace zelk
