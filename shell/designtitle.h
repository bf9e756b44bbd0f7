// The design title window: asks the user for a name of the design (opened by the
// schematic build when the slot's designtitle is empty).
#pragma once

namespace zelk {

// Shows the design title window modally for slot curslot.
void designtitle_show();

} // namespace zelk
