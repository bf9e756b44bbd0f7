// Ladder layout of the list g and the four frequency transforms, against the layout
// table and hand calculation.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/designflow.h"
#include "core/designstore.h"
#include "synthesis/transforms.h"
#include "files.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

// g[k] = k + 0.5 so that the reading direction shows in the values.
void ladder(int n, double zin, double zout, const std::string& configuration) {
    store.curslot = 0;
    DesignSlot& s = slot(0);
    s.order = n;
    s.Zin = zin;
    s.Zout = zout;
    flow.configuration = configuration;
    for (int k = 1; k <= 16; ++k) store.g[k] = k + 0.5;
    schematicrealize();
}

// The element value of dipole d, whichever part it is.
double part(int d) { return slot(0).dip(d).C + slot(0).dip(d).L; }

TEST(SchematicRealize, EveryRowOfTheLayoutTable) {
    test::Session session;
    for (const test::Row& r : test::datarows("layouts.txt", "schematicrealize")) {
        SCOPED_TRACE(r.text(0) + " " + r.text(1) + " " + r.text(2) + " to " + r.text(3));
        ladder(r.whole(0), r.num(2), r.num(3), r.text(1));
        if (r.text(5) != "-") {
            EXPECT_EQ(test::types(), r.list(5));
        }
        for (size_t i = 6; i < r.field.size(); ++i) {
            const std::string& at = r.text(i); // dipole:value
            EXPECT_EQ(part(std::stoi(at)), std::stod(at.substr(at.find(':') + 1))) << at;
        }
        EXPECT_EQ(slot(0).r0.value(), r.num(4));
        EXPECT_EQ(slot(0).dip(1).R, r.num(2));
        EXPECT_EQ(slot(0).dip(slot(0).count()).R, r.num(3));
    }
    EXPECT_EQ(store.oddorder, true);
    // A 16th order fits the tables: 20 dipoles.
    ladder(16, 50, 100, "Pi");
    EXPECT_EQ(slot(0).dipolecount.value(), 20);
    EXPECT_EQ(slot(0).dip(20).type, 31);
    // No order: the host's fault, not a ladder with an odd dipole count.
    store.curslot = 0;
    slot(0).order = 0;
    EXPECT_THROW(schematicrealize(), RuntimeFault);
}

TEST(Transforms, LowPassAndHighPassByHand) {
    test::Session session;
    ladder(3, 50, 50, "Pi");
    slot(0).w0 = 1000;
    flow.Qdesign = 80;
    LPtoLP();
    EXPECT_DOUBLE_EQ(slot(0).dip(2).C, 1.5 / 50 / 1000);
    EXPECT_DOUBLE_EQ(slot(0).dip(3).L, 2.5 * 50 / 1000);
    EXPECT_EQ(slot(0).dip(3).Qu, 80);
    EXPECT_EQ(slot(0).dip(2).Qu, 0);
    EXPECT_EQ(slot(0).dip(1).R, 50);

    // High-pass: shunt C 1.5 becomes shunt L 1/1.5, series L 2.5 becomes series C 1/2.5.
    ladder(3, 50, 50, "Pi");
    slot(0).w0 = 1000;
    slot(0).dip(5).type = 5; // an L||C arm keeps its type, its parts swapped by reciprocals
    slot(0).dip(5).L = 2;
    slot(0).dip(5).C = 4;
    slot(0).dip(5).Ca = 7;
    LPtoHP();
    const Dipole& shuntL = slot(0).dip(2);
    EXPECT_EQ(shuntL.type, 32);
    EXPECT_DOUBLE_EQ(shuntL.L, (1 / 1.5) * 50 / 1000);
    EXPECT_EQ(shuntL.C, 0);
    EXPECT_EQ(shuntL.Qu, 80);
    EXPECT_EQ(slot(0).dip(3).type, 3);
    EXPECT_DOUBLE_EQ(slot(0).dip(3).C, (1 / 2.5) / 1000 / 50);
    EXPECT_EQ(slot(0).dip(5).type, 5);
    EXPECT_DOUBLE_EQ(slot(0).dip(5).L, 0.25 * 50 / 1000);
    EXPECT_DOUBLE_EQ(slot(0).dip(5).C, 0.5 / 1000 / 50);
    EXPECT_EQ(slot(0).dip(5).Ca, 0);
}

TEST(Transforms, BandPassAndBandRejectByHand) {
    test::Session session;
    ladder(2, 50, 50, "Pi"); // 33 (1.5), 2 (2.5)
    slot(0).w0 = 1000;
    flow.Qratio = 10;
    flow.Qdesign = 0;
    LPtoBP();
    // A shunt C of 1.5 resonates with L = 1/(q C); a series L with C = 1/(q L).
    EXPECT_EQ(slot(0).dip(2).type, 35);
    EXPECT_DOUBLE_EQ(slot(0).dip(2).C, 15.0 / 50 / 1000);
    EXPECT_DOUBLE_EQ(slot(0).dip(2).L, (1.0 / 15) * 50 / 1000);
    EXPECT_EQ(slot(0).dip(3).type, 4);
    EXPECT_DOUBLE_EQ(slot(0).dip(3).L, 25.0 * 50 / 1000);
    EXPECT_DOUBLE_EQ(slot(0).dip(3).C, (1 / 25.0) / 1000 / 50);
    // Every arm resonates at w0.
    for (int d : {2, 3}) EXPECT_NEAR(slot(0).dip(d).L * slot(0).dip(d).C * 1e6, 1, 1e-12);

    ladder(2, 50, 50, "Pi");
    slot(0).w0 = 1000;
    flow.Qdesign = 50;
    LPtoBR();
    EXPECT_EQ(slot(0).dip(2).type, 34);
    EXPECT_DOUBLE_EQ(slot(0).dip(2).L, (10 / 1.5) * 50 / 1000);
    EXPECT_DOUBLE_EQ(slot(0).dip(2).C, (1.5 / 10) / 1000 / 50);
    EXPECT_EQ(slot(0).dip(3).type, 5);
    EXPECT_DOUBLE_EQ(slot(0).dip(3).L, (2.5 / 10) * 50 / 1000);
    EXPECT_EQ(slot(0).dip(3).Qu, 50);
    for (int d : {2, 3}) EXPECT_NEAR(slot(0).dip(d).L * slot(0).dip(d).C * 1e6, 1, 1e-12);
}

TEST(Transforms, DoubleResonanceArmsAndTheirRewrites) {
    test::Session session;
    // A band-pass trap arm of type 34 with L = 1, C = 1, q = 1: r = sqrt(4 + 1) = sqrt 5.
    auto arm = [](short type, const char* configuration) {
        store.curslot = 0;
        flow.configuration = configuration;
        flow.Qratio = 1;
        flow.Qdesign = 40;
        DesignSlot& s = slot(0);
        s.dipolecount = 2;
        s.w0 = 1;
        s.r0 = 1;
        s.dip(1) = Dipole{};
        s.dip(1).type = type;
        s.dip(1).L = 1;
        s.dip(1).C = 1;
        return &s.dip(1);
    };
    const double r = std::sqrt(5.0);
    Dipole* p = arm(34, "T");
    LPtoBP();
    EXPECT_EQ(p->type, 47);
    EXPECT_DOUBLE_EQ(p->C, ((r - 1) / 2) / r);
    EXPECT_DOUBLE_EQ(p->Ca, ((r + 1) / 2) / r);
    EXPECT_DOUBLE_EQ(p->L, r / ((r + 1) / 2));
    EXPECT_EQ(p->Qu, 40);
    EXPECT_EQ(p->Qa, 40);
    // Band-reject arms keep their inductors lossless.
    p = arm(5, "Pi");
    LPtoBR();
    EXPECT_EQ(p->type, 18);
    EXPECT_DOUBLE_EQ(p->L, ((r - 1) / 2) / r);
    EXPECT_EQ(p->Qu, 0);
    EXPECT_EQ(p->Qa, 0);
    // The series-parallel rewrite: a = L, b = C, c = La, d = Ca, D = (ab - cd)^2.
    p = arm(34, "SPT");
    LPtoBP();
    {
        const double b = ((r - 1) / 2) / r, d = ((r + 1) / 2) / r, a = 1 / d, c = 1 / b;
        const double D = (a * b - c * d) * (a * b - c * d);
        EXPECT_EQ(p->type, 49);
        EXPECT_DOUBLE_EQ(p->Ca, b + d);
        EXPECT_DOUBLE_EQ(p->La, a * c / (a + c));
        EXPECT_NEAR(p->C, b * d * (b + d) * (a + c) * (a + c) / D, 1e-12);
        EXPECT_NEAR(p->L, D / (a + c) / ((b + d) * (b + d)), 1e-12);
    }
    p = arm(5, "SPPi");
    LPtoBP();
    EXPECT_EQ(p->type, 13);
    // Types 1, 6, 31 and 38 pass every transform untouched.
    ladder(2, 50, 50, "T");
    slot(0).w0 = 1;
    LPtoBR();
    EXPECT_EQ(slot(0).dip(2).type, 38);
    EXPECT_EQ(slot(0).dip(2).L + slot(0).dip(2).C, 0);
    EXPECT_EQ(slot(0).dip(5).type, 6);
    EXPECT_EQ(slot(0).dip(6).R, 50);
}

} // namespace
} // namespace zelk
