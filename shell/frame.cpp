#include "shell/frame.h"

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "schematic/schematicview.h"

namespace zelk {

namespace {
const bool registered = registerresetter([] { frame = FrameState{}; });
const bool cmds = registercommand("newfilter", newfilter_Click) && registercommand("exitfilter", exitfilter_Click);
} // namespace

void designframe_load() {
    if (menuitems().empty()) buildmenus();
    frame.designsaved = true;
    // The program folder as the platform finds it; a folder that ends in the designs
    // folder is the program folder's child.
    frame.programdir = desktop().programdir();
    if (frame.programdir.size() >= 8) {
        std::string tail = frame.programdir.substr(frame.programdir.size() - 8);
        for (char& c : tail) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        if (tail == "/DESIGNS" || tail == "\\DESIGNS") frame.programdir.resize(frame.programdir.size() - 8);
    }
    store.lastslot = -1;
    store.curslot = -1;
    updatemenus();
    store.npoints = 512;
    store.curslot = 0;
    startvalues(0);
    readoptions();
    if (menuchecked("helpL")) {
        frame.helppanelshown = true;
        starthelplines();
    } else {
        frame.helppanelshown = false;
    }
}

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
    for (const char* name : {"crystalparms", "designtitle", "dipolesH", "dipolesV", "Getdata", "selfunction", "trouble"})
        if (Window* w = findwindow(name); w && w->loaded) w->unload();
    for (Window* w : windows()) {
        if (!w->loaded) continue;
        std::string lower = w->formname;
        for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (lower.rfind("plot", 0) == 0) w->unload();
    }
    hideschematics();
    clearall();
}

void exitfilter_Click() {
    newfilter_Click();
    frame.ending = true;
}

void frame_close() { exitfilter_Click(); }

void frame_rightclick() { desktop().popupmenu(store.lastslot == -1 ? "design" : "edit"); }

} // namespace zelk
