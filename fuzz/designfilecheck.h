// One run of the design file reader, the writer on what was read and the two joins on
// any bytes, shared by the libFuzzer target and the corpus replay of the tests. Returns
// false when a part value that is not finite was left standing.
#pragma once

#include <cmath>
#include <string>
#include <string_view>

#include "core/designstore.h"
#include "design/designfiles.h"

namespace zelk::fuzz {

inline bool allfinite(int s) {
    const DesignSlot& d = slot(s);
    const Number* numbers[] = {&d.order, &d.Astop, &d.Apass, &d.Zin, &d.Zout, &d.r0,
                               &d.w0,    &d.w1,    &d.w2,    &d.w3,  &d.w4,   &d.bw,
                               &store.wA, &d.Ls,   &d.Cs,    &d.Cp,  &d.Qx,   &d.Rs,
                               &d.Fs,    &d.Fp,    &d.Fbw,   &d.dipolecount};
    for (const Number* n : numbers)
        if (!std::isfinite(n->value())) return false;
    for (int k = 0; k <= MAXDIPOLE; ++k) {
        const Dipole& p = d.dip(k);
        for (double v : {p.R, p.C, p.L, p.Qu, p.K, p.Lform, p.Lawg, p.Lturns, p.Llength, p.Ca, p.La,
                         p.Qa, p.Kspare, p.Laform, p.Laawg, p.Laturns, p.Lalength, p.Ls, p.Cs, p.Cp,
                         p.Rs, p.Qx})
            if (!std::isfinite(v)) return false;
    }
    return true;
}

inline bool checkdesignfile(std::string_view text) {
    store = DesignStore{};
    store.curslot = 0;
    store.lastslot = 0;
    bool ok = true;
    // Open: the file into slot 0, then what was read written out and read again.
    readdesign(text, 0);
    ok = ok && allfinite(0);
    std::string written = designfiletext(0);
    readdesign(written, 1);
    ok = ok && allfinite(1);
    // The joins, onto whatever slot 0 now holds (its count may be anything the file gave).
    appenddesign(text);
    ok = ok && allfinite(0);
    insertdesign(text);
    ok = ok && allfinite(0);
    (void)designfiletext(0);
    return ok;
}

} // namespace zelk::fuzz
