// The auto transformer: a tap on the inductor of a tank raises its inductance (the tank
// keeps its immittance with a smaller capacitor), or a tap on a shunt inductor or tank
// changes the impedance of every dipole after it. The dipole's K holds the tap ratio.
#pragma once

namespace zelk {

// EDIT "Auto Transformer" on the selected dipole (a series tank, a shunt inductor or a
// shunt tank).
void auto_Click();

} // namespace zelk
