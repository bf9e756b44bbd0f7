#include "entry/panel.h"

namespace zelk {

// Hints on focus and on label click, the default tables, the picture presses.
void hintonfocus(int row) {
    if (!getdata.notelock) getdata.currentrow = static_cast<short>(row);
}
void Label2_Click(int) {}
void restore_Click() {}
void set_Click() {}
void getdataimage_Click() {}
void selectT_Click() {}

} // namespace zelk
