#include "shell/frame.h"

#include "core/commands.h"
#include "core/designstore.h"
#include "core/desktop.h"
#include "schematic/schematicview.h"

namespace zelk {

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

void exitfilter_Click() {
    newfilter_Click();
    frame.ending = true;
}

void frame_close() { exitfilter_Click(); }

void frame_rightclick() { desktop().popupmenu(store.lastslot == -1 ? "design" : "edit"); }

} // namespace zelk
