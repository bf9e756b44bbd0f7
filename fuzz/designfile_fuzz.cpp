// libFuzzer target: any bytes at all as a design file. The reader, the writer on what was
// read, and the two joins must end in a partial read, never in a crash, a hang or a
// value that is not finite.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "designfilecheck.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!zelk::fuzz::checkdesignfile({reinterpret_cast<const char*>(data), size})) std::abort();
    return 0;
}
