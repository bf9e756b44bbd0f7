// PDF and PNG of a recording surface without a display: the recorded lines, fills and
// texts replayed onto a cairo surface. cairo is the batch runner's choice because the
// runner links no GUI toolkit, and cairo draws the same three primitives into a PDF
// (vector, with the font embedded) and into an anti-aliased bitmap with a real font.
#pragma once

#include <string>

#include "core/surface.h"

namespace zelk {

// Renders the recording as "pdf" (one page the size of the window at 96 pixels to the
// inch) or "png" (one pixel per pixel) into `bytes`. False, with the reason, when the
// format is unknown or the runner was built without cairo.
bool cairopicture(const RecordingSurface& rec, const std::string& format, std::string& bytes, std::string& why);

} // namespace zelk
