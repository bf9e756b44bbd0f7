#include <gtest/gtest.h>

#include "core/designstore.h"
#include "entry/panel.h"
#include "testsupport.h"

using namespace zelk;

namespace {
// A design-like panel: F1, Zin, Astop, Order, Rs.
void preparepanel() {
    panelclear();
    panelrow(0, "F1 =", "10M", "Cutoff Frequency");
    panelrow(1, "Zin =", "50", "input impedance");
    panelrow(2, "Astop =", "60", "Stopband attenuation");
    panelrow(3, "Order =", "", "Order of the filter");
    panelrow(4, "Rs =", "", "");
}
} // namespace

TEST(Panel, AcceptFixesCommasAndLetsTheOptionalRowsBeBlank) {
    test::Session s;
    preparepanel();
    s.run("> Getdata: getvalue(1)=1,5 getvalue(2)= accept\n");
    EXPECT_TRUE(panelshow());
    EXPECT_EQ(paneltext(1), "1.5"); // fixed in the row, not only in the value read
    EXPECT_EQ(panelvalue(1), 1.5);
    EXPECT_EQ(paneltext(2), "");     // Astop may stay blank, and Order with it
    EXPECT_TRUE(s.runner.desk.messages.empty());
    EXPECT_FALSE(getdata.visible);
    EXPECT_TRUE(getdata.panelloaded);
}

TEST(Panel, RefusalsKeepThePanelUpWithTheExactLines) {
    test::Session s;
    preparepanel();
    s.run("> Getdata: getvalue(1)= accept getvalue(1)=*5 accept getvalue(1)=/2 accept getvalue(1)=75 accept\n");
    EXPECT_TRUE(panelshow());
    auto& m = s.runner.desk.messages;
    ASSERT_EQ(m.size(), 3u);
    EXPECT_EQ(m[0].title, "WARNING");
    EXPECT_EQ(m[0].text, "The values were not properly entered\nZin = is blank.");
    EXPECT_EQ(m[1].text, "The values were not properly entered\nZin = multiplication incomplete\n"
                         "Must hit = key to complete math function.");
    EXPECT_EQ(m[2].text, "The values were not properly entered\nZin = division incomplete\n"
                         "Must hit = key to complete math function.");
    EXPECT_EQ(panelvalue(1), 75);
    EXPECT_TRUE(getdata.retryrow == 1);
}

TEST(Panel, SignedTextsPassAndRowEightEscapes) {
    test::Session s;
    panelclear();
    for (int i = 0; i < 9; ++i) panelrow(i, "X" + std::to_string(i) + " =", "1");
    getdata.getvalue(8).text = "";
    s.run("> Getdata: getvalue(0)=-5 getvalue(1)=+3 accept\n");
    EXPECT_TRUE(panelshow());
    EXPECT_TRUE(s.runner.desk.messages.empty());
    EXPECT_EQ(panelvalue(0), -5);
}

TEST(Panel, AstopAndOrderExcludeEachOther) {
    test::Session s;
    preparepanel();
    getdata.getvalue(3).text = "5";
    s.run("> Getdata: getvalue(2)=40 accept\n");
    EXPECT_TRUE(panelshow());
    EXPECT_EQ(paneltext(2), "40");
    EXPECT_EQ(paneltext(3), ""); // typing Astop blanked Order
    preparepanel();
    s.run("> Getdata: getvalue(3)=7 accept\n");
    EXPECT_TRUE(panelshow());
    EXPECT_EQ(paneltext(2), ""); // typing Order blanked Astop
    EXPECT_EQ(paneltext(3), "7");
    // An empty text blanks nothing, and row 0 takes no part.
    panelclear();
    panelrow(0, "Astop =", "1");
    panelrow(1, "Order =", "2");
    s.run("> Getdata: getvalue(0)=3 accept\n");
    EXPECT_TRUE(panelshow());
    EXPECT_EQ(paneltext(1), "2");
}

TEST(Panel, ClosingCancelsAndActivationResetsTheAccumulators) {
    test::Session s;
    preparepanel();
    getdata.calcsum = 5;
    getdata.calcterm = 2;
    getdata.notelock = true;
    s.run("> Getdata: close\n");
    EXPECT_FALSE(panelshow());
    EXPECT_TRUE(store.cancelled);
    EXPECT_FALSE(getdata.panelloaded);
    EXPECT_FALSE(getdata.notelock);
    EXPECT_EQ(getdata.calcsum, 0);
    EXPECT_EQ(getdata.calcterm, 0);
    // The next showing clears cancelled again and selects each row whole.
    preparepanel();
    s.run("> Getdata: accept\n");
    EXPECT_TRUE(panelshow());
    EXPECT_FALSE(store.cancelled);
    EXPECT_EQ(getdata.getvalue(0).sellength, 3);
}
