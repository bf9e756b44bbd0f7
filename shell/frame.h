// The main frame's logic: start-up, the menus' enabled states, the help panel, options,
// File New. The Qt binding in shell/qt mirrors it into widgets.
#pragma once

#include <string>

namespace zelk {

struct FrameState {
    bool designsaved = true;
    std::string programdir;
    bool helppanelshown = false;
    std::string helplabel[4]; // the help panel as shown
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

} // namespace zelk
