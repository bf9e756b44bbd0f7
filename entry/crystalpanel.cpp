// The crystal panel of the crystal dipoles: the crystal window opens with the dipole as
// the crystal being edited, and the design crystal it leaves is copied into the dipole.
#include "core/designstore.h"
#include "core/dipoles.h"
#include "entry/crystalsets.h"
#include "entry/dipoleprompt.h"

namespace zelk {

void crystalpanel(int d) {
    crystalparms.editingdipole = true;
    crystalparms.editdipole = d;
    crystalparms_show();
    crystalparms.editingdipole = false;
    const DesignSlot& cur = slot(store.curslot);
    Dipole& dp = dipole(0, d);
    dp.Ls = cur.Ls;
    dp.Cs = cur.Cs;
    dp.Cp = cur.Cp;
    dp.Rs = cur.Rs;
    dp.Qx = cur.Qx;
}

} // namespace zelk
