#include "schematic/schematicview.h"

namespace zelk {

void schematicbuild() {}
void schematicclear(int) {}
void hideschematics() {}

} // namespace zelk
