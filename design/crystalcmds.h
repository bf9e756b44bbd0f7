// The DESIGN > Crystal Ladder > Classic commands: each takes its slot, runs the crystal
// window, asks for order and bandwidth (getCL), makes its prototype terms and builds the
// ladder through CLnormal, which asks for the coupling and the terminations (getZ).
#pragma once

#include <string>

namespace zelk {

// What every crystal command does first: takes the next slot, writes its code and title,
// shows the crystal window and the command's sketch.
void takecrystalslot(const std::string& code, const std::string& title, int picture);

// Order, bandwidth (and ripple for a Chebyshev code). Sets store.cancelled on a cancel.
void getCL();
// The coupling row (a click on the picture cycles the mode) and the terminations.
void getZ();
// The Q test, the ladder, trimmers and taps, then the schematic.
void CLnormal();

void BCL_Click();
void CCL_Click();
void MCL_Click();
void BesselCL_Click();
void GaussianCL_Click();
void legendreCL_Click();
void LP05CL_Click();
void LP5CL_Click();
void TG6_Click();
void TG12_Click();

} // namespace zelk
