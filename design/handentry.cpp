#include "design/handentry.h"

#include <string>

#include "analysis/plotframe.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "core/dipolecatalogue.h"
#include "core/desktop.h"
#include "core/framestate.h"
#include "core/surface.h"
#include "entry/dipoleprompt.h"
#include "entry/panel.h"
#include "schematic/dipolepictures.h"
#include "schematic/schematicview.h"
#include "schematic/structuraledits.h"
#include "schematic/undo.h"

namespace zelk {

namespace {

constexpr int DONEINDEX = 8;
constexpr int HCANCEL = 26;
constexpr int VCANCEL = 30;
constexpr int LOADTYPE = 31;

// The types a palette offers, in order: the series palette 1 to 29 without the icon 25,
// the shunt palette 30 to 73 without the types that have no place in a ladder.
bool offered(int type, bool vertical) {
    if (!vertical) return type >= 1 && type <= 29 && type != 25;
    return type >= 30 && type <= 73 && type != 44 && type != 63 && type != 64;
}

bool isbutton(int type, bool vertical) {
    return vertical ? type == VCANCEL : (type == DONEINDEX || type == HCANCEL);
}

DesignSlot& s0() { return slot(0); }

Control* donebutton() { return dipolesH.find("Hdipole", DONEINDEX); }
void setdone(bool on) {
    if (Control* d = donebutton()) d->visible = on;
}

// A cancelled value panel takes the place back and redraws what stands.
bool promptrefused() {
    if ((store.cancelled || getdata.retryentry) && !structural.replacing) {
        s0().dipolecount -= 1;
        schematicbuild();
        return true;
    }
    return false;
}

void replaceclick(int i, bool vertical) {
    const int cancel = vertical ? VCANCEL : HCANCEL;
    if (i == cancel) {
        showpalette(vertical);
        structural.replacing = false;
        return;
    }
    if (!vertical) setdone(false);
    // The type goes in before the value panel opens (replacedipole), so a cancelled
    // panel leaves the new type with the old values; the palette then goes away.
    replacedipole(i);
    showpalette(vertical);
    schematicbuild();
}

// The end of entry: the last place must hold the load resistor.
void donepath() {
    DesignSlot& s = s0();
    if (s.dip(s.count() - 1).type != LOADTYPE) {
        undo_Click();
        MsgBox("The last dipole must be a resistor representing the load impedance.\n"
               "Use UNDO to remove the last dipole or\n"
               "add dipoles as necessary to have last shunt dipole be a resistor.",
               vbOKOnly, "WARNING");
        return;
    }
    s.designtitle.clear();
    s.dipolecount -= 1;
    dipolesH.hide();
    undoreset();
    getw0();
    s.r0 = s.dip(1).R;
    const double w0 = s.w0;
    plotshared.plotfreq1 = (w0 / 3.141592654) / 20;
    plotshared.plotfreq2 = (w0 / 3.141592654) * 5;
    plotshared.plotdb1 = 0;
    plotshared.plotdb2 = -60;
    // The phase and impedance limits offered by their prompts.
    plotdefaults.defaultangle1 = -180;
    plotdefaults.defaultangle2 = 180;
    plotdefaults.defaultz1 = s.dip(1).R / 10;
    plotdefaults.defaultz2 = s.dip(s.count()).R * 10;
    store.entering = false;
    schematicbuild();
    updatemenus();
}

} // namespace

DipolePalette::DipolePalette(std::string formname, std::string cname, bool vert)
    : Window(std::move(formname), vert ? "Shunt dipoles" : "Series dipoles"), controlname(std::move(cname)),
      vertical(vert) {
    build();
}

void DipolePalette::reset() {
    controls.clear();
    loaded = visible = false;
    surface = nullptr; // the desktop that drew it may be gone
    build();
}

void DipolePalette::build() {
    draws = true;
    unit = 1;
    int place = 0;
    for (int t = 0; t <= 73; ++t) {
        if (!offered(t, vertical)) continue;
        // A button takes a row of its own, so that its caption fits.
        const bool button = isbutton(t, vertical);
        if (button && place % PALETTECOLUMNS != 0) place += PALETTECOLUMNS - place % PALETTECOLUMNS;
        const double x = 4 + (place % PALETTECOLUMNS) * PALETTECELL;
        const double y = 4 + (place / PALETTECOLUMNS) * PALETTECELL;
        place += button ? PALETTECOLUMNS : 1;
        Control& c = add(button ? ControlKind::Button : ControlKind::Picture, controlname, t);
        c.left = x;
        c.top = y;
        c.width = (button ? PALETTECOLUMNS * PALETTECELL : PALETTECELL) - 2;
        c.height = PALETTECELL - 2;
        if (t == DONEINDEX) {
            c.caption = "DONE";
            c.tooltip = "Finished entering schematic";
        } else if (t == HCANCEL) {
            c.caption = "CANCEL";
            c.tooltip = "Abort entering schematic";
        } else if (t == VCANCEL) {
            c.caption = "CANCEL";
            c.tooltip = "Abort entering Schematic";
        } else {
            c.tooltip = dipoletype(t).name;
        }
        const bool v = vertical;
        c.onclick = [v](int i) { v ? vdipole_Click(i) : Hdipole_Click(i); };
    }
    const int rows = (place + PALETTECOLUMNS - 1) / PALETTECOLUMNS;
    clientwidth = 8 + PALETTECOLUMNS * PALETTECELL;
    clientheight = 8 + rows * PALETTECELL;
    left = 0;
    top = 0;
}

void DipolePalette::activate() { render(); }

void DipolePalette::render() {
    if (!surface) return;
    Surface& s = *surface;
    s.cls();
    s.setcolour(0);
    for (auto& up : controls) {
        const Control& c = *up;
        if (c.kind != ControlKind::Picture || !c.visible) continue;
        drawdipolepicture(s, c.index, vertical, c.left, c.top, c.width, c.height);
    }
    refresh();
}

void showpalette(bool verticalused) {
    if (store.entering) {
        if (s0().count() % 2 == 0) {
            dipolesV.hide();
            dipolesH.show();
            setdone(true);
        } else {
            dipolesH.hide();
            dipolesV.show();
        }
        return;
    }
    (verticalused ? static_cast<Window&>(dipolesV) : dipolesH).hide();
}

void enter_Click() {
    store.lastslot = static_cast<short>(store.lastslot + 1);
    store.curslot = store.lastslot;
    DesignSlot& s = slot(store.curslot);
    s.title = "ENTERED DESIGN";
    s.designtitle = "Entered Design";
    s.code = "ENT";
    store.entering = true;
    structural.replacing = false;

    dipolesH.show();
    schematicload(store.curslot);
    SchematicWindow& w = schematicwindow(store.curslot);
    w.caption = s.title;
    w.show();
    schem.xpos = 40;
    schem.ypos = 30;

    sethelp("Begin by selecting a series resistor which represents the input impedance of the filter.",
            "If you decide to terminate schematic entry before completion, click CANCEL.",
            "When you have completed entry of the entire schematic, click DONE.", "");
    for (int t : {57, 58})
        if (Control* c = dipolesV.find("vdipole", t)) c->visible = false;
}

namespace {

// The start of a palette click: a replace takes the click over, outside entry nothing
// happens, CANCEL ends the entry; any other picture clears the schematic, takes the
// undo point and adds a place. True when the click goes on to prompt for the place.
bool paletteclick(int i, bool shunt, int cancel) {
    if (structural.replacing) {
        replaceclick(i, shunt);
        return false;
    }
    if (!store.entering) return false;
    setdone(true);
    if (i == cancel) {
        newfilter_Click();
        return false;
    }
    schematicclear();
    undopush();
    s0().dipolecount += 1;
    return true;
}

} // namespace

void Hdipole_Click(int i) {
    if (!paletteclick(i, false, HCANCEL)) return;
    DesignSlot& s = s0();
    if (s.count() == 1 && i != 1) {
        MsgBox("The first dipole must be a resistor representing the source impedance.", vbOKOnly,
               "WARNING");
        s.dipolecount -= 1;
        return;
    }
    handentry.newdipole = static_cast<short>(s.count());
    dipoleprompt(handentry.newdipole, i);
    if (promptrefused()) return;
    if (i == DONEINDEX) {
        donepath();
        return;
    }
    s.dip(handentry.newdipole).type = static_cast<short>(i);
    dipolesH.hide();
    schematicbuild();
    dipolesV.show();
    sethelp("Select a shunt dipole.  The last shunt dipole must be a resistor representing the load impedance of the filter.",
            "If there is none, select select the BLANK one, an open circuit.",
            "This allows you to connect two dipoles in series without an intermediate shunt dipole.",
            "If you decide to terminate schematic entry before completion, click CANCEL.");
}

void vdipole_Click(int i) {
    if (!paletteclick(i, true, VCANCEL)) return;
    DesignSlot& s = s0();
    handentry.newdipole = static_cast<short>(s.count());
    dipoleprompt(handentry.newdipole, i);
    if (promptrefused()) return;
    sethelp("IF you have completed entry, click Done.", "Else select a series dipole.",
            "If there is none, select type ______.  This allows you to connect two dipoles in parallel without an intermediate series dipole.",
            "If you decide to terminate schematic entry before completion, click CANCEL.");
    dipolesH.show();
    s.dip(handentry.newdipole).type = static_cast<short>(i);
    dipolesV.hide();
    schematicbuild();
}

void getw0() {
    panelclear();
    panelplotbuttons(false);
    sethelp("Enter your best guess as to the design frequency of this filter.",
            "The program will use it to establish default plotting parameters.", "", "");
    getdata.setnote("Note: Enter guess at design frequency, default is 1 radian per second");
    panelrow(0, "Design F", ".159155", "Design frequency guess");
    do {
        panelshow();
    } while (getdata.retryentry && !store.cancelled);
    if (store.cancelled) return;
    const double f = panelvalue(0);
    DesignSlot& s = s0();
    s.w0 = (f + f) * 3.141592654;
    s.w1 = s.w2 = s.w3 = s.w4 = 0;
    s.r0 = s.dip(1).R;
}

void resethandentry() {
    dipolesH.reset();
    dipolesV.reset();
    handentry = HandEntry{};
}

} // namespace zelk
