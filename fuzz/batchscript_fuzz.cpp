// libFuzzer target: any bytes at all as a batch script. Every line must end in a status
// of 0, 1 or 2 and a clear message, never in a crash, a hang, an exception thrown past
// the runner or a value that is not finite left in a design.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "batchcheck.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!zelk::fuzz::checkbatchscript({reinterpret_cast<const char*>(data), size})) std::abort();
    return 0;
}
