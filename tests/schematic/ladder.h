// Test ladders written straight into the store, and a schematic built from them on the
// scripted desktop.
#pragma once

#include <initializer_list>
#include <string>

#include "core/commands.h"
#include "core/designstore.h"
#include "schematic/schematicview.h"
#include "testsupport.h"

namespace zelk::test {

struct Part {
    int type;
    double R = 0, C = 0, L = 0, Ca = 0, La = 0;
};

// Fills slot 0 as one open design with the given dipoles, code and title.
inline DesignSlot& ladder(std::initializer_list<Part> parts, const std::string& code = "BLP",
                          const std::string& designtitle = "Test") {
    store.lastslot = 0;
    store.curslot = 0;
    DesignSlot& s = slot(0);
    s.code = code;
    s.title = "Test filter";
    s.designtitle = designtitle;
    int n = 0;
    for (const Part& p : parts) {
        Dipole& d = s.dip(++n);
        d = Dipole{};
        d.type = static_cast<short>(p.type);
        d.R = p.R;
        d.C = p.C;
        d.L = p.L;
        d.Ca = p.Ca;
        d.La = p.La;
    }
    s.dipolecount = n;
    return s;
}

inline void options(bool partslist, bool sfp, bool tuning = false, bool coil = false, bool nano = false) {
    setchecked("partslist", partslist);
    setchecked("sfp", sfp);
    setchecked("showtuning", tuning);
    setchecked("showcoil", coil);
    setchecked("nano", nano);
}

} // namespace zelk::test
