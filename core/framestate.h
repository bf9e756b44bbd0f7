// The frame's state that every command writes: the saved mark, the help lines, the
// program folder, the menus' enabled states that follow the number of open designs, and
// File New. The schematic windows live above the core, so clearing and hiding them goes
// through hooks that the shell fills in at reset.
#pragma once

#include <string>

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

// The fifteen plots, as the ANALYZE menu names them, and their print entries (the
// clipboard entries are the same names with c for p).
extern const char* const plotnames[15];
extern const char* const printnames[15];
// The FILE > Export entry of a plot, named after its print entry ("pPEG" -> "xPEG").
std::string exportitem(const std::string& printitem);

// What the core asks of the schematic windows, set by the shell at reset.
struct SchematicHooks {
    void (*clear)(int slot) = nullptr; // schematicclear of one slot
    void (*hideall)() = nullptr;       // hides both schematic windows
    void (*resetundo)() = nullptr;     // empties the undo store (File New)
};
inline SchematicHooks schematichooks;

// Sets the enabled flags of the menus from lastslot.
void updatemenus();
// Shows help1..help4 in the help panel when the option helpL is on.
void showhelplines();
// The help lines shown at start and after File New.
void starthelplines();
// File New (also program close): closes the child windows and runs clearall.
void newfilter_Click();

} // namespace zelk
