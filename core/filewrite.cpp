#include "core/filewrite.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace zelk {

namespace fs = std::filesystem;

bool writefilesafely(const std::string& path, const std::string& bytes, std::string& why) {
    if (path.empty()) {
        why = "no file name was given";
        return false;
    }
    fs::path target(path);
    std::error_code ec;
    if (fs::is_directory(target, ec)) {
        why = "cannot write " + path + ": it is a folder";
        return false;
    }
    fs::path temp = target.parent_path() / ("." + target.filename().string() + ".writing");
    // stdio rather than a stream: fclose reports the delayed write errors of a full disk.
    std::FILE* f = std::fopen(temp.string().c_str(), "wb");
    if (!f) {
        why = "cannot write " + path + ": " + std::strerror(errno);
        return false;
    }
    bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    int err = ok ? 0 : errno;
    if (std::fflush(f) != 0 && ok) ok = false, err = errno;
    if (std::fclose(f) != 0 && ok) ok = false, err = errno;
    if (!ok) {
        fs::remove(temp, ec);
        why = "cannot write " + path + ": " + std::strerror(err ? err : EIO);
        return false;
    }
    fs::rename(temp, target, ec);
    if (ec) {
        std::error_code ignore;
        fs::remove(temp, ignore);
        why = "cannot write " + path + ": " + ec.message();
        return false;
    }
    return true;
}

} // namespace zelk
