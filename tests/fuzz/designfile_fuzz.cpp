// libFuzzer target: any bytes at all as a design file. The reader, the writer on what was
// read, and the two joins must end in a partial read, never in a crash, a hang or a
// value that is not finite.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/designstore.h"
#include "entry/designfiles.h"

using namespace zelk;

namespace {

void checkfinite(int s) {
    const DesignSlot& d = slot(s);
    const Number* numbers[] = {&d.order, &d.Astop, &d.Apass, &d.Zin, &d.Zout, &d.r0,
                               &d.w0,    &d.w1,    &d.w2,    &d.w3,  &d.w4,   &d.bw,
                               &store.wA, &d.Ls,   &d.Cs,    &d.Cp,  &d.Qx,   &d.Rs,
                               &d.Fs,    &d.Fp,    &d.Fbw,   &d.dipolecount};
    for (const Number* n : numbers)
        if (!std::isfinite(n->value())) std::abort();
    for (int k = 0; k <= MAXDIPOLE; ++k) {
        const Dipole& p = d.dip(k);
        for (double v : {p.R, p.C, p.L, p.Qu, p.K, p.Lform, p.Lawg, p.Lturns, p.Llength, p.Ca, p.La,
                         p.Qa, p.Kspare, p.Laform, p.Laawg, p.Laturns, p.Lalength, p.Ls, p.Cs, p.Cp,
                         p.Rs, p.Qx})
            if (!std::isfinite(v)) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    store = DesignStore{};
    store.curslot = 0;
    store.lastslot = 0;

    // Open: the file into slot 0, then what was read written out and read again.
    readdesign(text, 0);
    checkfinite(0);
    std::string written = designfiletext(0);
    readdesign(written, 1);
    checkfinite(1);

    // The joins, onto whatever slot 0 now holds (its count may be anything the file gave).
    appenddesign(text);
    checkfinite(0);
    insertdesign(text);
    checkfinite(0);
    (void)designfiletext(0);
    return 0;
}
