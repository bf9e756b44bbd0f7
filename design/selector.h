// The function selector `selfunction`: the user picks the kind of filter (low-pass,
// high-pass, band-pass, band-reject) and steps through the schematic configurations
// of that kind; Accept turns the picture into `configuration`.
#pragma once

#include "core/window.h"

namespace zelk {

class SelFunction : public Window {
  public:
    SelFunction();
    void reset() override;
    void activate() override;

    // Controls: selection(0..8) buttons, picture (the configuration picture).
    Control& selection(int i) { return ctl("selection", i); }

    int picturenumber = 1; // the configuration picture shown
    int firstpicture = 1;  // first picture of the current set
    int lastpicture = 2;   // last picture of the current set

    void selection_Click(int i);
    void picture_Click();
    // Draws the picture shown onto the window's surface, when it has one.
    void drawpicture();

  private:
    void build();
};

inline SelFunction selfunction;

// The configuration that Accept takes from a picture number ("Pi", "T", "SPPi", "SPT").
const char* pictureconfiguration(int picture);

} // namespace zelk
