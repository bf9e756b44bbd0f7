// The drawing surface on which all logic draws: plots in twips, the schematic and the
// dipole pictures in pixels. Implementations: a QPainter onto a retained pixmap (the
// desktop), a recording surface (tests, the batch runner) that can also write SVG.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zelk {

// Colours are host colour numbers: red + 256*green + 65536*blue ("33023" is orange).
inline constexpr long RGB(int r, int g, int b) { return r + 256L * g + 65536L * b; }
inline constexpr long BLACK = 0;
inline constexpr long BLUE = RGB(0, 0, 255);
inline constexpr long RED = RGB(255, 0, 0);
inline constexpr long WHITE = RGB(255, 255, 255);
inline constexpr long ORANGE = 33023;

class Surface {
  public:
    virtual ~Surface() = default;

    // The cursor, in the surface's own units, as the host keeps it.
    double currentx = 0, currenty = 0;

    // Clears to the background and puts the cursor at the top left.
    virtual void cls() = 0;
    virtual void setcolour(long colour) = 0;
    virtual long colour() const = 0;
    virtual void setbold(bool bold) = 0;
    virtual bool bold() const = 0;
    // A straight line in the current colour.
    virtual void line(double x1, double y1, double x2, double y2) = 0;
    // Text with its top left corner at (x, y), in the current colour and weight.
    virtual void drawtext(double x, double y, const std::string& text) = 0;
    virtual double textwidth(const std::string& text) const = 0;
    virtual double textheight(const std::string& text) const = 0;
    // Size of the drawing area in the surface's units.
    virtual double scalewidth() const = 0;
    virtual double scaleheight() const = 0;
    // A filled rectangle in the current colour (backgrounds, the cursor bar).
    virtual void fillrect(double x1, double y1, double x2, double y2) = 0;
    // A curve in the current colour through the n points (x[k], y[k]), in one call: the
    // cursor goes to the first point, then to each next point with the pen down where
    // pen[k] is set and lifted where it is not; it ends on the last point. The picture is
    // that of moveto and lineto point by point (which this default does).
    virtual void polyline(const double* x, const double* y, const bool* pen, int n);

    void moveto(double x, double y) {
        currentx = x;
        currenty = y;
    }
    void lineto(double x, double y) {
        line(currentx, currenty, x, y);
        moveto(x, y);
    }
    // Prints a line at the cursor; the cursor goes to the left edge of the next line.
    void print(const std::string& text) {
        drawtext(currentx, currenty, text);
        currenty += textheight(text);
        currentx = 0;
    }
    // Prints at the cursor and leaves the cursor behind the text, on the same line.
    void printon(const std::string& text) {
        drawtext(currentx, currenty, text);
        currentx += textwidth(text);
    }
    // An empty print: the cursor moves down one line.
    void newline() {
        currenty += textheight("X");
        currentx = 0;
    }
};

// Records every operation, for tests and for the batch runner's SVG export. Text metrics
// are those of the program's 8-point sans-serif face at `unit` surface units per pixel
// (1 for pixels, 15 for twips). A curve drawn with polyline is kept as one operation
// over its points; it stands for the lines of its drawn steps, in order (eachline,
// flattened, and the SVG give them). The operations are plain values, their texts and
// curve points kept beside them, so that a redraw that records the same frame again
// allocates nothing and an emptied recording has nothing to free.
class RecordingSurface : public Surface {
  public:
    struct Op {
        enum Kind { Line, Text, Fill, Curve } kind;
        double x1, y1, x2, y2; // a curve: its first and its last point
        long colour;
        bool bold;
        // A curve: its points are those of `curves` from first to first + count; a text:
        // its characters are those of `textchars` from first to first + count.
        unsigned first, count;
        Op(Kind k, double ax, double ay, double bx, double by, long c, bool b, unsigned f = 0, unsigned n = 0)
            : kind(k), x1(ax), y1(ay), x2(bx), y2(by), colour(c), bold(b), first(f), count(n) {}
    };
    // The points of the curves, with the pen of the step that comes to each.
    struct CurvePoints {
        std::vector<double> x, y;
        std::vector<unsigned char> pen;
    };
    RecordingSurface(double width, double height, double unit = 1)
        : width_(width), height_(height), unit_(unit) {}
    // A surface that takes its size from a window's client area as it stands.
    RecordingSurface(const double* width, const double* height, double unit)
        : width_(0), height_(0), unit_(unit), pw_(width), ph_(height) {}

    std::vector<Op> ops;
    CurvePoints curves;
    std::string textchars;
    // The text of a Text operation.
    std::string_view text(const Op& op) const { return std::string_view(textchars).substr(op.first, op.count); }
    void resize(double width, double height) {
        width_ = width;
        height_ = height;
    }
    double unit() const { return unit_; }

    // Empties the recording, keeping its storage.
    void clear() {
        ops.clear();
        curves.x.clear();
        curves.y.clear();
        curves.pen.clear();
        textchars.clear();
    }
    void cls() override {
        clear();
        moveto(0, 0);
    }
    void setcolour(long c) override { colour_ = c; }
    long colour() const override { return colour_; }
    void setbold(bool b) override { bold_ = b; }
    bool bold() const override { return bold_; }
    void line(double x1, double y1, double x2, double y2) override {
        ops.emplace_back(Op::Line, x1, y1, x2, y2, colour_, bold_);
    }
    void drawtext(double x, double y, const std::string& text) override {
        ops.emplace_back(Op::Text, x, y, x + textwidth(text), y + textheight(text), colour_, bold_,
                         static_cast<unsigned>(textchars.size()), static_cast<unsigned>(text.size()));
        textchars += text;
    }
    void fillrect(double x1, double y1, double x2, double y2) override {
        ops.emplace_back(Op::Fill, x1, y1, x2, y2, colour_, bold_);
    }
    void polyline(const double* x, const double* y, const bool* pen, int n) override;

    // f(x1, y1, x2, y2) for each line of a Line or a Curve operation, in drawing order.
    template <class F> void eachline(const Op& op, F f) const {
        if (op.kind == Op::Line) {
            f(op.x1, op.y1, op.x2, op.y2);
        } else if (op.kind == Op::Curve) {
            const double* x = curves.x.data() + op.first;
            const double* y = curves.y.data() + op.first;
            const unsigned char* pen = curves.pen.data() + op.first;
            for (unsigned k = 1; k < op.count; ++k)
                if (pen[k]) f(x[k - 1], y[k - 1], x[k], y[k]);
        }
    }
    // The recording with every curve as the Line operations it stands for.
    std::vector<Op> flattened() const;
    double textwidth(const std::string& text) const override;
    double textheight(const std::string&) const override { return 13 * unit_; }
    double scalewidth() const override { return pw_ ? *pw_ : width_; }
    double scaleheight() const override { return ph_ ? *ph_ : height_; }

    // The texts printed, in order (for tests).
    std::vector<std::string> texts() const;
    // The recording as an SVG document, scaled to pixels.
    std::string svg() const;

  private:
    double width_, height_, unit_;
    const double* pw_ = nullptr;
    const double* ph_ = nullptr;
    long colour_ = BLACK;
    bool bold_ = false;
};

} // namespace zelk
