#include "shell/pictures.h"

#include "core/surface.h"

namespace zelk {

void drawpanelimage(Surface&, int, double, double, double, double) {}
void drawconfiguration(Surface&, int, double, double, double, double) {}

} // namespace zelk
