// Surfaces on Qt: a retained pixmap that a window draws into (the window's persistent
// surface, shown, printed and copied), and a surface straight onto a QPainter for the
// pictures that are drawn afresh on every paint (the panel's picture).
#pragma once

#include <QFont>
#include <QPainter>
#include <QPixmap>
#include <memory>

#include "core/surface.h"

namespace zelk::qt {

// The program's 8-point sans-serif face.
QFont surfacefont(bool bold);
QColor hostcolour(long colour);

// Draws onto a painter that the caller owns; coordinates are surface units, `unit` of
// them to a pixel.
class PainterSurface : public Surface {
  public:
    PainterSurface(QPainter* p, double widthpx, double heightpx, double unit = 1);
    void cls() override;
    void setcolour(long c) override { colour_ = c; }
    long colour() const override { return colour_; }
    void setbold(bool b) override { bold_ = b; }
    bool bold() const override { return bold_; }
    void line(double x1, double y1, double x2, double y2) override;
    void drawtext(double x, double y, const std::string& text) override;
    double textwidth(const std::string& text) const override;
    double textheight(const std::string& text) const override;
    double scalewidth() const override { return width_ * unit_; }
    double scaleheight() const override { return height_ * unit_; }
    void fillrect(double x1, double y1, double x2, double y2) override;
    void polyline(const double* x, const double* y, const bool* pen, int n) override;
    // For a device of another resolution than the screen (printer, PDF) under a scaled
    // painter: the face keeps its size in the surface's pixels, 8 points at 96 dpi.
    void matchscreenfont(const QPaintDevice& device) { fontscale_ = 96.0 / device.logicalDpiY(); }

  protected:
    virtual QPainter* painter() { return p_; }
    double fontscale_ = 1;
    QPainter* p_;
    double width_, height_, unit_;
    long colour_ = BLACK;
    bool bold_ = false;
};

// Draws a recording onto a painter in the recording's pixels: the vector form of a
// window's surface for the printer, PDF and SVG.
void replay(const RecordingSurface& rec, QPainter& p);

// A window's retained surface: every operation paints into a pixmap of the window's client
// size, which the screen shows and the clipboard takes as a bitmap, and is recorded as
// well, so that the printer, PDF and SVG get lines and texts rather than pixels.
class PixmapSurface : public PainterSurface {
  public:
    PixmapSurface(double widthpx, double heightpx, double unit);
    ~PixmapSurface() override;
    void cls() override;
    void setcolour(long c) override;
    void setbold(bool b) override;
    void line(double x1, double y1, double x2, double y2) override;
    void drawtext(double x, double y, const std::string& text) override;
    void fillrect(double x1, double y1, double x2, double y2) override;
    void polyline(const double* x, const double* y, const bool* pen, int n) override;
    // Everything drawn since the last clear, in surface units.
    const RecordingSurface& recording() const { return record_; }
    // New client size: a fresh white pixmap (the window redraws on its resize event).
    // `ratio` device pixels to a logical pixel keep a zoomed or high-density view sharp.
    void resize(int widthpx, int heightpx, double ratio = 1);
    double ratio() const { return ratio_; }
    // Ends pending painting; the pixmap is then complete.
    const QPixmap& pixmap();

  protected:
    QPainter* painter() override;

  private:
    QPixmap pixmap_;
    RecordingSurface record_;
    double ratio_ = 1;
    std::unique_ptr<QPainter> painter_;
};

} // namespace zelk::qt
