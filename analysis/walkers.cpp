#include "analysis/walkers.h"

#include "core/designstore.h"

namespace zelk {

void forwardwalk(int) {}
void backwardwalk(int) {}

} // namespace zelk
