#include "core/surface.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <sstream>

namespace zelk {

namespace {
// Advance widths of an 8-point sans-serif face at 96 dpi, in pixels, for the printable
// ASCII range; other characters take the width of 'n'. The bold face is half a pixel
// wider per character.
constexpr unsigned char widths[95] = {
    3, 3, 4, 7, 7, 10, 8, 2, 4, 4, 5, 7, 3, 4, 3, 3, // ' ' .. '/'
    7, 7, 7, 7, 7, 7, 7, 7, 7, 7,                     // '0' .. '9'
    3, 3, 7, 7, 7, 7, 12,                             // ':' .. '@'
    8, 8, 9, 9, 8, 7, 9, 9, 3, 6, 8, 7, 9, 9, 9, 8, 9, 9, 8, 7, 9, 8, 11, 8, 8, 8, // A..Z
    3, 3, 3, 5, 7, 4,                                                         // [ .. `
    7, 7, 6, 7, 7, 4, 7, 7, 3, 3, 6, 3, 9, 7, 7, 7, 7, 4, 6, 4, 7, 6, 9, 6, 6, 6, // a..z
    4, 3, 4, 7};

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

void Surface::polyline(const double* x, const double* y, const bool* pen, int n) {
    if (n <= 0) return;
    moveto(x[0], y[0]);
    for (int k = 1; k < n; ++k) {
        if (pen[k]) lineto(x[k], y[k]);
        else moveto(x[k], y[k]);
    }
}

void RecordingSurface::polyline(const double* x, const double* y, const bool* pen, int n) {
    if (n <= 0) return;
    const size_t first = curves.x.size();
    curves.x.insert(curves.x.end(), x, x + n);
    curves.y.insert(curves.y.end(), y, y + n);
    static_assert(sizeof(bool) == 1, "the pens are copied as bytes");
    curves.pen.resize(first + static_cast<size_t>(n));
    std::memcpy(curves.pen.data() + first, pen, static_cast<size_t>(n) * sizeof *pen);
    curves.pen[first] = 0;
    ops.emplace_back(Op::Curve, x[0], y[0], x[n - 1], y[n - 1], colour_, bold_, static_cast<unsigned>(first),
                     static_cast<unsigned>(n));
    moveto(x[n - 1], y[n - 1]);
}

std::vector<RecordingSurface::Op> RecordingSurface::flattened() const {
    std::vector<Op> out;
    out.reserve(ops.size());
    for (const Op& op : ops) {
        if (op.kind != Op::Curve) {
            out.push_back(op);
            continue;
        }
        eachline(op, [&](double x1, double y1, double x2, double y2) {
            out.emplace_back(Op::Line, x1, y1, x2, y2, op.colour, op.bold);
        });
    }
    return out;
}

double RecordingSurface::textwidth(const std::string& text) const {
    // Whole pixels summed as integers; the bold half pixels added after (every partial
    // sum is a multiple of a half pixel, exact either way).
    long w = 0;
    for (unsigned char c : text) w += c >= 32 && c < 127 ? widths[c - 32] : 7;
    double px = static_cast<double>(w);
    if (bold_) px += 0.5 * static_cast<double>(text.size());
    return px * unit_;
}

std::vector<std::string> RecordingSurface::texts() const {
    std::vector<std::string> out;
    for (const Op& op : ops)
        if (op.kind == Op::Text) out.emplace_back(text(op));
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
        case Op::Curve:
            eachline(op, [&](double x1, double y1, double x2, double y2) {
                o << "<line x1=\"" << x1 * k << "\" y1=\"" << y1 * k << "\" x2=\"" << x2 * k << "\" y2=\""
                  << y2 * k << "\" stroke=\"" << colourtext(op.colour)
                  << "\" stroke-width=\"1\" stroke-linecap=\"square\"/>\n";
            });
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
              << "\" xml:space=\"preserve\">" << xmlescape(std::string(text(op))) << "</text>\n";
            break;
        }
    }
    o << "</svg>\n";
    return o.str();
}

} // namespace zelk
