#include "batch/cairopicture.h"

#ifdef ZELK_HAVE_CAIRO
#include <cairo-pdf.h>
#include <cairo.h>
#endif

#include <cmath>

namespace zelk {

#ifdef ZELK_HAVE_CAIRO
namespace {

cairo_status_t append(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

void setcolour(cairo_t* cr, long c) {
    cairo_set_source_rgb(cr, (c & 255) / 255.0, ((c >> 8) & 255) / 255.0, ((c >> 16) & 255) / 255.0);
}

// Draws the recording in pixels: lines one pixel wide on pixel centres, texts in the
// sans-serif face of the program at its 8-point size, baseline 10 pixels below the top.
void replay(cairo_t* cr, const RecordingSurface& rec, double W, double H) {
    const double k = 1 / rec.unit();
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_rectangle(cr, 0, 0, W, H);
    cairo_fill(cr);
    cairo_set_line_width(cr, 1);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_SQUARE);
    cairo_set_font_size(cr, 10.5);
    for (const RecordingSurface::Op& op : rec.ops) {
        setcolour(cr, op.colour);
        switch (op.kind) {
        case RecordingSurface::Op::Line:
        case RecordingSurface::Op::Curve:
            rec.eachline(op, [&](double x1, double y1, double x2, double y2) {
                cairo_move_to(cr, std::floor(x1 * k) + 0.5, std::floor(y1 * k) + 0.5);
                cairo_line_to(cr, std::floor(x2 * k) + 0.5, std::floor(y2 * k) + 0.5);
                cairo_stroke(cr);
            });
            break;
        case RecordingSurface::Op::Fill:
            cairo_rectangle(cr, std::min(op.x1, op.x2) * k, std::min(op.y1, op.y2) * k, std::abs(op.x2 - op.x1) * k,
                            std::abs(op.y2 - op.y1) * k);
            cairo_fill(cr);
            break;
        case RecordingSurface::Op::Text:
            cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                                   op.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
            cairo_move_to(cr, op.x1 * k, op.y1 * k + 10);
            cairo_show_text(cr, std::string(rec.text(op)).c_str());
            break;
        }
    }
}

} // namespace
#endif

bool cairopicture(const RecordingSurface& rec, const std::string& format, std::string& bytes, std::string& why) {
#ifdef ZELK_HAVE_CAIRO
    const double W = std::max(1.0, std::ceil(rec.scalewidth() / rec.unit()));
    const double H = std::max(1.0, std::ceil(rec.scaleheight() / rec.unit()));
    bytes.clear();
    cairo_surface_t* s = nullptr;
    if (format == "pdf") {
        // Points on the page: the window prints at the size it has on a 96 dpi screen.
        s = cairo_pdf_surface_create_for_stream(append, &bytes, W * 0.75, H * 0.75);
    } else if (format == "png") {
        s = cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(W), static_cast<int>(H));
    } else {
        why = "no picture format " + format;
        return false;
    }
    cairo_t* cr = cairo_create(s);
    if (format == "pdf") cairo_scale(cr, 0.75, 0.75);
    replay(cr, rec, W, H);
    cairo_status_t st = cairo_status(cr);
    cairo_destroy(cr);
    if (st == CAIRO_STATUS_SUCCESS && format == "png") st = cairo_surface_write_to_png_stream(s, append, &bytes);
    cairo_surface_finish(s);
    if (st == CAIRO_STATUS_SUCCESS) st = cairo_surface_status(s);
    cairo_surface_destroy(s);
    if (st != CAIRO_STATUS_SUCCESS) {
        why = std::string("cannot draw the ") + format + ": " + cairo_status_to_string(st);
        return false;
    }
    return true;
#else
    (void)rec;
    bytes.clear();
    why = "this batch runner was built without cairo and cannot write " + format;
    return false;
#endif
}

} // namespace zelk
