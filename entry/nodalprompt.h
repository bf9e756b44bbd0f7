// The coefficient prompt of the nodal capacitor transform, shared by the crystal ladders
// and the dipole transforms.
#pragma once

namespace zelk {

// Asks for a coefficient of coupling below 1 (default 0.5), again while the value typed is
// 1 or more. Returns it; a cancel sets store.cancelled and returns 0.
double getM();

} // namespace zelk
