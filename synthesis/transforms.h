// Ladder realisation of the list g and the frequency transforms that turn a normalised
// low-pass ladder (1 rad/s, 1 ohm) into the real filter in henries and farads.
#pragma once

namespace zelk {

// Lays g[1..order] out as a Pi or T low-pass ladder between Zin and Zout; sets r0.
void schematicrealize();
// Lays the prototype g[1..last] of slot curslot out as a ladder: alternating shunt
// capacitors and series inductors from dipole 2 (cfirst) or after an open shunt place,
// the list read forwards or from its end, a wire place before the load when wireend,
// then the load resistor zout; sets dipolecount.
void layladder(int last, bool cfirst, bool forwards, bool wireend, double zout);
void LPtoLP();
void LPtoHP();
void LPtoBP();
void LPtoBR();

// The centre frequency w0, the normalised stop-band ratio wA and, for band kinds,
// Qratio, from the corners of slot curslot by functionkind.
void stopbandratio();
// LPtoLP, LPtoHP, LPtoBP or LPtoBR by functionkind.
void scaletransform();

} // namespace zelk
