// The data panel: signed texts, the ninth row, closing and the accumulators. Its refusals,
// the comma, the optional rows and Astop against Order are the golden script panel_checks.
#include <gtest/gtest.h>

#include "core/designstore.h"
#include "entry/panel.h"
#include "testsupport.h"

using namespace zelk;

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

TEST(Panel, ClosingCancelsAndActivationResetsTheAccumulators) {
    test::Session s;
    panelclear();
    panelrow(0, "F1 =", "10M");
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
    s.run("> Getdata: accept\n");
    EXPECT_TRUE(panelshow());
    EXPECT_FALSE(store.cancelled);
    EXPECT_EQ(getdata.getvalue(0).sellength, 3);
}
