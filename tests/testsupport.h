// Test support: a batch run in-process on the scripted desktop, with its output.
#pragma once

#include <filesystem>
#include <sstream>
#include <string>

#include <unistd.h>

#include "batch/runner.h"
#include "core/commands.h"

namespace zelk::test {

// A scratch folder of this test process under the system's temporary folder: test
// processes run side by side, and each must have files of its own.
inline std::filesystem::path scratch(const std::string& name) {
    auto dir = std::filesystem::temp_directory_path() / ("zelk-" + name + "-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    return dir;
}

// A fresh program (every table reset, the frame started) on a scripted desktop whose
// program folder is the build tree and whose user folder is a scratch folder.
struct Session {
    std::ostringstream out, err;
    BatchRunner runner{out, err};
    Session() {
        runner.desk.programdir_ = ZELK_BINARY_DIR;
        auto dir = test::scratch("user");
        std::filesystem::create_directories(dir);
        runner.desk.userdatadir_ = dir.string();
    }
    // Runs script text; returns the exit status.
    int run(const std::string& script) { return runner.runtext(script); }
    // Output so far, and cleared.
    std::string take() {
        std::string s = out.str();
        out.str("");
        return s;
    }
};

// The schematic's view options as the menu sets them.
inline void options(bool partslist, bool sfp, bool tuning = false, bool coil = false, bool nano = false) {
    setchecked("partslist", partslist);
    setchecked("sfp", sfp);
    setchecked("showtuning", tuning);
    setchecked("showcoil", coil);
    setchecked("nano", nano);
}

} // namespace zelk::test
