// The pictures of the data panel's store (response sketches of the design prompts)
// and the function selector's configuration pictures, drawn as vectors on a Surface.
#pragma once

namespace zelk {

class Surface;

// Panel picture `index` (the response sketches and diagrams the prompts name).
void drawpanelimage(Surface& s, int index, double x, double y, double w, double h);
// Selector configuration picture `picture` (1 to 21).
void drawconfiguration(Surface& s, int picture, double x, double y, double w, double h);

} // namespace zelk
