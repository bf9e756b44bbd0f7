#include "core/surface.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

namespace zelk {

namespace {
// Advance widths of an 8-point sans-serif face at 96 dpi, in pixels, for the printable
// ASCII range; other characters take the width of 'n'.
double charwidth(unsigned char c, bool bold) {
    static const unsigned char w[95] = {
        3, 3, 4, 7, 7, 10, 8, 2, 4, 4, 5, 7, 3, 4, 3, 3, // ' ' .. '/'
        7, 7, 7, 7, 7, 7, 7, 7, 7, 7,                     // '0' .. '9'
        3, 3, 7, 7, 7, 7, 12,                             // ':' .. '@'
        8, 8, 9, 9, 8, 7, 9, 9, 3, 6, 8, 7, 9, 9, 9, 8, 9, 9, 8, 7, 9, 8, 11, 8, 8, 8, // A..Z
        3, 3, 3, 5, 7, 4,                                                         // [ .. `
        7, 7, 6, 7, 7, 4, 7, 7, 3, 3, 6, 3, 9, 7, 7, 7, 7, 4, 6, 4, 7, 6, 9, 6, 6, 6, // a..z
        4, 3, 4, 7};
    double base = (c >= 32 && c < 127) ? w[c - 32] : 7;
    return bold ? base + 0.5 : base;
}

std::string xmlescape(const std::string& s) {
    std::string out;
    for (char c : s) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
    return out;
}

std::string colourtext(long c) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "#%02x%02x%02x", static_cast<int>(c & 255),
                  static_cast<int>((c >> 8) & 255), static_cast<int>((c >> 16) & 255));
    return buf;
}
} // namespace

double RecordingSurface::textwidth(const std::string& text) const {
    double w = 0;
    for (unsigned char c : text) w += charwidth(c, bold_);
    return w * unit_;
}

std::vector<std::string> RecordingSurface::texts() const {
    std::vector<std::string> out;
    for (const Op& op : ops)
        if (op.kind == Op::Text) out.push_back(op.text);
    return out;
}

std::string RecordingSurface::svg() const {
    std::ostringstream o;
    double k = 1 / unit_;
    double W = scalewidth() * k, H = scaleheight() * k;
    o << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    o << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << W << "\" height=\"" << H
      << "\" viewBox=\"0 0 " << W << ' ' << H << "\">\n";
    o << "<rect x=\"0\" y=\"0\" width=\"" << W << "\" height=\"" << H << "\" fill=\"#ffffff\"/>\n";
    for (const Op& op : ops) {
        switch (op.kind) {
        case Op::Line:
            o << "<line x1=\"" << op.x1 * k << "\" y1=\"" << op.y1 * k << "\" x2=\"" << op.x2 * k
              << "\" y2=\"" << op.y2 * k << "\" stroke=\"" << colourtext(op.colour)
              << "\" stroke-width=\"1\" stroke-linecap=\"square\"/>\n";
            break;
        case Op::Fill:
            o << "<rect x=\"" << std::min(op.x1, op.x2) * k << "\" y=\"" << std::min(op.y1, op.y2) * k
              << "\" width=\"" << std::abs(op.x2 - op.x1) * k << "\" height=\""
              << std::abs(op.y2 - op.y1) * k << "\" fill=\"" << colourtext(op.colour) << "\"/>\n";
            break;
        case Op::Text:
            o << "<text x=\"" << op.x1 * k << "\" y=\"" << op.y1 * k + 10
              << "\" font-family=\"DejaVu Sans, Arial, sans-serif\" font-size=\"10.5\""
              << (op.bold ? " font-weight=\"bold\"" : "") << " fill=\"" << colourtext(op.colour)
              << "\" xml:space=\"preserve\">" << xmlescape(op.text) << "</text>\n";
            break;
        }
    }
    o << "</svg>\n";
    return o.str();
}

} // namespace zelk
