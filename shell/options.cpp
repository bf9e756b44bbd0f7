// The Options menu: check marks kept in the settings store (application "filter",
// section "options", "1" on and "0" off, a missing key off), read at start.
#include <string>

#include "analysis/plots.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "schematic/schematicview.h"
#include "shell/frame.h"

namespace zelk {

namespace {

const OptionItem* optionfor(const std::string& item) {
    for (const OptionItem& o : optionitems())
        if (item == o.item) return &o;
    return nullptr;
}

} // namespace

// The help panel comes and goes with helpL; the schematic of slot 0 takes the height
// that is left.
void helpL_Click() {
    toggleoption("helpL");
    bool on = menuchecked("helpL");
    frame.helppanelshown = on;
    if (Window* w = findwindow("schematic")) {
        double h = frame.frameheight * 0.9;
        if (on) h -= frame.helppanelheight;
        w->clientheight = h;
    }
    if (on) showhelplines();
    if (store.lastslot >= 0) schematicbuild();
}

// A display option changes what the schematic shows: rebuild it when one is open.
void displayoption_Click(const char* item) {
    toggleoption(item);
    if (store.lastslot >= 0) schematicbuild();
}

// The exact curves come and go on the impulse and step plots that are open, redrawn
// with the limits they have.
void exacttime_Click() {
    toggleoption("exacttime");
    struct Fixed { // a fault in the redraw leaves the scale free again
        Fixed() { plotshared.fixedscale = true; }
        ~Fixed() { plotshared.fixedscale = false; }
    };
    for (PlotForm* p : {&PLOTIR, &PLOTSR}) {
        if (!p->loaded || !p->shown) continue;
        Fixed fixed;
        p->redraw();
    }
}

void readoptions() {
    for (const OptionItem& o : optionitems())
        setchecked(o.item, desktop().getsetting("filter", "options", o.key, "0") == "1");
}

void toggleoption(const std::string& item) {
    const OptionItem* o = optionfor(item);
    if (!o) return;
    bool on = !menuchecked(item);
    setchecked(item, on);
    desktop().savesetting("filter", "options", o->key, on ? "1" : "0");
}

} // namespace zelk
