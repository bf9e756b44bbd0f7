// Files read by the tests on their own, without the program's readers.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
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

// A file of tests/data, read whole.
inline std::string datafile(const std::string& name) {
    return readfile(std::string(ZELK_SOURCE_DIR) + "/tests/data/" + name);
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

// One row of a data file: its fields, separated by blanks; a field with blanks is written
// in double quotes, inside which \" is a quote, \n a line break and \\ a backslash.
struct Row {
    std::vector<std::string> field;
    const std::string& text(size_t i) const { return field.at(i); }
    double num(size_t i) const { return std::stod(field.at(i)); }
    int whole(size_t i) const { return std::stoi(field.at(i)); }
    // Field i as a list of whole numbers written 1,33,2.
    std::vector<int> list(size_t i) const {
        std::vector<int> v;
        std::istringstream in(field.at(i));
        for (std::string n; std::getline(in, n, ',');) v.push_back(std::stoi(n));
        return v;
    }
    // The numbers from field i to the end.
    std::vector<double> nums(size_t i) const {
        std::vector<double> v;
        for (; i < field.size(); ++i) v.push_back(num(i));
        return v;
    }
};

// The fields of one line of a data file.
inline Row fields(const std::string& line) {
    Row r;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == ' ' || line[i] == '\t') continue;
        std::string f;
        if (line[i] != '"') {
            for (; i < line.size() && line[i] != ' ' && line[i] != '\t'; ++i) f += line[i];
        } else {
            for (++i; i < line.size() && line[i] != '"'; ++i) {
                if (line[i] == '\\' && i + 1 < line.size()) {
                    ++i;
                    f += line[i] == 'n' ? '\n' : line[i];
                } else {
                    f += line[i];
                }
            }
        }
        r.field.push_back(f);
    }
    return r;
}

// The rows of section [name] (one word) of tests/data/file: reference values kept as data,
// one case a line; lines starting with # and blank lines are left out.
inline std::vector<Row> datarows(const std::string& file, const std::string& section) {
    std::istringstream in(datafile(file));
    std::vector<Row> rows;
    bool inside = false, found = false;
    for (std::string line; std::getline(in, line);) {
        const Row r = fields(line);
        if (r.field.empty() || r.text(0)[0] == '#') continue;
        if (r.text(0)[0] == '[') {
            inside = r.text(0) == "[" + section + "]";
            found = found || inside;
        } else if (inside) {
            rows.push_back(r);
        }
    }
    if (!found) throw std::runtime_error("no section [" + section + "] in tests/data/" + file);
    return rows;
}

} // namespace zelk::test
