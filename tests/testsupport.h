// Test support: a batch run in-process on the scripted desktop, with its output.
#pragma once

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "batch/runner.h"
#include "core/commands.h"

namespace zelk::test {

// A scratch folder of this test process under the system's temporary folder: test
// processes run side by side, and each must have files of its own. `empty`: nothing left
// in it from an earlier use.
inline std::filesystem::path scratch(const std::string& name, bool empty = false) {
    auto dir = std::filesystem::temp_directory_path() / ("zelk-" + name + "-" + std::to_string(::getpid()));
    if (empty) std::filesystem::remove_all(dir);
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
    // Runs script text: success when it ends with status 0, else the status and the
    // runner's diagnostics.
    ::testing::AssertionResult ok(const std::string& script) {
        const int status = run(script);
        if (status == 0) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "exit status " << status << ": " << err.str();
    }
    // Output so far, and cleared.
    std::string take() {
        std::string s = out.str();
        out.str("");
        return s;
    }
};

// A fifth-order Butterworth low-pass, Pi, 10 MHz cut-off, 15 MHz stop edge, 50 ohms,
// lossless, made through the selector and the prompts.
inline const std::string lowpass = "> selfunction: selection(0) \"Accept design\"\n"
                                   "> Getdata: 10M 15M 3 \"\" 5 50 50\n> Getdata: Lossless\n"
                                   ">? designtitle: Command1\nbutterworth\n";

// The points of a drawn plot as `dump curve` prints them.
struct CurvePoint {
    int slot, index;
    double x, value;
};
inline std::vector<CurvePoint> curve(Session& s, const std::string& plot) {
    s.take();
    EXPECT_EQ(s.run("dump curve " + plot + "\n"), 0) << s.err.str();
    std::istringstream in(s.take());
    std::vector<CurvePoint> points;
    for (CurvePoint p; in >> p.slot >> p.index >> p.x >> p.value;) points.push_back(p);
    return points;
}

// The schematic's view options as the menu sets them.
inline void options(bool partslist, bool sfp, bool tuning = false, bool coil = false, bool nano = false) {
    setchecked("partslist", partslist);
    setchecked("sfp", sfp);
    setchecked("showtuning", tuning);
    setchecked("showcoil", coil);
    setchecked("nano", nano);
}

} // namespace zelk::test
