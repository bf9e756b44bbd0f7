// One run of the batch runner on any bytes as a script, shared by the libFuzzer target
// and the replay of the tests. The script runs in a scratch folder of its own; a script
// that names a path outside it (a '/' or '\' anywhere) is not run, so that nothing the
// fuzzer makes up can write beside the sources. Returns false when the run ended in a
// status other than 0, 1 or 2, or left a value that is not finite in any slot.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>

#include "batch/runner.h"
#include "fuzz/designfilecheck.h"

namespace zelk::fuzz {

// The scratch folder of this process, made on first use; each run works in it.
inline void enterscratch() {
    namespace fs = std::filesystem;
    static const fs::path dir = [] {
        fs::path d = fs::temp_directory_path() / ("zelk-batch-fuzz-" + std::to_string(::getpid()));
        fs::create_directories(d);
        return d;
    }();
    fs::current_path(dir);
}

inline bool checkbatchscript(std::string_view text) {
    if (text.find_first_of("/\\") != std::string_view::npos) return true;
    enterscratch();
    std::ostringstream out, err;
    int status;
    {
        BatchRunner runner(out, err);
        runner.desk.userdatadir_ = "user";
#ifdef ZELK_FUZZ_PROGRAMDIR
        if (runner.desk.programdir_.empty()) runner.desk.programdir_ = ZELK_FUZZ_PROGRAMDIR;
#endif
        status = runner.runtext(std::string(text));
    }
    if (status < 0 || status > 2) return false;
    for (int s = 0; s <= MAXSLOT; ++s)
        if (!allfinite(s)) return false;
    return true;
}

} // namespace zelk::fuzz
