#include "entry/panel.h"

namespace zelk {

// The keypad calculator, the tab search and the key captions.
void keypad_Click(int) {}
void tabdataindex() {}
void keypadsetup(Getdata&) {}

} // namespace zelk
