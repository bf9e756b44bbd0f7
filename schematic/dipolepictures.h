// The dipole pictures: a horizontal drawing for every series type and a vertical one for
// every shunt and transformer type, drawn as vectors through the Surface so that one
// drawing serves the schematic, the palettes, the prompts, printing and SVG.
#pragma once

namespace zelk {

class Surface;

// Draws the picture of dipole `type` into the box (x, y, w, h) of the surface: the
// horizontal picture for types below 30 (and 0..29 of the horizontal palette), the
// vertical one for 31 and above; `vertical` picks the vertical palette for index 0 and 30.
void drawdipolepicture(Surface& s, int type, bool vertical, double x, double y, double w, double h);

} // namespace zelk
