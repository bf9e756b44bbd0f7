// The elliptic ladder: places the prototype's elements as dipoles of a Pi or T ladder,
// from the source end or the load end, and for odd order bends the ladder at its middle
// dipole (Bartlett's bisection) to reach unequal terminations.
#pragma once

namespace zelk {

// Writes the normalised ladder of slot curslot from elliptic.elemA/elemB; sets dipolecount.
void ellipticrealize();

} // namespace zelk
