// zelkfilter-batch: the console twin of the desktop application.
//   zelkfilter-batch [--settings FILE] SCRIPT    (SCRIPT may be - for standard input)
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "batch/runner.h"

namespace fs = std::filesystem;

namespace {
// The folder that holds tables/: beside the executable in a build tree, or
// <prefix>/share/zelkfilter when installed.
std::string findprogramdir() {
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        fs::path dir = exe.parent_path();
        for (fs::path p : {dir, dir.parent_path(), dir.parent_path() / "share" / "zelkfilter"})
            if (fs::exists(p / "tables", ec)) return p.string();
    }
    return fs::current_path(ec).string();
}

std::string finduserdir() {
    if (const char* x = std::getenv("XDG_DATA_HOME"); x && *x) return (fs::path(x) / "zelkfilter").string();
    if (const char* h = std::getenv("HOME"); h && *h)
        return (fs::path(h) / ".local" / "share" / "zelkfilter").string();
    return (fs::temp_directory_path() / "zelkfilter").string();
}
} // namespace

int main(int argc, char** argv) {
    std::string settings, script;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--settings" && i + 1 < argc) settings = argv[++i];
        else if (a == "--help" || a == "-h") {
            std::cout << "usage: zelkfilter-batch [--settings FILE] SCRIPT|-\n";
            return 0;
        } else if (script.empty()) script = a;
        else {
            std::cerr << "zelkfilter-batch: one script at a time\n";
            return 1;
        }
    }
    if (script.empty()) {
        std::cerr << "usage: zelkfilter-batch [--settings FILE] SCRIPT|-\n";
        return 1;
    }
    zelk::BatchRunner runner(std::cout, std::cerr);
    if (runner.desk.programdir_.empty()) runner.desk.programdir_ = findprogramdir();
    if (runner.desk.userdatadir_.empty()) runner.desk.userdatadir_ = finduserdir();
    if (!settings.empty()) runner.desk.loadsettings(settings);
    if (script == "-") return runner.run(std::cin);
    // A folder opens as a stream on some systems and then reads as empty: say so rather
    // than run nothing and report success.
    std::error_code ec;
    if (fs::is_directory(script, ec)) {
        std::cerr << "zelkfilter-batch: cannot read " << script << ": "
                  << std::make_error_code(std::errc::is_a_directory).message() << '\n';
        return 1;
    }
    std::ifstream in(script);
    if (!in) {
        std::cerr << "zelkfilter-batch: cannot read " << script << '\n';
        return 1;
    }
    return runner.run(in);
}
