#include <gtest/gtest.h>

#include "batch/scripteddesktop.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "entry/panel.h"
#include "files.h"
#include "testsupport.h"

using namespace zelk;

namespace {
// A command that asks the panel once and a question box, for the queue rules.
void askboth() {
    panelclear();
    panelrow(0, "F1 =", "1");
    if (!panelshow()) return;
    slot(0).Zin = panelvalue(0);
    int a = MsgBox("Continue?", vbYesNo | vbQuestion, "Question");
    slot(0).Zout = a == vbYes ? 1 : 2;
}
void askpanel() {
    panelclear();
    panelrow(0, "F1 =", "1");
    panelshow();
}
void tell() { MsgBox("Just so you know."); }
const bool r1 = registercommand("testaskboth", askboth);
const bool r2 = registercommand("testaskpanel", askpanel);
const bool r3 = registercommand("testtell", tell);
} // namespace

TEST(Batch, Tokenizer) {
    bool ok;
    auto t = tokenize(R"(> Getdata: 10M "" "a b" Text1="My band-pass" "say ""hi""")", ok);
    ASSERT_TRUE(ok);
    ASSERT_EQ(t.size(), 7u);
    EXPECT_EQ(unquote(t[3]), "");
    EXPECT_EQ(unquote(t[4]), "a b");
    EXPECT_EQ(t[5], "Text1=\"My band-pass\"");
    EXPECT_EQ(unquote(t[6]), "say \"hi\"");
    tokenize("\"open", ok);
    EXPECT_FALSE(ok);
    std::string name;
    int index;
    EXPECT_TRUE(splitname("selection(4)", name, index));
    EXPECT_EQ(name, "selection");
    EXPECT_EQ(index, 4);
    EXPECT_TRUE(splitname("accept", name, index));
    EXPECT_EQ(index, -1);
    EXPECT_FALSE(splitname("x(", name, index));
    EXPECT_FALSE(splitname("x(a)", name, index));
}

TEST(Batch, ExitStatuses) {
    for (const test::Row& r : test::datarows("batch.txt", "statuses")) {
        test::Session s;
        EXPECT_EQ(s.run(r.text(0)), r.whole(1)) << r.text(0);
        if (r.text(2) != "-") {
            EXPECT_NE(s.err.str().find(r.text(2)), std::string::npos) << r.text(0);
        }
    }
}

TEST(Batch, AnswersAndMessages) {
    test::Session s;
    ASSERT_TRUE(s.ok("> Getdata: 7\n> msgbox: No\ntestaskboth\ntesttell\ndump messages\n"));
    EXPECT_EQ(slot(0).Zin.value(), 7);
    EXPECT_EQ(slot(0).Zout.value(), 2);
    EXPECT_EQ(s.take(), "msgbox title=\"Question\" buttons=YesNo answer=No text=\"Continue?\"\n"
                        "msgbox title=\"ZELK Filter Design\" buttons=OK answer=OK text=\"Just so you know.\"\n");
}

TEST(Batch, OptionalAnswersAreSkippedAndDropped) {
    test::Session s;
    // An optional answer for a window that does not open is skipped over by the others
    // and dropped when the command after it ends.
    ASSERT_TRUE(s.ok(">? msgbox: No\n> Getdata: 3\ntestaskpanel\n"));
    EXPECT_TRUE(s.runner.desk.queue.empty());
    // A window takes the first answer for it, optional or not.
    ASSERT_TRUE(s.ok(">? msgbox: No\n> Getdata: 4\ntestaskboth\n"));
    EXPECT_EQ(slot(0).Zin.value(), 4);
    EXPECT_EQ(slot(0).Zout.value(), 2);
}

TEST(Batch, PanelBareListFillsVisibleRowsThenAccepts) {
    test::Session s;
    panelclear();
    panelrow(0, "F1 =", "");
    panelrow(2, "F2 =", ""); // row 1 hidden: the texts go to the visible rows in order
    panelrow(3, "Zin =", "");
    s.run("> Getdata: 10M \"\" 50\n");
    EXPECT_TRUE(panelshow());
    EXPECT_EQ(paneltext(0), "10M");
    EXPECT_EQ(paneltext(1), "");
    EXPECT_EQ(paneltext(2), "");
    EXPECT_EQ(paneltext(3), "50");
    // accept stops at the first hidden label, so the blank F2 below it passes.
    EXPECT_TRUE(s.runner.desk.messages.empty());
}
