#include "shell/qt/qtsurface.h"

#include <QFontMetricsF>
#include <cmath>

namespace zelk::qt {

QFont surfacefont(bool bold) {
    QFont f("Sans Serif");
    f.setStyleHint(QFont::SansSerif);
    f.setPointSizeF(8);
    f.setBold(bold);
    return f;
}

QColor hostcolour(long c) { return QColor(static_cast<int>(c & 255), static_cast<int>((c >> 8) & 255), static_cast<int>((c >> 16) & 255)); }

PainterSurface::PainterSurface(QPainter* p, double widthpx, double heightpx, double unit)
    : p_(p), width_(widthpx), height_(heightpx), unit_(unit > 0 ? unit : 1) {}

void PainterSurface::cls() {
    if (QPainter* p = painter()) p->fillRect(QRectF(0, 0, width_, height_), Qt::white);
    moveto(0, 0);
}

void PainterSurface::line(double x1, double y1, double x2, double y2) {
    QPainter* p = painter();
    if (!p) return;
    QPen pen(hostcolour(colour_));
    pen.setWidthF(bold_ ? 2 : 1);
    p->setPen(pen);
    p->setRenderHint(QPainter::Antialiasing, !(x1 == x2 || y1 == y2));
    p->drawLine(QPointF(x1 / unit_, y1 / unit_), QPointF(x2 / unit_, y2 / unit_));
}

void PainterSurface::polyline(const double* x, const double* y, const bool* pen, int n) {
    if (n <= 0) return;
    // The lines of line() one by one, with the pen made once: the straight ones sharp,
    // the slanting ones smoothed.
    if (QPainter* p = painter()) {
        QPen qpen(hostcolour(colour_));
        qpen.setWidthF(bold_ ? 2 : 1);
        p->setPen(qpen);
        for (int k = 1; k < n; ++k) {
            if (!pen[k]) continue;
            p->setRenderHint(QPainter::Antialiasing, !(x[k - 1] == x[k] || y[k - 1] == y[k]));
            p->drawLine(QPointF(x[k - 1] / unit_, y[k - 1] / unit_), QPointF(x[k] / unit_, y[k] / unit_));
        }
    }
    moveto(x[n - 1], y[n - 1]);
}

void PainterSurface::drawtext(double x, double y, const std::string& text) {
    QPainter* p = painter();
    if (!p) return;
    QFont f = surfacefont(bold_);
    if (fontscale_ != 1) f.setPointSizeF(f.pointSizeF() * fontscale_);
    p->setFont(f);
    p->setPen(hostcolour(colour_));
    QFontMetricsF m = fontscale_ != 1 ? QFontMetricsF(f, p->device()) : QFontMetricsF(f);
    p->drawText(QPointF(x / unit_, y / unit_ + m.ascent()), QString::fromStdString(text));
}

double PainterSurface::textwidth(const std::string& text) const {
    return QFontMetricsF(surfacefont(bold_)).horizontalAdvance(QString::fromStdString(text)) * unit_;
}

double PainterSurface::textheight(const std::string&) const { return QFontMetricsF(surfacefont(bold_)).height() * unit_; }

void PainterSurface::fillrect(double x1, double y1, double x2, double y2) {
    if (QPainter* p = painter())
        p->fillRect(QRectF(QPointF(x1 / unit_, y1 / unit_), QPointF(x2 / unit_, y2 / unit_)).normalized(),
                    hostcolour(colour_));
}

void replay(const RecordingSurface& rec, QPainter& p) {
    const double u = rec.unit() > 0 ? rec.unit() : 1;
    PainterSurface s(&p, rec.scalewidth() / u, rec.scaleheight() / u, u);
    if (p.device()) s.matchscreenfont(*p.device());
    s.cls();
    for (const RecordingSurface::Op& op : rec.ops) {
        s.setcolour(op.colour);
        s.setbold(op.bold);
        switch (op.kind) {
        case RecordingSurface::Op::Line:
        case RecordingSurface::Op::Curve:
            rec.eachline(op, [&](double x1, double y1, double x2, double y2) { s.line(x1, y1, x2, y2); });
            break;
        case RecordingSurface::Op::Text: s.drawtext(op.x1, op.y1, std::string(rec.text(op))); break;
        case RecordingSurface::Op::Fill: s.fillrect(op.x1, op.y1, op.x2, op.y2); break;
        }
    }
}

PixmapSurface::PixmapSurface(double widthpx, double heightpx, double unit)
    : PainterSurface(nullptr, widthpx, heightpx, unit), record_(widthpx * unit, heightpx * unit, unit) {
    resize(static_cast<int>(widthpx), static_cast<int>(heightpx));
}

PixmapSurface::~PixmapSurface() { painter_.reset(); }

void PixmapSurface::resize(int w, int h, double ratio) {
    painter_.reset();
    if (w < 1) w = 1;
    if (h < 1) h = 1;
    if (!(ratio > 0)) ratio = 1;
    width_ = w;
    height_ = h;
    ratio_ = ratio;
    // The drawing is made again on the resize event; the recording starts over with it.
    record_ = RecordingSurface(w * unit_, h * unit_, unit_);
    pixmap_ = QPixmap(static_cast<int>(std::ceil(w * ratio)), static_cast<int>(std::ceil(h * ratio)));
    pixmap_.setDevicePixelRatio(ratio);
    pixmap_.fill(Qt::white);
}

void PixmapSurface::cls() {
    record_.cls();
    PainterSurface::cls();
}
void PixmapSurface::setcolour(long c) {
    record_.setcolour(c);
    PainterSurface::setcolour(c);
}
void PixmapSurface::setbold(bool b) {
    record_.setbold(b);
    PainterSurface::setbold(b);
}
void PixmapSurface::line(double x1, double y1, double x2, double y2) {
    record_.line(x1, y1, x2, y2);
    PainterSurface::line(x1, y1, x2, y2);
}
void PixmapSurface::polyline(const double* x, const double* y, const bool* pen, int n) {
    record_.polyline(x, y, pen, n);
    PainterSurface::polyline(x, y, pen, n);
}
void PixmapSurface::drawtext(double x, double y, const std::string& text) {
    record_.drawtext(x, y, text);
    PainterSurface::drawtext(x, y, text);
}
void PixmapSurface::fillrect(double x1, double y1, double x2, double y2) {
    record_.fillrect(x1, y1, x2, y2);
    PainterSurface::fillrect(x1, y1, x2, y2);
}

QPainter* PixmapSurface::painter() {
    if (!painter_) painter_ = std::make_unique<QPainter>(&pixmap_);
    return painter_.get();
}

const QPixmap& PixmapSurface::pixmap() {
    painter_.reset();
    return pixmap_;
}

} // namespace zelk::qt
