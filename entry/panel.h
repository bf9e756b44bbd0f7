// The data panel Getdata: the one panel through which nearly every number reaches the
// program. A caller prepares rows, note and picture, shows the panel modally, tests
// `cancelled` and reads the rows with parsevalue.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "core/window.h"

namespace zelk {

inline constexpr int PANELROWS = 9;

class Getdata : public Window {
  public:
    Getdata();
    void reset() override;

    // Controls: Label2(0..8), getvalue(0..8), Notes, getdataimage, keypad(0..29), accept,
    // set, restore, selectT.
    Control& Label2(int i) { return ctl("Label2", i); }
    Control& getvalue(int i) { return ctl("getvalue", i); }

    // The picture shown: "image N" for a drawing of the panel's store (the response
    // sketches and configurations), "dipole N" for the picture of dipole type N.
    std::string picturekey;

    short currentrow = 0;
    double calcsum = 0;
    double calcterm = 0;
    bool notelock = false;
    bool retryentry = false;
    short retryrow = -1; // the row that accept refused
    bool panelloaded = false;
    short dipolechoice = 0;
    bool stepdown = false;
    std::string couplingmode = "UC";
    std::string matchmode = "L";
    // Set by the return-loss plot prompt; the hint of a "db" row reads and clears it.
    bool returnlossflag = false;
    // Left by the Norton and auto-transformer prompts for the hints and the step-up /
    // step-down toggle: the current inductance, and the two component names and
    // default turns ratios N of the two choices.
    double Lcurrent = 0;
    std::string Tname1, Tname2;
    double TN1 = 0, TN2 = 0;

    // Events.
    void accept_Click();
    // Sets a row's text as typing would (the change event runs).
    void setrow(int i, const std::string& text);
    void activate() override;
    void deactivate() override;
    void closebox() override;
    void getvalue_Change(int i);
    void getvalue_GotFocus(int i);

    std::string note() const;
    void setnote(const std::string& text);

  private:
    void build();
    bool firstshowing_ = true;
};

inline Getdata getdata;

// Plot defaults, filled by the panel's "Set as Defaults" and read by the plot prompts.
struct PlotDefaults {
    double defaultfreq1 = 0, defaultfreq2 = 0, defaultdb1 = 0, defaultdb2 = 0;
    double defaultangle1 = 0, defaultangle2 = 0, defaultz1 = 0, defaultz2 = 0;
    double defaultfm = 0, defaulttime = 0, defaultt1 = 0, defaultn1 = 0, defaultn2 = 0;
    double defaultdutycycle = 0;
};
inline PlotDefaults plotdefaults;

// Caller protocol helpers.
// Hides every row (label and value, text ""), clears the note and notelock, hides set,
// restore and selectT.
void panelclear();
// Shows row i with its label, text and tool tip.
void panelrow(int i, const std::string& label, const std::string& text,
              const std::string& tooltip = {});
// Picture of the panel's store, or of a dipole type.
void panelimage(int index);
void paneldipole(int type);
// Shows set and restore (plot prompts).
void panelplotbuttons(bool on);
// Shows the panel modally; returns false when the user cancelled.
bool panelshow();
// The row's value through parsevalue.
double panelvalue(int i);
// Resets the panel and the plot defaults to program start.
void resetpanel();
// The panel's rows, note and picture key, for the batch runner's dump.
bool dumppanel(const std::vector<std::string>& args, std::ostream& out);
const std::string& paneltext(int i);

// Part of the panel given by the keypad and hints (entry/keypad.cpp, entry/panelhints.cpp).
void keypad_Click(int i);
void tabdataindex();
void hintonfocus(int row);
void Label2_Click(int i);
void restore_Click();
void set_Click();
void getdataimage_Click();
void selectT_Click();
// Keypad captions and tool tips into the controls.
void keypadsetup(Getdata& panel);

} // namespace zelk
