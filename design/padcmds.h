// The attenuator pad commands.
#pragma once

#include "synthesis/pads.h"

namespace zelk {

// The prompts: terminations into pad.padZin / pad.padZout; the attenuation, not below
// `minimum`, into pad.padattn.
void getpad();
void getattn(double minimum);

// The minimum search on the dipoles of slot 0; returns false (after a message, with the
// dipoles as they were) when no attenuation up to the search's limit gives a positive
// last resistor.
bool padminimum(bool tpad);

// The menu commands.
void attnp_Click();
void attnt_Click();

} // namespace zelk
