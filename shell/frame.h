// The main frame's logic: start-up, the menu tree, options, help, the command table and
// the reset of every process-wide table. The Qt binding in shell/qt mirrors it into widgets.
#pragma once

#include <string>
#include <vector>

#include "core/framestate.h"

namespace zelk {

// DesignFrame's load: the start-up sequence.
void designframe_load();
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
// Reads the options from the settings store into the check marks (value "1" is
// on, anything else or a missing key off).
void readoptions();
// Toggles one option as its menu item does, and saves "1" or "0".
void toggleoption(const std::string& item);
// The menu commands of the Options menu: the help line, a display option by its item,
// and the exact time responses (drawn beside the impulse and step curves).
void helpL_Click();
void displayoption_Click(const char* item);
void exacttime_Click();

// The command table: every menu item, pop-up item and button that runs a command, by
// control name, with the dump and export handlers of the batch runner. Installed into
// the core's lookup by resetall.
void installcommands();

// Resets every process-wide table of the program to its state at program start and
// installs the command table and the hooks of the lower layers. For the bindings, the
// batch runner and tests.
void resetall();

} // namespace zelk
