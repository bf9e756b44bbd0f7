// The DESIGN > Crystal Ladder > Dishal LSB and Dishal USB commands: each takes its slot,
// runs the crystal window, asks for order and bandwidth (and ripple), raises a low order
// to the family's least, makes its prototype terms, asks for r0v3 and builds the sideband
// ladder. The two minimum-loss commands take a centre frequency in place of r0v3; no menu
// leads to them.
#pragma once

namespace zelk {

// Order and bandwidth; getCLDC adds the ripple, refused at 3 dB or more. Set
// store.cancelled on a cancel.
void getCLD();
void getCLDC();
// The offset ratio r0v3, with a suggestion (not a refusal) outside 2..10; sets w0.
void getr0v3();
// A centre frequency within the sideband's limits, turned into r0v3.
void getCFlower();
void getCFupper();

// The realisations and the finish: schematic, or for the upper sideband the warning on a
// negative shunt capacitor and File New.
void CLDishalLSB();
void CLDishalUSB();

void dLSBButter_Click();
void DLSBcheby_Click();
void dUSBbutter_Click();
void dUSBcheby_Click();
void dLSBCohn_Click();
void dUSBCohn_Click();

} // namespace zelk
