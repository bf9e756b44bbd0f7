#include <gtest/gtest.h>

#include <vector>

#include "core/commands.h"
#include "core/designstore.h"
#include "testsupport.h"

using namespace zelk;

TEST(DesignStore, CleardipoleKeepsTypeAndCrystal) {
    test::Session s;
    store.curslot = 0;
    Dipole& p = dipole(0, 3);
    p.type = 37;
    p.R = 1, p.L = 2, p.C = 3, p.Kspare = 4, p.Lcore = "air", p.Lacore = "T50-2";
    p.Ls = 0.04, p.Cs = 2e-14, p.Cp = 4e-12, p.Rs = 15, p.Qx = 1e5;
    cleardipole(3);
    EXPECT_EQ(p.type, 37);
    EXPECT_EQ(p.R + p.L + p.C + p.Kspare, 0);
    EXPECT_EQ(p.Lcore + p.Lacore, "");
    EXPECT_EQ(std::vector<double>({p.Ls, p.Cs, p.Cp, p.Rs, p.Qx}), std::vector<double>({0.04, 2e-14, 4e-12, 15, 1e5}));
}

TEST(DesignStore, ClearallIsPartial) {
    test::Session s;
    DesignSlot& d = slot(0);
    d.title = "t";
    d.designtitle = "dt";
    d.code = "BLP";
    d.dipolecount = 20;
    d.Zin = 50;
    slot(1).dipolecount = 6;
    dipole(0, 16).L = 1;
    dipole(0, 17).L = 2;
    store.g[3] = 1.5;
    store.x[16] = 2;
    store.wA = 1000;
    store.lastslot = 1;
    store.curslot = 1;
    store.Rtol = 5;
    clearall();
    EXPECT_TRUE(d.title.empty() && d.designtitle.empty() && d.code.empty());
    EXPECT_EQ(d.count(), 0);
    EXPECT_EQ(slot(1).count(), 0);
    EXPECT_EQ(dipole(0, 16).L, 0);
    EXPECT_EQ(dipole(0, 17).L, 2); // beyond 16: stale, unreachable only by dipolecount
    EXPECT_EQ(store.g[3], 0);
    EXPECT_EQ(store.x[16], 0);
    EXPECT_EQ(store.wA.value(), 0);
    EXPECT_EQ(d.Zin.value(), 50); // the design values live on into the next prompt
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_EQ(store.curslot, -1);
    EXPECT_EQ(store.Rtol, 1);
}

TEST(DesignStore, OutOfRangeIndexIsARunTimeFaultAndTheProgramGoesOn) {
    test::Session s;
    EXPECT_THROW(slot(8), RuntimeFault);
    EXPECT_THROW(slot(-1), RuntimeFault);
    EXPECT_THROW(dipole(0, 33), RuntimeFault);
    EXPECT_NO_THROW(dipole(7, 32));
    // Through the dispatcher: the host's box, and the command ends cleanly.
    bool ok = guarded([] { dipole(0, 40).R = 1; });
    EXPECT_FALSE(ok);
    ASSERT_EQ(s.runner.desk.messages.size(), 1u);
    EXPECT_EQ(s.runner.desk.messages[0].text, "Run-time error '9':\n\nSubscript out of range");
    // A design command that faults is abandoned through File New.
    store.lastslot = 0;
    store.curslot = 0;
    slot(0).code = "BLP";
    guarded([] { raisefault(11); }, CommandKind::Design);
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_TRUE(slot(0).code.empty());
}

TEST(DesignStore, NumberKinds) {
    Number n;
    EXPECT_TRUE(n.empty());
    EXPECT_EQ(double(n), 0);
    n = 5;
    EXPECT_EQ(n.kind(), Number::Kind::Integer);
    n = 2.5;
    EXPECT_EQ(n.kind(), Number::Kind::Double);
    n *= 2;
    EXPECT_EQ(n.value(), 5);
    Number t = Number::text("BLP");
    EXPECT_TRUE(t.istext());
    EXPECT_EQ(t + 1.0, 1.0); // a text counts as 0 in arithmetic
}
