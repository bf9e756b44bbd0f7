// The dipole pictures: a horizontal drawing for every series type and a vertical one for
// every shunt and transformer type, drawn as vectors through the Surface so that one
// drawing serves the schematic, the palettes, the prompts, printing and SVG.
#pragma once

namespace zelk {

class Surface;

// Where the line runs through a horizontal picture, as a fraction of its height: the
// middle of the connection wire that the schematic places at 26/64 of a cell below the
// row's top, so that series pictures, wires and transformer frames meet on one line.
inline constexpr double WIRELEVEL = 26.0 / 64 + 0.5;
// Where the ground rail crosses a vertical picture, as a fraction of its height.
inline constexpr double RAILLEVEL = 0.96;

// Draws the picture of dipole `type` into the box (x, y, w, h) of the surface: from the
// horizontal palette when `vertical` is false (series types, 0 to 29), from the vertical
// palette otherwise (0 is the transformer frame, 30 and up the shunt and transformer
// types). Entries without a network draw nothing, except the palette buttons "DONE"
// (horizontal 8) and "CANCEL" (horizontal 26, vertical 30) and the icon (horizontal 25).
void drawdipolepicture(Surface& s, int type, bool vertical, double x, double y, double w, double h);

// The short wire that joins one cell of the schematic to the next, with the tee down to
// the shunt picture below it.
void drawconnection(Surface& s, double x, double y, double w, double h);

} // namespace zelk
