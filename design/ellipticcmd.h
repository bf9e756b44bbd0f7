// The elliptic (Cauer) menu command.
#pragma once

namespace zelk {

void elliptic_Click();
// The elliptic prototype of slot curslot: its order, then for an even order the
// terminate window, then the elements.
void ellipticproto();

} // namespace zelk
