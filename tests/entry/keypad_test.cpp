// The keypad's tab search over the rows; its sums, editing keys, faults, CANCEL and the
// row a refusal leaves it on are the golden script keypad.
#include <gtest/gtest.h>

#include "core/designstore.h"
#include "entry/panel.h"
#include "testsupport.h"

using namespace zelk;

TEST(Keypad, TabSearch) {
    test::Session s;
    panelclear();
    panelrow(0, "A =", "1");
    panelrow(1, "B =", "2");
    panelrow(2, "C =", "12345678901234567890");
    panelrow(3, "D =", "4");
    getdata.getvalue(1).enabled = false;
    s.run("> Getdata: keypad(19)\n");
    // Drive the panel by hand: show it, press tab, look, then accept.
    getdata.ctl("accept"); // exists
    s.runner.desk.queue.back().actions.push_back("accept");
    panelshow();
    EXPECT_EQ(getdata.currentrow, 2); // row 1 is disabled, so row 2
    EXPECT_EQ(getdata.getvalue(2).selstart, 0);
    EXPECT_EQ(getdata.getvalue(2).sellength, 16); // fixed: a longer text is partly selected
    // Tab wraps from the last visible row to row 0.
    getdata.currentrow = 3;
    tabdataindex();
    EXPECT_EQ(getdata.currentrow, 0);
    EXPECT_EQ(getdata.getvalue(0).sellength, 1);
    // No row that can take the focus: a message instead of an endless search.
    for (int i = 0; i < 9; ++i) getdata.getvalue(i).enabled = false;
    tabdataindex();
    EXPECT_EQ(s.runner.desk.messages.back().title, "WARNING");
    EXPECT_EQ(s.runner.desk.messages.back().text, "There is no value on this panel to move to.");
}
