#include "entry/nodalprompt.h"

#include "core/designstore.h"
#include "entry/panel.h"

namespace zelk {

double getM() {
    sethelp("Nodal Capacitor Transform",
            "Stray capacitance between the two tuned circuits can have disasterous effects.",
            "This transform inserts a capacitor at that junction.",
            "By including the stray capacitance as part of that capacitor the effects are eliminated.");
    panelclear();
    panelimage(8);
    panelrow(0, "coefficient =", "0.5", "Coefficient of coupling");
    for (;;) {
        getdata.setnote("Enter a coefficient of coupling less than 1");
        if (!panelshow()) return 0;
        const double k = panelvalue(0);
        if (k < 1) return k;
    }
}

} // namespace zelk
