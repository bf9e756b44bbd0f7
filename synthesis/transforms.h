// Ladder realisation of the list g and the frequency transforms that turn a normalised
// low-pass ladder (1 rad/s, 1 ohm) into the real filter in henries and farads.
#pragma once

namespace zelk {

// Lays g[1..order] out as a Pi or T low-pass ladder between Zin and Zout; sets r0.
void schematicrealize();
void LPtoLP();
void LPtoHP();
void LPtoBP();
void LPtoBR();

} // namespace zelk
