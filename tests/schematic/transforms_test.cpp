// Dipole transforms and undo: every circle of equivalent networks keeps the dipole's
// immittance, matches and rescaling keep the response, and undo gives back the design
// bit for bit in the fields a snapshot holds.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "core/desktop.h"
#include "core/dipoles.h"
#include "schematic/dipoletransforms.h"
#include "core/commands.h"
#include "files.h"
#include "reference.h"
#include "schematic/schematicview.h"
#include "testsupport.h"
#include "schematic/undo.h"

namespace zelk {
namespace {

const double freqs[10] = {0.31e6, 0.77e6, 1.3e6, 2.9e6, 4.1e6, 5.9e6, 7.7e6, 11e6, 17e6, 29e6};

// The lossless reactance of each network, written from its circuit (test::seriesform).
double reactance(int type, const Dipole& d, double w) { return test::seriesform(d, w, type).imag(); }

// Reactance of dipole 2 of slot 0 through the catalogue (the dipoles are lossless to
// 1e-12, so the reactance is the immittance). Type 21 (and 51) drops La in
// the catalogue, kept as it always was, so its forms are checked against the reference.
double catalogue(double w) {
    const Dipole& d = dipole(0, 2);
    if (d.type == 21 || d.type == 51) return reactance(d.type, d, w);
    store.wA = w;
    dipoleimmittance(2, 0);
    return store.Zi;
}

void select(int n) { schematicwindow(0).click("symbol", n); }
void transform() { ASSERT_TRUE(runcommand(*findcommand("transform"))); }

// Every circle of tests/data/schematic.txt, stepped round by the transform.
TEST(TransformCircle, EveryFormKeepsTheImmittanceAndTheCircleCloses) {
    for (const test::Row& r : test::datarows("schematic.txt", "circles")) {
        SCOPED_TRACE("type " + r.text(0));
        const int start = r.whole(0);
        const bool exchanged = r.text(2) == "yes";
        const double L = r.num(3), C = r.num(4), La = r.num(5), Ca = r.num(6);
        test::Session session;
        test::ladder({{1, 50}, {start, 0, C, L, Ca, La}, {31, 50}});
        // A Q of 1e12 instead of "lossless", whose fixed 1e-6 loss terms sit in different
        // places in the different forms and would move the reactance by about 1e-9.
        dipole(0, 2).Qu = dipole(0, 2).Qa = 1e12;
        schematicbuild();
        const Dipole original = dipole(0, 2);
        std::vector<double> x0;
        for (double f : freqs) {
            x0.push_back(catalogue(TWOPI * f));
            // The catalogue and the circuit agree on the starting form.
            EXPECT_NEAR(x0.back(), reactance(start, original, TWOPI * f),
                        1e-9 * std::fabs(x0.back()));
        }
        for (int expected : r.list(1)) {
            select(2);
            transform();
            const Dipole& d = dipole(0, 2);
            ASSERT_EQ(d.type, expected);
            for (int i = 0; i < 10; ++i) {
                const double x = catalogue(TWOPI * freqs[i]);
                EXPECT_NEAR(x, x0[static_cast<size_t>(i)], 1e-9 * std::fabs(x0[static_cast<size_t>(i)]))
                    << "type " << d.type << " at " << freqs[i];
            }
        }
        const Dipole& back = dipole(0, 2);
        const double want[4] = {exchanged ? La : L, exchanged ? Ca : C, exchanged ? L : La, exchanged ? C : Ca};
        const double got[4] = {back.L, back.C, back.La, back.Ca};
        for (int i = 0; i < 4; ++i) EXPECT_NEAR(got[i], want[i], 1e-9 * want[i]) << "field " << i;
    }
}

// 10 -> 9 keeps Ca, so it is not the inverse of 9 -> 10: the type comes back, the
// immittance does not.
TEST(Transform, TenToNineIsNotTheInverseOfNineToTen) {
    test::Session session;
    test::ladder({{1, 50}, {9, 0, 1e-9, 1e-6, 0.47e-9}, {31, 50}});
    dipole(0, 2).Qu = 1e12;
    schematicbuild();
    const Dipole original = dipole(0, 2);
    select(2);
    transform();
    EXPECT_EQ(dipole(0, 2).type, 10);
    for (double f : freqs)
        EXPECT_NEAR(catalogue(TWOPI * f), reactance(9, original, TWOPI * f),
                    1e-9 * std::fabs(reactance(9, original, TWOPI * f)));
    const double Ca10 = dipole(0, 2).Ca;
    select(2);
    transform();
    EXPECT_EQ(dipole(0, 2).type, 9);
    EXPECT_EQ(dipole(0, 2).Ca, Ca10);
    EXPECT_GT(std::fabs(catalogue(TWOPI * 4.1e6) - reactance(9, original, TWOPI * 4.1e6)), 1.0);
}

TEST(Transform, TypeWithoutATransformShowsTheMessageAndChangesNothing) {
    test::Session session;
    test::ladder({{1, 50}, {32, 0, 0, 1e-6}, {3, 0, 1e-9}, {31, 50}});
    schematicbuild();
    select(3);
    setenabled("transform", true);
    transform();
    ASSERT_FALSE(session.runner.desk.messages.empty());
    EXPECT_EQ(session.runner.desk.messages.back().text,
              "No transformation available for dipole 3.");
    EXPECT_EQ(session.runner.desk.messages.back().title, "TRANSFORMATIONS");
    EXPECT_EQ(undostate.undodepth, 0);
}

// A zero that a formula divides by (the host's box, the design as it was, the snapshot
// taken back off the stack), end matches to 0 ohms and one accepted unchanged are the
// golden script transform_refusals.

// The direct value panel: a row for each of R, C, L, Qu, Ca, La, Qa above 0, in that
// order, read back by its label.
TEST(ValuePanel, RowsForThePositiveFieldsOnlyWrittenBackByLabel) {
    test::Session session;
    test::ladder({{1, 50}, {12, 0, 1e-9, 1e-6, 0.47e-9, 2.2e-6}, {31, 50}});
    dipole(0, 2).Qa = 80;
    schematicbuild();
    registercommand("valuepanel", [] { schematictransform(2); });
    ASSERT_TRUE(session.ok("> Getdata: 2n 3u 1n 4u 90\nvaluepanel\ndump panel\n"));
    const std::string panel = session.take();
    EXPECT_NE(panel.find("row 0 label=\"C =\""), std::string::npos);
    EXPECT_NE(panel.find("row 4 label=\"Qa =\""), std::string::npos);
    const Dipole& d = dipole(0, 2);
    EXPECT_DOUBLE_EQ(d.C, 2e-9);
    EXPECT_DOUBLE_EQ(d.L, 3e-6);
    EXPECT_DOUBLE_EQ(d.Ca, 1e-9);
    EXPECT_DOUBLE_EQ(d.La, 4e-6);
    EXPECT_EQ(d.Qa, 90);
    EXPECT_EQ(d.Qu, 0) << "a field at 0 has no row";
}

// The end tanks of R | 35 | 4 | 35 | 6 | R: the input match at dipole 2, the output match
// at dipolecount - 2, checked against the match formulas worked by hand.
TEST(EndMatch, WritesTheMatchWorkedByHand) {
    const double L = 75e-9, C = 3.4e-9;
    for (int d : {2, 4}) {
        test::Session session;
        test::ladder({{1, 50}, {35, 0, C, L}, {4, 0, 15e-12, 1.7e-6}, {35, 0, C, L}, {6}, {31, 50}});
        schematicbuild();
        schematicwindow(0).click("symbol", d);
        ASSERT_TRUE(menuenabled("transform"));
        EXPECT_TRUE(session.ok(d == 2 ? "> Getdata: 12.5 150n\ntransform\n" : "> Getdata: 12.5\ntransform\n"));
        const Dipole& t = dipole(0, d);
        EXPECT_EQ(t.type, d == 2 ? 57 : 58);
        EXPECT_EQ(undostate.undodepth, 1);
        const double v = std::sqrt(50.0 / 12.5); // 2
        if (d == 2) {
            // L raised to 150 nH: Zold 100 ohms, C halved, dipoles 3.. scaled by 2; then
            // v = sqrt(100/12.5), Ca = C*v, C = Ca/(v - 1).
            const double v2 = std::sqrt(100.0 / 12.5);
            EXPECT_DOUBLE_EQ(t.L, 150e-9);
            EXPECT_DOUBLE_EQ(t.Ca, C / 2 * v2);
            EXPECT_DOUBLE_EQ(t.C, C / 2 * v2 / (v2 - 1));
            EXPECT_DOUBLE_EQ(dipole(0, 1).R, 12.5);
            EXPECT_DOUBLE_EQ(dipole(0, 3).L, 3.4e-6);
            EXPECT_DOUBLE_EQ(dipole(0, 6).R, 100);
        } else {
            EXPECT_DOUBLE_EQ(t.Ca, C * v);
            EXPECT_DOUBLE_EQ(t.C, (C * v * C) / (C * v - C));
            EXPECT_DOUBLE_EQ(dipole(0, 6).R, 12.5);
        }
    }
}

} // namespace
} // namespace zelk
