#include <gtest/gtest.h>

#include "batch/scripteddesktop.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "entry/panel.h"
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
    // Script, exit status, and a piece of the error text ("" not checked).
    const struct {
        const char *script;
        int status;
        const char* error;
    } cases[] = {
        {"# a comment\n\nnosuchcommand\n", 1, "unknown command nosuchcommand"},
        {"> nosuchwindow: x\n", 1, ""},
        {"> Getdata: accept\n", 2, "Getdata"}, // an answer nobody asks for
        {"testaskpanel\n", 2, "window Getdata opened and the queue is empty"},
        {"> msgbox: Yes\n> Getdata: accept\ntestaskboth\n", 2, ""}, // the head is for another window
        {"> Getdata: 5\n> msgbox: Retry\ntestaskboth\n", 2, ""},   // an answer that does not fit
        {"dump slot 9\n", 1, ""},
        {"dump nothing\n", 1, ""},
    };
    for (const auto& c : cases) {
        test::Session s;
        EXPECT_EQ(s.run(c.script), c.status) << c.script;
        EXPECT_NE(s.err.str().find(c.error), std::string::npos) << c.script;
    }
}

TEST(Batch, AnswersAndMessages) {
    test::Session s;
    ASSERT_EQ(s.run("> Getdata: 7\n> msgbox: No\ntestaskboth\ntesttell\ndump messages\n"), 0);
    EXPECT_EQ(slot(0).Zin.value(), 7);
    EXPECT_EQ(slot(0).Zout.value(), 2);
    EXPECT_EQ(s.take(), "msgbox title=\"Question\" buttons=YesNo answer=No text=\"Continue?\"\n"
                        "msgbox title=\"ZELK Filter Design\" buttons=OK answer=OK text=\"Just so you know.\"\n");
}

TEST(Batch, OptionalAnswersAreSkippedAndDropped) {
    test::Session s;
    // An optional answer for a window that does not open is skipped over by the others
    // and dropped when the command after it ends.
    ASSERT_EQ(s.run(">? msgbox: No\n> Getdata: 3\ntestaskpanel\n"), 0);
    EXPECT_TRUE(s.runner.desk.queue.empty());
    // A window takes the first answer for it, optional or not.
    ASSERT_EQ(s.run(">? msgbox: No\n> Getdata: 4\ntestaskboth\n"), 0);
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
