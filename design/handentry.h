// Hand entry of a schematic: "Enter Design" builds a ladder dipole by dipole from the two
// palettes of dipole pictures, series (dipolesH, control array Hdipole) and shunt
// (dipolesV, control array vdipole). A palette entry's index is the dipole type it adds.
// The same palettes serve the replace command of the schematic's edit pop-up.
#pragma once

#include "core/window.h"

namespace zelk {

// One palette window: a picture per dipole type it offers, and its buttons (DONE and
// CANCEL on the series palette, CANCEL on the shunt palette).
class DipolePalette : public Window {
  public:
    DipolePalette(std::string formname, std::string controlname, bool vertical);
    void reset() override;
    void activate() override;
    // Draws the visible pictures onto the window's surface.
    void render();

    const std::string controlname;
    const bool vertical;

  private:
    void build();
};

inline DipolePalette dipolesH{"dipolesH", "Hdipole", false};
inline DipolePalette dipolesV{"dipolesV", "vdipole", true};

struct HandEntry {
    // The number of the dipole being added: the place the value panel writes to.
    short newdipole = 0;
};
inline HandEntry handentry;

// The palette's cell size in pixels and its columns.
inline constexpr double PALETTECELL = 40;
inline constexpr int PALETTECOLUMNS = 2;

// The UTILITIES command "Enter Design".
void enter_Click();
// The palettes' click routines, entry or replace.
void Hdipole_Click(int i);
void vdipole_Click(int i);
// With entry running: the palette for the next place by the count's parity. Otherwise
// hides the palette that was used.
void showpalette(bool verticalused);
// The last prompt of the entry: a guess at the design frequency.
void getw0();
// Both palettes and the entry state back to program start.
void resethandentry();

} // namespace zelk
