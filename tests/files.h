// Files read by the tests on their own, without the program's readers.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace zelk::test {

// A file's bytes, read whole.
inline std::string readfile(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// The numbers of each line of a prototype table file of the source tree: order, ratio,
// then g1, g2, ...
inline std::vector<std::vector<double>> tablelines(const std::string& file) {
    std::istringstream in(readfile(std::string(ZELK_SOURCE_DIR) + "/tables/" + file));
    std::vector<std::vector<double>> out;
    for (std::string line; std::getline(in, line);) {
        std::vector<double> v;
        std::istringstream ss(line);
        for (std::string t; std::getline(ss, t, ',');) v.push_back(std::stod(t));
        if (!v.empty()) out.push_back(v);
    }
    return out;
}

} // namespace zelk::test
