#include "batch/scriptreader.h"

#include <charconv>
#include <cmath>

namespace zelk {

std::vector<std::string> tokenize(const std::string& line, bool& ok) {
    std::vector<std::string> out;
    ok = true;
    size_t i = 0, n = line.size();
    while (i < n) {
        while (i < n && (line[i] == ' ' || line[i] == '\t' || line[i] == '\r')) ++i;
        if (i >= n) break;
        std::string tok;
        while (i < n && line[i] != ' ' && line[i] != '\t' && line[i] != '\r') {
            if (line[i] == '"') {
                tok += line[i++];
                bool closed = false;
                while (i < n) {
                    if (line[i] == '"') {
                        if (i + 1 < n && line[i + 1] == '"') {
                            tok += "\"\"";
                            i += 2;
                            continue;
                        }
                        tok += line[i++];
                        closed = true;
                        break;
                    }
                    tok += line[i++];
                }
                if (!closed) ok = false;
            } else {
                tok += line[i++];
            }
        }
        out.push_back(tok);
    }
    return out;
}

std::string unquote(const std::string& token) {
    if (token.size() >= 2 && token.front() == '"' && token.back() == '"') {
        std::string out;
        for (size_t i = 1; i + 1 < token.size(); ++i) {
            out += token[i];
            if (token[i] == '"' && i + 1 < token.size() - 1 && token[i + 1] == '"') ++i;
        }
        return out;
    }
    return token;
}

bool splitname(const std::string& ref, std::string& name, int& index) {
    size_t open = ref.find('(');
    if (open == std::string::npos) {
        name = ref;
        index = -1;
        return !ref.empty();
    }
    if (ref.back() != ')' || open == 0) return false;
    std::optional<long long> k =
        readinteger(std::string_view(ref).substr(open + 1, ref.size() - open - 2), 0, MAXCONTROLINDEX);
    if (!k) return false;
    name = ref.substr(0, open);
    index = static_cast<int>(*k);
    return true;
}

std::optional<long long> readinteger(std::string_view token, long long lo, long long hi) {
    if (!token.empty() && token.front() == '+') token.remove_prefix(1);
    long long v = 0;
    const char* end = token.data() + token.size();
    auto [ptr, ec] = std::from_chars(token.data(), end, v);
    if (token.empty() || ec != std::errc() || ptr != end || v < lo || v > hi) return std::nullopt;
    return v;
}

std::optional<double> readnumber(std::string_view token) {
    if (!token.empty() && token.front() == '+') token.remove_prefix(1);
    double v = 0;
    const char* end = token.data() + token.size();
    auto [ptr, ec] = std::from_chars(token.data(), end, v, std::chars_format::general);
    if (token.empty() || ec != std::errc() || ptr != end || !std::isfinite(v)) return std::nullopt;
    return v;
}

std::optional<std::string> readpath(const std::string& token) {
    std::string path = unquote(token);
    if (path.empty()) return std::nullopt;
    return path;
}

} // namespace zelk
