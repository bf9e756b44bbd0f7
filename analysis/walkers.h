// The walk through a ladder at one frequency: forwardwalk from source to load gives the
// voltage ratio, phase and the impedance seen from the load; backwardwalk from load to
// source gives the input impedance. The caller sets store.wA (rad/s) first.
#pragma once

#include "core/dipoles.h"

namespace zelk {


void forwardwalk(int slot);
void backwardwalk(int slot);

} // namespace zelk
