// The crystal panel of the crystal dipoles. Until the crystal window takes over, the
// design crystal of the current slot is copied into the dipole as it stands.
#include "core/designstore.h"
#include "core/dipoles.h"
#include "entry/dipoleprompt.h"

namespace zelk {

void crystalpanel(int d) {
    const DesignSlot& cur = slot(store.curslot);
    Dipole& dp = dipole(0, d);
    dp.Ls = cur.Ls;
    dp.Cs = cur.Cs;
    dp.Cp = cur.Cp;
    dp.Rs = cur.Rs;
    dp.Qx = cur.Qx;
}

} // namespace zelk
