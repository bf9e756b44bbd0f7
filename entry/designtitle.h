// The design title window: asks the user for a name of the design (opened by the
// schematic build when the slot's designtitle is empty).
#pragma once

#include "core/window.h"

namespace zelk {

class DesignTitle : public Window {
  public:
    DesignTitle();
    void reset() override;
    // Text1: the title, starting "(date) title" all selected; Command1 stores it.
    void Command1_Click();
    // True while the window is up.
    bool isup = false;

  private:
    void build();
};
inline DesignTitle designtitlewindow;

// Shows the design title window modally for slot curslot.
void designtitle_show();

} // namespace zelk
