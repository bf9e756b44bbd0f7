#include "shell/frame.h"

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "schematic/schematicview.h"

namespace zelk {

namespace {
const bool registered = registerresetter([] { frame = FrameState{}; });
const bool cmd = registercommand("newfilter", newfilter_Click);
} // namespace

void designframe_load() {
    frame.designsaved = true;
    frame.programdir = desktop().programdir();
    store.lastslot = -1;
    store.curslot = -1;
    updatemenus();
    store.npoints = 512;
    store.curslot = 0;
    startvalues(0);
}

void updatemenus() {}

void showhelplines() {
    if (!menuchecked("helpL")) return;
    frame.helplabel[0] = store.help1;
    frame.helplabel[1] = store.help2;
    frame.helplabel[2] = store.help3;
    frame.helplabel[3] = store.help4;
    desktop().doevents();
}

void starthelplines() {
    sethelp("Select a filter response.",
            "Select low-pass, high-pass, band-pass or band-reject and a schematic configuration",
            "Enter the design parameters requested.", "The default values will create a sample design");
}

void newfilter_Click() {
    frame.designsaved = true;
    for (const char* name : {"crystalparms", "designtitle", "dipolesH", "dipolesV", "Getdata", "selfunction"})
        if (Window* w = findwindow(name); w && w->loaded) w->unload();
    for (Window* w : windows())
        if (w->loaded && w->formname.rfind("plot", 0) == 0) w->unload();
    hideschematics();
    clearall();
}

} // namespace zelk
