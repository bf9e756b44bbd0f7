// The data panel: signed texts, the ninth row, closing and the accumulators; the keypad's
// tab search; the notes by design code and label, the note lock, Restore Defaults and Set
// as Defaults, the match picture and the step-up/step-down toggle. The panel's refusals,
// the comma, the optional rows, Astop against Order and the keypad's sums, editing keys
// and faults are the golden scripts panel_checks and keypad.
#include <gtest/gtest.h>

#include "core/designstore.h"
#include "entry/panel.h"
#include "files.h"
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

namespace {
// The note a row with this label shows in a design of this code when the row takes the
// focus, or when its label is clicked; "(none)" when it leaves the note alone.
std::string note(const std::string& label, const std::string& code, int row = 0, bool click = false) {
    slot(store.curslot).code = code;
    panelclear();
    getdata.setnote("(none)");
    panelrow(row, label, "1");
    if (click) getdata.click("Label2", row);
    else getdata.focus("getvalue", row);
    return getdata.note();
}
std::string clicknote(const std::string& label, const std::string& code) { return note(label, code, 0, true); }
} // namespace

TEST(PanelHints, FocusAndLabelClickNotesByCode) {
    test::Session s;
    for (const test::Row& r : test::datarows("panel.txt", "focusnotes"))
        EXPECT_EQ(note(r.text(0), r.text(1), r.whole(2)), r.text(3)) << r.text(0) << " " << r.text(1);
    EXPECT_EQ(getdata.currentrow, 0);
    for (const test::Row& r : test::datarows("panel.txt", "clicknotes"))
        EXPECT_EQ(clicknote(r.text(0), r.text(1)), r.text(2)) << r.text(0) << " " << r.text(1);
    clicknote("L% =", "BLP");
    EXPECT_EQ(getdata.picturekey, "dipole 2");
}

TEST(PanelHints, NotelockAndTheReturnLossFlag) {
    test::Session s;
    panelclear();
    panelrow(0, "db1 =", "0");
    panelrow(1, "db2 =", "-60");
    getdata.returnlossflag = true;
    getdata.focus("getvalue", 0);
    EXPECT_EQ(getdata.note(), "Enter the range of attenuation to be plotted.  Both values should be positive for Return Loss plots.");
    EXPECT_FALSE(getdata.returnlossflag);
    getdata.focus("getvalue", 0);
    EXPECT_EQ(getdata.note(), "Enter the range of attenuation to be plotted.  One of the two values should be negative as the plots are gain curves.");
    // With the note locked, focus moves neither the note nor the keypad's row.
    getdata.notelock = true;
    getdata.setnote("mine");
    getdata.focus("getvalue", 1);
    EXPECT_EQ(getdata.note(), "mine");
    EXPECT_EQ(getdata.currentrow, 0);
}

TEST(PanelHints, RestoreDefaultsByCode) {
    test::Session s;
    DesignSlot& d = slot(0);
    store.curslot = 0;
    d.w0 = TWOPI * 10e6;
    d.w1 = TWOPI * 9e6;
    d.w2 = TWOPI * 10e6;
    d.w3 = TWOPI * 11e6;
    d.bw = TWOPI * 1e5;
    d.Astop = 40;
    d.r0 = 50.7;
    d.dipolecount = 4;
    d.dip(1).R = 50;
    d.dip(4).R = 50;
    // Rows with these labels (and texts), restored; their texts joined by "|".
    auto restore = [](std::initializer_list<const char*> labels) {
        panelclear();
        int i = 0;
        for (const char* l : labels) panelrow(i++, l, "");
        restore_Click();
        std::string out;
        for (int k = 0; k < i; ++k) out += (k ? "|" : "") + paneltext(k);
        return out;
    };
    auto gain = [&](const std::string& code) {
        d.code = code;
        return restore({"Freq 1 =", "Freq 2 =", "db1 =", "db2 ="});
    };
    for (const test::Row& r : test::datarows("panel.txt", "restoregain")) EXPECT_EQ(gain(r.text(0)), r.text(1));
    d.Astop = 0;
    EXPECT_EQ(gain("BLP"), "1M|100M|0|-60");
    store.help1 = "Return Loss";
    EXPECT_EQ(gain("BLP"), "1M|100M|0|240");
    // Impedance, angle and time rows; 0.5 us shows as ".5u", which truncates to 0.
    EXPECT_EQ(restore({"Zin =", "Zout =", "Z1 =", "Z2 =", "DC%="}), "50|50|1.|1K|50");
    EXPECT_EQ(restore({"FM =", "Time =", "A1 =", "A2 ="}), "100M|0u|-360|360");
    // Set as Defaults stores what the rows hold.
    panelclear();
    const char *labels[] = {"Freq 1 =", "Freq 2 =", "db1 =", "db2 ="}, *texts[] = {"2M", "30M", "5", "-90"};
    for (int i = 0; i < 4; ++i) panelrow(i, labels[i], texts[i]);
    set_Click();
    EXPECT_EQ(std::vector<double>({plotdefaults.defaultfreq1, plotdefaults.defaultfreq2, plotdefaults.defaultdb1,
                                   plotdefaults.defaultdb2}),
              std::vector<double>({2e6, 30e6, 5, -90}));
}

// The picture's cycles of the auto transformer and of the crystal couplings are walked
// by the norton tests and the crystal golden scripts; the match picture toggles L and C.
TEST(PanelHints, MatchPictureToggles) {
    test::Session s;
    panelclear();
    panelrow(2, "MATCH =", "");
    getdata.matchmode = "L";
    getdataimage_Click();
    EXPECT_EQ(getdata.matchmode, "C");
    EXPECT_EQ(getdata.picturekey, "image 26");
    getdataimage_Click();
    EXPECT_EQ(getdata.matchmode, "L");
}

TEST(PanelHints, StepUpStepDown) {
    test::Session s;
    panelclear();
    panelrow(0, "N =", "");
    getdata.Tname1 = "C2";
    getdata.Tname2 = "L3";
    getdata.TN1 = 0.5;
    getdata.TN2 = 0.25;
    getdata.dipolechoice = 41;
    selectT_Click();
    EXPECT_EQ(getdata.dipolechoice, 42);
    EXPECT_FALSE(getdata.stepdown);
    EXPECT_EQ(paneltext(0), "0.25");
    EXPECT_EQ(getdata.note(), "1 > N =< default value\nDefault values eliminates L3");
    selectT_Click();
    EXPECT_EQ(getdata.dipolechoice, 41);
    EXPECT_TRUE(getdata.stepdown);
    EXPECT_EQ(paneltext(0), "0.5");
    getdata.dipolechoice = 47;
    selectT_Click();
    EXPECT_EQ(getdata.dipolechoice, 47);
}
