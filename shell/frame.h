// The main frame's logic: start-up, the menus' enabled states, the help panel, options,
// File New. The Qt binding in shell/qt mirrors it into widgets.
#pragma once

#include <string>
#include <vector>

namespace zelk {

struct FrameState {
    bool designsaved = true;
    std::string programdir;
    bool helppanelshown = false;
    std::string helplabel[4]; // the help panel as shown
    // The frame's client size and the help panel's height in pixels, kept by the binding
    // (the batch desktop keeps the start values).
    double framewidth = 1024, frameheight = 700, helppanelheight = 68;
    // Set by Exit: the binding ends the program once the command has returned.
    bool ending = false;
    // The last arrangement chosen in the WINDOW menu (0 cascade .. 3 icons), -1 none.
    int arrangement = -1;
};
inline FrameState frame;

// DesignFrame's load: the start-up sequence.
void designframe_load();
// Sets the enabled flags of the menus from lastslot.
void updatemenus();
// Shows help1..help4 in the help panel when the option helpL is on.
void showhelplines();
// The help lines shown at start and after File New.
void starthelplines();
// File New (also program close).
void newfilter_Click();
// Exit: runs New and asks the binding to end the program.
void exitfilter_Click();
// The frame's close box: as Exit.
void frame_close();
// Right mouse button on the frame's empty area: the DESIGN menu while nothing is open,
// else the EDIT pop-up.
void frame_rightclick();

// The menu tree, rebuilt at every reset: every item in menu order, with its caption.
void buildmenus();
// A click on a menu title (its control name: "file", "utilities", "analysis", "design",
// "options", "about", or "edit" for the pop-up) refreshes the help panel with that menu's
// lines. False for a menu without help lines.
bool menutitle_Click(const std::string& menu);

// The Options menu: item control name, settings key (application "filter", section
// "options") and caption.
struct OptionItem {
    const char* item;
    const char* key;
    const char* caption;
};
const std::vector<OptionItem>& optionitems();
// Reads the seven options from the settings store into the check marks (value "1" is
// on, anything else or a missing key off).
void readoptions();
// Toggles one option as its menu item does, and saves "1" or "0".
void toggleoption(const std::string& item);

} // namespace zelk
