// The value panel of one dipole: the rows its type asks for, with their defaults.
#pragma once

namespace zelk {

// Puts the data panel up for one dipole of slot 0 and stores the answers.
void dipoleprompt(int d, int type);
// The crystal panel of a crystal dipole: copies the design crystal of slot curslot into
// dipole d of slot 0.
void crystalpanel(int d);

} // namespace zelk
