// gettabledata's record selection, the order limit of the table commands, and the
// termination moves and layouts of tablerealize.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "core/designflow.h"
#include "core/designstore.h"
#include "synthesis/tables.h"
#include "files.h"
#include "reference.h"
#include "testsupport.h"

namespace zelk {
namespace {

// Opens a table written for the test as file 1.
void opentext(const std::string& text) {
    const auto path = test::scratch("table") / "table.tbl";
    std::ofstream(path) << text;
    closetablefile();
    tables.file1.open(path);
    ASSERT_TRUE(tables.file1.is_open());
}

void terms(int order, double zin, double zout) {
    store.curslot = 0;
    slot(0).order = order;
    slot(0).Zin = zin;
    slot(0).Zout = zout;
}

TEST(TableReading, RecordSelection) {
    test::Session session;
    for (const test::Row& r : test::datarows("layouts.txt", "tablechoice")) {
        const int order = r.whole(1);
        terms(order, r.num(2), r.num(3));
        opentext(r.text(0));
        gettabledata();
        EXPECT_EQ(tables.tabratio, r.num(4)) << r.text(0) << r.text(2) << r.text(3);
        EXPECT_EQ(store.g[r.whole(5)], r.num(6));
        if (order < 4) {
            EXPECT_EQ(store.oddorder, order % 2 == 1);
        }
        EXPECT_FALSE(tables.file1.is_open());
    }
    // getCRtabledata takes the first record of the order, whatever its ratio.
    terms(3, 50, 50);
    opentext("3,0,9,9,9\n3,1,1,2,3\n");
    getCRtabledata();
    EXPECT_EQ(store.g[1], 9);
    EXPECT_FALSE(tables.file1.is_open());
}

TEST(TableReading, TruncatedRecordIsAHostFault) {
    test::Session session;
    terms(3, 50, 50);
    opentext("3,1,1,2");
    try {
        gettabledata();
        FAIL() << "no fault";
    } catch (const RuntimeFault& f) {
        EXPECT_EQ(f.number, 62);
    }
}

// The order limit of the table commands with the shipped tables is the golden script
// table_order_limit.

// The termination table of tablerealize, row by row (tests/data/layouts.txt).
TEST(TableReading, RealizeEveryRowOfTheTerminationTable) {
    test::Session session;
    for (const test::Row& r : test::datarows("layouts.txt", "tablerealize")) {
        SCOPED_TRACE(r.text(1) + " n=" + r.text(0) + " " + r.text(2) + "/" + r.text(3) + " " + r.text(4));
        const int n = r.whole(0);
        terms(n, r.num(2), r.num(3));
        flow.configuration = r.text(1);
        flow.termchoice = r.text(4);
        tables.tabratio = n % 2 ? 0.5 : 2;
        for (int k = 1; k <= 16; ++k) store.g[k] = k + 0.5;
        tablerealize();
        const DesignSlot& s = slot(0);
        EXPECT_DOUBLE_EQ(s.Zin, r.num(5));
        EXPECT_DOUBLE_EQ(s.Zout, r.num(6));
        EXPECT_DOUBLE_EQ(s.r0, r.num(7));
        EXPECT_EQ(test::types(), r.list(8));
        EXPECT_DOUBLE_EQ(s.dip(1).R, r.num(5));
        EXPECT_DOUBLE_EQ(s.dip(s.count()).R, r.num(6));
        const Dipole& first = s.dip(s.dip(2).type == 38 ? 3 : 2);
        EXPECT_DOUBLE_EQ(first.C + first.L, r.num(9));
    }
}

} // namespace
} // namespace zelk
