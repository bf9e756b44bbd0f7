#include <gtest/gtest.h>

#include "core/designstore.h"
#include "entry/panel.h"
#include "testsupport.h"

using namespace zelk;

namespace {
// One row "X =" and the keys pressed, then ENTER; returns the row's text.
std::string keys(test::Session& s, const std::string& presses, const std::string& start = "") {
    panelclear();
    panelrow(0, "Rs =", start); // a row accept never refuses
    panelrow(1, "Y =", "9");
    s.run("> Getdata: " + presses + " accept\n");
    panelshow();
    return paneltext(0);
}
std::string k(int i) { return "keypad(" + std::to_string(i) + ") "; }
} // namespace

TEST(Keypad, CalculatorExamples) {
    test::Session s;
    // 100 * 2 + 3 = gives 203.
    EXPECT_EQ(keys(s, k(1) + k(0) + k(0) + k(24) + k(2) + k(22) + k(3) + k(26)), "203.");
    // 50 * 10% = gives 5: the percent marks the case.
    EXPECT_EQ(keys(s, k(5) + k(0) + k(24) + k(1) + k(0) + k(27) + k(26)), "5.");
    // 10 / 4 = gives 2.5.
    EXPECT_EQ(keys(s, k(1) + k(0) + k(25) + k(4) + k(26)), "2.5");
    // 10 - 3 = gives 7, but tab after 10 - 3 adds 3 and shows 13.
    EXPECT_EQ(keys(s, k(1) + k(0) + k(23) + k(3) + k(26)), "7.");
    EXPECT_EQ(keys(s, k(1) + k(0) + k(23) + k(3) + k(19)), "13.");
    // "=" with nothing pending does nothing.
    EXPECT_EQ(keys(s, k(4) + k(26)), "4");
    // Suffixes go through the notation: 4.7K * 2 = 9.4K.
    EXPECT_EQ(keys(s, k(4) + k(10) + k(7) + k(15) + k(24) + k(2) + k(26)), "9.4K");
}

TEST(Keypad, PendingTermAndClear) {
    test::Session s;
    // "+" with a pending term ignores a row that does not begin with "*" or "/":
    // 6 * then CLR, type 9 (the operator is gone) and "+": 6 is added, the 9 ignored.
    EXPECT_EQ(keys(s, k(6) + k(24) + k(20) + k(9) + k(22) + k(26)), "6.");
    // CLR keeps the accumulators: 2 + CLR =  still gives 2.
    EXPECT_EQ(keys(s, k(2) + k(22) + k(20) + k(26)), "2.");
}

TEST(Keypad, EditingKeys) {
    test::Session s;
    // Typing replaces the selection: the row starts selected whole.
    EXPECT_EQ(keys(s, k(7), "123"), "7");
    EXPECT_EQ(keys(s, k(1) + k(2) + k(11) + k(3), ""), "13");
    EXPECT_EQ(keys(s, k(11), ""), ""); // backspace at the start does nothing
    EXPECT_EQ(keys(s, k(2) + k(16) + k(17) + k(12) + k(13) + k(14), ""), "2uMpmn");
    EXPECT_EQ(keys(s, k(28), "3K"), "9000000");
    EXPECT_EQ(keys(s, k(29), "16"), "4");
    EXPECT_EQ(keys(s, k(21) + k(5), ""), "5"); // key 21 is no key
}

TEST(Keypad, FaultsOfTheCalculatorLeaveThePanelUp) {
    test::Session s;
    EXPECT_EQ(keys(s, k(5) + k(25) + k(0) + k(26)), "/0");
    ASSERT_EQ(s.runner.desk.messages.size(), 1u);
    EXPECT_EQ(s.runner.desk.messages[0].text, "Run-time error '11':\n\nDivision by zero");
    EXPECT_EQ(keys(s, k(29), "-4"), "-4");
    EXPECT_EQ(s.runner.desk.messages.back().text,
              "Run-time error '5':\n\nInvalid procedure call or argument");
}

TEST(Keypad, CancelAndRetry) {
    test::Session s;
    panelclear();
    panelrow(0, "X =", "1");
    s.run("> Getdata: keypad(18)\n");
    EXPECT_FALSE(panelshow());
    EXPECT_TRUE(store.cancelled);
    // After a refusal the next key goes to the refused row.
    panelclear();
    panelrow(0, "X =", "1");
    panelrow(1, "Zin =", "");
    s.run("> Getdata: accept keypad(5) accept\n");
    EXPECT_TRUE(panelshow());
    EXPECT_EQ(paneltext(0), "1");
    EXPECT_EQ(paneltext(1), "5");
}

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
