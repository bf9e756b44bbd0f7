// UTILITIES "Set Qu of all L's": one unloaded Q for every inductor of the design.
#pragma once

namespace zelk {

void qu_Click();

} // namespace zelk
