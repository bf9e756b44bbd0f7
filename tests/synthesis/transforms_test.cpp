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

// The four transforms of the ladder R | C 1.5 | L 2.5 | (C 3.5) | R at 50 ohms and w0 = 1000,
// element by element by hand. The high-pass also gets an L || C arm at 5 (L 2, C 4, Ca 7),
// which keeps its type with its parts swapped by reciprocals and loses Ca.
TEST(Transforms, EachElementByHand) {
    test::Session session;
    const struct {
        void (*transform)();
        int order;
        double Qratio, Qdesign;
        int d, type;
        double C, L, Qu;
    } rows[] = {
        {LPtoLP, 3, 0, 80, 2, 33, 1.5 / 50 / 1000, 0, 0},
        {LPtoLP, 3, 0, 80, 3, 2, 0, 2.5 * 50 / 1000, 80},
        {LPtoHP, 3, 0, 80, 2, 32, 0, (1 / 1.5) * 50 / 1000, 80},
        {LPtoHP, 3, 0, 80, 3, 3, (1 / 2.5) / 1000 / 50, 0, 80},
        {LPtoHP, 3, 0, 80, 5, 5, 0.5 / 1000 / 50, 0.25 * 50 / 1000, 80},
        // Band-pass, q = 10: a shunt C of 1.5 resonates with L = 1/(q C); a series L with
        // C = 1/(q L).
        {LPtoBP, 2, 10, 0, 2, 35, 15.0 / 50 / 1000, (1.0 / 15) * 50 / 1000, 0},
        {LPtoBP, 2, 10, 0, 3, 4, (1 / 25.0) / 1000 / 50, 25.0 * 50 / 1000, 0},
        {LPtoBR, 2, 10, 50, 2, 34, (1.5 / 10) / 1000 / 50, (10 / 1.5) * 50 / 1000, 50},
        {LPtoBR, 2, 10, 50, 3, 5, 1 / (2.5 / 10 * 50 / 1000) / 1e6, (2.5 / 10) * 50 / 1000, 50},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE("order " + std::to_string(r.order) + ", dipole " + std::to_string(r.d));
        ladder(r.order, 50, 50, "Pi");
        slot(0).w0 = 1000;
        flow.Qratio = r.Qratio;
        flow.Qdesign = r.Qdesign;
        if (r.transform == LPtoHP) {
            Dipole& arm = slot(0).dip(5);
            arm.type = 5, arm.L = 2, arm.C = 4, arm.Ca = 7;
        }
        r.transform();
        const Dipole& p = slot(0).dip(r.d);
        EXPECT_EQ(p.type, r.type);
        EXPECT_DOUBLE_EQ(p.C, r.C);
        EXPECT_DOUBLE_EQ(p.L, r.L);
        EXPECT_EQ(p.Qu, r.Qu);
        EXPECT_EQ(p.Ca, 0);
        if (r.Qratio) {
            EXPECT_NEAR(p.L * p.C * 1e6, 1, 1e-12); // every arm resonates at w0
        }
        EXPECT_EQ(slot(0).dip(1).R, 50);
    }
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
