// The schematic view: one window per slot drawing the ladder as a row of dipole
// pictures on a ground rail, with the value listing under it.
#pragma once

namespace zelk {

// Draws the schematic of slot curslot (the last step of every design and edit).
void schematicbuild();
// Clears the display of a slot's schematic.
void schematicclear(int slot);
// Hides every schematic window (File New).
void hideschematics();

} // namespace zelk
