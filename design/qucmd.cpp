#include "design/qucmd.h"

#include "core/designflow.h"
#include "core/designstore.h"
#include "core/framestate.h"
#include "design/specprompts.h"
#include "schematic/schematicview.h"

namespace zelk {

void qu_Click() {
    sethelp("Enter a value for the unloaded Q of all inductors.",
            "It is assumed that all inductors have the same Qu.  This is a reasonable assumption",
            "for most designs.  If different Qu's are desired for each inductor you can EDIT the",
            "schematic diagram by clicking on the parts list for each dipole containing an inductor.");
    // The prompt's answer is applied as it stands: a cancelled prompt leaves the last Q
    // asked for, which is then given to every inductor.
    getQu();
    DesignSlot& s = slot(store.curslot);
    const int n = s.count();
    const double q = flow.Qdesign;
    for (int d = 1; d <= n; ++d) {
        Dipole& dp = s.dip(d);
        if (dp.L > 0) dp.Qu = q;
        if (dp.La > 0) dp.Qa = q;
    }
    frame.designsaved = false;
    schematicbuild();
}

} // namespace zelk
