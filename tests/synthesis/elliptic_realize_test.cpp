// The elliptic ladder layouts from either end and Bartlett's bisection, with marker
// element values so that every placement is visible; the ladders worked by hand are the
// rows of tests/data/elliptic.txt.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "core/designflow.h"
#include "core/designstore.h"
#include "synthesis/ellipticproto.h"
#include "synthesis/ellipticrealize.h"
#include "files.h"
#include "testsupport.h"

namespace zelk {
namespace {

TEST(EllipticRealize, LayoutsFromEitherEndAndBartlettsBisection) {
    test::Session s;
    for (const test::Row& r : test::datarows("elliptic.txt", "layouts")) {
        const int n = r.whole(0);
        SCOPED_TRACE(r.text(0) + " " + r.text(1) + " from the " + r.text(2) + ", " + r.text(3) + " to " + r.text(4));
        store.lastslot = store.curslot = 0;
        DesignSlot& d = slot(0);
        d.order = n;
        d.Zin = r.num(3);
        d.Zout = r.num(4);
        store.oddorder = n % 2 != 0;
        elliptic.halforder = n / 2;
        elliptic.fromoutput = r.text(2) == "load";
        flow.configuration = r.text(1);
        for (size_t k = 1; k <= 16; ++k) elliptic.elemA[k] = 10.0 + k, elliptic.elemB[k] = 100.0 + k;
        d.dip(2) = Dipole{};
        d.dip(2).type = 77, d.dip(2).C = 9;
        ellipticrealize();
        ASSERT_EQ(d.count(), static_cast<int>(r.field.size()) - 5);
        for (int i = 1; i <= d.count(); ++i) {
            std::string want = r.text(static_cast<size_t>(i) + 4);
            std::replace(want.begin(), want.end(), ':', ' ');
            std::istringstream in(want);
            double type = 0, C = 0, L = 0, R = 0;
            in >> type >> C >> L >> R;
            const Dipole& p = d.dip(i);
            EXPECT_EQ(p.type, type) << "dipole " << i;
            EXPECT_DOUBLE_EQ(p.C, C) << "dipole " << i;
            EXPECT_DOUBLE_EQ(p.L, L) << "dipole " << i;
            EXPECT_DOUBLE_EQ(p.R, R) << "dipole " << i;
        }
    }
}

} // namespace
} // namespace zelk
