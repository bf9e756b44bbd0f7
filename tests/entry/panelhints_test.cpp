// The data panel's notes by design code and label, the note lock, Restore Defaults and
// Set as Defaults, the picture's cycles and the step-up/step-down toggle.
#include <gtest/gtest.h>

#include "core/designstore.h"
#include "entry/panel.h"
#include "testsupport.h"

using namespace zelk;

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

TEST(PanelHints, FocusNotesByCode) {
    test::Session s;
    EXPECT_EQ(note("F1 =", "BLP"), "Enter the 3db cutoff frequency F1.");
    EXPECT_EQ(note("F1 =", "TBP"), "Enter the lower 3db cutoff frequency F1.");
    EXPECT_EQ(note("F1 =", "CLP"), "Enter the lower cutoff frequency F1 at the attenuation specified in A pass");
    EXPECT_EQ(note("F1 =", "CHP"), "Enter the stopband frequency F1.");
    EXPECT_EQ(note("F2 =", "CHP"), "Enter the cutoff frequency F2 at the attenuation specified in A pass.");
    EXPECT_EQ(note("F2 =", "PAD"), "(none)"); // any other code: the note stays
    EXPECT_EQ(note("F3 =", "EBP"), "Enter the upper cutoff frequency F3, at the attenuation specified in A pass.");
    EXPECT_EQ(note("F4 =", "BBP"), "Enter the upper stopband frequency F4.");
    EXPECT_EQ(note("Apass =", "CLP"), "Enter the allowable passband ripple in db.");
    EXPECT_EQ(note("Order =", "BCL"), "Enter the order of the filter (=number of crystals).");
    EXPECT_EQ(note("Zin =", "BLP", 2),
              "Zin and or Zout can be specified different than the default values shown. If so, the C Match will be applied.");
    EXPECT_EQ(note("Zin =", "BLP", 5), "Enter the input impedance in Ohms.");
    EXPECT_EQ(note("Unknown", "BLP"), "(none)");
    EXPECT_EQ(getdata.currentrow, 0);
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

TEST(PanelHints, LabelClickNotes) {
    test::Session s;
    EXPECT_EQ(clicknote("F1 =", "CBR"), "The cutoff frequency, in Hertz, of low-pass or band reject filters.");
    EXPECT_EQ(clicknote("F1 =", "BCR"), "The lower 3db cutoff frequency, in Hertz, of coupled resonator filters.");
    EXPECT_EQ(clicknote("L% =", "BLP"),
              "The value of all inductors in the filter is changed to within the specified % of their ideal value.");
    EXPECT_EQ(getdata.picturekey, "dipole 2");
    // The table's keys "db1", "Freq1" never match a two-character key.
    EXPECT_EQ(clicknote("db1 =", "BLP"), "(none)");
    EXPECT_EQ(clicknote("Freq 1 =", "BLP"), "(none)");
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
    // LP/HP: w0/pi/20 and w2/pi*5 through roundvalue (1 MHz, 100 MHz).
    EXPECT_EQ(gain("BLP"), "1M|100M|0|-80");
    EXPECT_EQ(gain("CHP"), "1M|100M|0|-80");
    // BP/BR: w2/pi/10 and w3/pi*2.5; the table codes use w1 and w2.
    EXPECT_EQ(gain("CBP"), "2M|55M|0|-80");
    EXPECT_EQ(gain("TBR"), "1M|50M|0|-80");
    // CR and CL in engineering format, unrounded.
    EXPECT_EQ(gain("BCR"), "5.M|20.M|0|-80");
    EXPECT_EQ(gain("BCL"), "9.8M|10.2M|0|-80");
    EXPECT_EQ(gain("ENT"), "2M|100M|0|-80");
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
