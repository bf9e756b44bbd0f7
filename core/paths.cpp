#include "core/paths.h"

#include <filesystem>

#include "core/desktop.h"

namespace zelk {

namespace fs = std::filesystem;

namespace {
std::string relative(const std::string& literal) {
    std::string r = literal;
    for (char& c : r)
        if (c == '\\') c = '/';
    while (!r.empty() && r.front() == '/') r.erase(r.begin());
    return r;
}
} // namespace

std::string mappath(const std::string& literal, bool forwriting) {
    std::string rel = relative(literal);
    fs::path user = fs::path(desktop().userdatadir()) / rel;
    if (forwriting) {
        std::error_code ec;
        fs::create_directories(user.parent_path(), ec);
        return user.string();
    }
    std::error_code ec;
    if (fs::exists(user, ec)) return user.string();
    return (fs::path(desktop().programdir()) / rel).string();
}

std::string designsdir() {
    fs::path p = fs::path(desktop().userdatadir()) / "designs";
    std::error_code ec;
    fs::create_directories(p, ec);
    return p.string();
}

} // namespace zelk
