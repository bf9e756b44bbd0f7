// Widgets for the logic windows. A WindowView shows any logic window: its retained
// surface (when it draws) with the overlay line on top, its placed controls as real
// widgets at their left/top/width/height, its unplaced controls in a form below, mouse
// events on the drawing routed to the picture control under the pointer. The data panel
// has a dialog of its own with the calculator keypad.
#pragma once

#include <QDialog>
#include <QRect>
#include <QWidget>
#include <functional>
#include <map>

#include "core/window.h"

class QLabel;
class QLineEdit;
class QScrollArea;
class QPushButton;
class QFormLayout;

namespace zelk::qt {

class PixmapSurface;

// Runs an event handler under the fault handling of the commands, then brings every view
// and the menus up to date.
void logicevent(const std::function<void()>& fn);

// Mirrors one logic control into a widget and routes the widget's events back.
class ControlMirror {
  public:
    // Where a control goes: true with a rectangle in pixels for a placed widget; false
    // puts it in the form (or nowhere when there is no form). Picture controls are parts
    // of the drawing and get no widget.
    using Placement = std::function<bool(const Control&, QRect&)>;
    ControlMirror(Window& w, QWidget* parent, QFormLayout* form, Placement place = {});
    // Control state into the widgets (captions, texts, enabled, visible, focus).
    void sync();

  private:
    Window& w_;
    QWidget* parent_;
    QFormLayout* form_;
    Placement place_;
    std::map<Control*, QWidget*> widgets_;
    std::string focusshown_;
    int focusindexshown_ = -2;
    QWidget* make(Control& c);
};

// True for the windows whose drawing keeps a fixed layout and is scaled to the view: the
// schematics with their design report.
bool scaledwindow(const Window& w);
// The layout size of a scaled window, in pixels of the drawing at 1:1.
QSize scaledlayout();

// The drawing of a window that draws, with its placed controls over it. A scaled window's
// canvas shows its fixed layout at a zoom factor (never below 1:1); pointer positions go
// back to the logic through the same factor.
class Canvas : public QWidget {
  public:
    Canvas(Window& w, QWidget* parent);
    bool scaled() const { return scaled_; }
    double zoom() const { return zoom_; }
    // Shows the layout at factor z (clamped to 1..8) and redraws it at the new density.
    void setzoom(double z);
    void wheelEvent(QWheelEvent*) override;
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void mouseDoubleClickEvent(QMouseEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    // The tool tip of the picture control under the pointer (palette entries, dipoles).
    bool event(QEvent*) override;
    QSize sizeHint() const override;

  private:
    Window& w_;
    bool scaled_ = false;
    double zoom_ = 1;
    Control* pressed_ = nullptr;
    QPointF tological(QPointF p) const { return p / zoom_ * w_.unit; }
    Control* target(double x, double y);
    void route(QMouseEvent* e, int kind);
};

// Any logic window: canvas (drawn or not) with placed controls, plus a form for the rest.
class WindowView : public QWidget {
  public:
    WindowView(Window& w, QWidget* parent = nullptr);
    ~WindowView() override;
    void sync();
    Window& window() { return w_; }
    Canvas* canvas() { return canvas_; }
    // Zoom of a scaled window: fit to the view (the default), or a factor the user chose
    // with Ctrl + wheel or Ctrl +/-.
    void fit();
    void zoomby(double factor);
    bool fitting() const { return fit_; }
    bool eventFilter(QObject*, QEvent*) override;

  private:
    Window& w_;
    Canvas* canvas_;
    QScrollArea* scroll_ = nullptr;
    bool fit_ = true;
    ControlMirror* mirror_;
    ControlMirror* formmirror_;
    QWidget* formholder_ = nullptr;
};

// A modal or free dialog around a WindowView; its close box is the window's close box.
class WindowDialog : public QDialog {
  public:
    WindowDialog(Window& w, QWidget* parent);
    WindowView* view() { return view_; }
    virtual void sync();
    void closeEvent(QCloseEvent*) override;
    void reject() override;

  protected:
    Window& w_;
    WindowView* view_ = nullptr;
    explicit WindowDialog(Window& w, QWidget* parent, bool);
};

// The data panel: picture, note, nine rows, the keypad and the panel's buttons.
class GetdataDialog : public WindowDialog {
  public:
    GetdataDialog(Window& w, QWidget* parent);
    void sync() override;

  private:
    QWidget* picture_;
    QLabel* notes_;
    ControlMirror* rows_;
};

// The retained surface of a window (made on first use at the window's client size).
PixmapSurface& surfaceof(Window& w);

} // namespace zelk::qt
