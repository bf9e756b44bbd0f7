// The schematic view: one window per slot drawing the ladder as a row of dipole
// pictures on a ground rail, with the value listing under it. A click on a dipole
// picture selects it and opens the edit pop-up with the entries that fit that dipole.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/designstore.h"
#include "core/window.h"

namespace zelk {

// One element of the window's picture lists: a dipole picture, a connecting wire or a
// transformer frame. Element 0 of each list is the hidden template that gives the size.
struct SchematicElement {
    bool made = false;
    bool visible = false;
    double left = 0, top = 0, width = 0, height = 0;
    bool vertical = false; // palette: false dipolesH, true dipolesV
    int picture = 0;       // index in the palette (the dipole type)
};

enum class ElementList { symbol, connection, transformer };

// The schematic window of one slot: form "schematic" for slot 0, "schematic1" for slot 1.
// Pixels, drawn on its own surface; every picture of the row is also a Picture control
// ("symbol", index = dipole number) so that a click on it reaches dipoleclick, and the
// control "frame" covers the whole client area for clicks beside the pictures.
class SchematicWindow : public Window {
  public:
    SchematicWindow(std::string formname, int slotnumber);

    const int slotnumber;
    std::vector<SchematicElement> symbol, connection, transformer;
    // Line1: the ground rail.
    struct Rail {
        bool set = false;
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    } Line1;
    // The printed text, erased by clear().
    struct Printed {
        double x, y;
        std::string text;
        long colour;
        bool bold;
    };
    std::vector<Printed> printed;
    double cursorx = 0, cursory = 0;
    long textcolour = 0;
    bool textbold = false;
    bool isopen = false; // the slot's window has been set up by schematicload

    // The drawing operations of the view.
    void clear();
    SchematicElement& makeelement(ElementList list, int n);
    void removeelement(ElementList list, int n);
    SchematicElement& element(ElementList list, int n);
    void setcursor(double x, double y);
    void print(const std::string& text);
    void setcolour(long rgb) { textcolour = rgb; }
    void setbold(bool on) { textbold = on; }
    double textwidth(const std::string& text);
    double textheight();
    double windowheight() const { return clientheight; }
    void setrail(double x1, double y1, double x2, double y2);
    // Draws the lists, the rail and the text onto the surface and repaints.
    void render();

    void closebox() override;
    void resized() override;
    void reset() override;

  private:
    std::vector<SchematicElement>& list(ElementList l);
    void setupcontrols();
};

// The schematic window of slot s (0 or 1); another slot raises "Subscript out of range".
SchematicWindow& schematicwindow(int s);

// The process-wide drawing values of the view.
struct SchematicState {
    double xpos = 0;      // running horizontal position of the row
    short ypos = 0;       // top of the row
    float cellsize = 0;   // width of the symbol template in pixels
    std::array<int, MAXSLOT + 1> connectioncount{}, transformercount{};
    double selecteddipole = 0; // dipole last clicked
    bool dipoleselected = false; // from a click on a picture until the edit finishes
    bool skipclear = false;      // the next schematicclear returns at once
    // Norton availability of the dipole last clicked.
    bool stepupok = false, stepdownok = false;
    bool schematicexists = false;
    // Width of the dipolesH palette in twips: the schematic windows open beside it.
    double palettewidth = 1260;
};
inline SchematicState schem;

// Sets up the window of slot curslot when it first opens.
void schematicload(int s);
// Draws the schematic of slot curslot (the last step of every design and edit).
void schematicbuild();
// Clears the display of a slot's schematic; the overload clears slot curslot.
void schematicclear(int slot);
void schematicclear();
// Hides every schematic window (File New).
void hideschematics();
// Resets the schematic state and both schematic windows to program start.
void resetschematic();
// The pointer was released on dipole picture n: select it and open the edit pop-up.
void dipoleclick(int n);

} // namespace zelk
