// The value panel of one dipole: the rows its type asks for, with their defaults.
#pragma once

#include <string>

namespace zelk {

// Puts the data panel up for one dipole of slot 0 and stores the answers. A caller's
// note (the split capacitor's request) goes up with the rows.
void dipoleprompt(int d, int type, const std::string& note = {});
// The crystal panel of a crystal dipole: copies the design crystal of slot curslot into
// dipole d of slot 0.
void crystalpanel(int d);

} // namespace zelk
