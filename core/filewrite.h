// Writing a whole file so that a failure never leaves a half-written or truncated file
// behind: the bytes go to a temporary file beside the target, which then replaces the
// target by a rename. An older file of that name stays as it was when anything fails.
#pragma once

#include <string>

namespace zelk {

// Writes `bytes` to `path`. False, with a reason fit for a message, when the folder is
// missing or read-only, the disk is full, or the rename is refused.
bool writefilesafely(const std::string& path, const std::string& bytes, std::string& why);

} // namespace zelk
