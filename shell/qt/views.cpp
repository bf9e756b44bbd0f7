#include "shell/qt/views.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <QScrollBar>
#include <QVBoxLayout>

#include "core/commands.h"
#include "entry/panel.h"
#include "schematic/dipolepictures.h"
#include "entry/pictures.h"
#include "shell/qt/qtdesktop.h"
#include "shell/qt/qtsurface.h"

namespace zelk::qt {

namespace {

QString qs(const std::string& s) { return QString::fromStdString(s); }

// Host mouse buttons (1 left, 2 right, 4 middle) and shift state (1 shift, 2 ctrl, 4 alt).
int hostbutton(Qt::MouseButtons b) {
    return (b & Qt::LeftButton ? 1 : 0) | (b & Qt::RightButton ? 2 : 0) | (b & Qt::MiddleButton ? 4 : 0);
}
int hostshift(Qt::KeyboardModifiers m) {
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) | (m & Qt::AltModifier ? 4 : 0);
}

// Forwards clicks on a label and focus on a text box to the logic.
class EventRelay : public QObject {
  public:
    EventRelay(Window& w, Control& c, QObject* parent) : QObject(parent), w_(w), name_(c.name), index_(c.index) {}
    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() == QEvent::MouseButtonRelease) {
            auto* m = static_cast<QMouseEvent*>(e);
            if (m->button() == Qt::LeftButton && kind() == ControlKind::Label)
                logicevent([this] { w_.click(name_, index_); });
        } else if (e->type() == QEvent::FocusIn && kind() == ControlKind::Text) {
            if (w_.focusname != name_ || w_.focusindex != index_) logicevent([this] { w_.focus(name_, index_); });
        }
        return false;
    }

  private:
    Window& w_;
    std::string name_;
    int index_;
    ControlKind kind() const {
        const Control* c = w_.find(name_, index_);
        return c ? c->kind : ControlKind::Frame;
    }
};

} // namespace

void logicevent(const std::function<void()>& fn) {
    guarded(fn);
    if (QtDesktop* d = QtDesktop::instance()) d->afterevent();
}

PixmapSurface& surfaceof(Window& w) { return QtDesktop::instance()->surfacefor(w); }

// ---------------------------------------------------------------------------------------

ControlMirror::ControlMirror(Window& w, QWidget* parent, QFormLayout* form, Placement place)
    : w_(w), parent_(parent), form_(form), place_(std::move(place)) {}

QWidget* ControlMirror::make(Control& c) {
    std::string name = c.name;
    int index = c.index;
    Window* win = &w_;
    QWidget* widget = nullptr;
    switch (c.kind) {
    case ControlKind::Button: {
        auto* b = new QPushButton(parent_);
        QObject::connect(b, &QPushButton::clicked, b, [win, name, index] { logicevent([=] { win->click(name, index); }); });
        widget = b;
        break;
    }
    case ControlKind::Label:
    case ControlKind::Frame: {
        auto* l = new QLabel(parent_);
        l->setWordWrap(true);
        l->installEventFilter(new EventRelay(w_, c, l));
        widget = l;
        break;
    }
    case ControlKind::Text: {
        auto* e = new QLineEdit(parent_);
        QObject::connect(e, &QLineEdit::textEdited, e, [win, name, index](const QString& t) {
            logicevent([=] { win->settext(name, index, t.toStdString()); });
        });
        QObject::connect(e, &QLineEdit::cursorPositionChanged, e, [win, name, index, e](int, int) {
            if (Control* k = win->find(name, index)) {
                k->selstart = e->hasSelectedText() ? e->selectionStart() : e->cursorPosition();
                k->sellength = e->hasSelectedText() ? static_cast<int>(e->selectedText().size()) : 0;
            }
        });
        QObject::connect(e, &QLineEdit::selectionChanged, e, [win, name, index, e] {
            if (Control* k = win->find(name, index)) {
                k->selstart = e->hasSelectedText() ? e->selectionStart() : e->cursorPosition();
                k->sellength = e->hasSelectedText() ? static_cast<int>(e->selectedText().size()) : 0;
            }
        });
        e->installEventFilter(new EventRelay(w_, c, e));
        widget = e;
        break;
    }
    case ControlKind::Check: {
        auto* b = new QCheckBox(parent_);
        QObject::connect(b, &QCheckBox::clicked, b, [win, name, index] { logicevent([=] { win->click(name, index); }); });
        widget = b;
        break;
    }
    case ControlKind::Option: {
        auto* b = new QRadioButton(parent_);
        b->setAutoExclusive(false);
        QObject::connect(b, &QRadioButton::clicked, b, [win, name, index] { logicevent([=] { win->click(name, index); }); });
        widget = b;
        break;
    }
    case ControlKind::List: {
        auto* l = new QListWidget(parent_);
        QObject::connect(l, &QListWidget::currentRowChanged, l, [win, name, index](int row) {
            logicevent([=] { win->selectitem(name, index, row); });
        });
        widget = l;
        break;
    }
    case ControlKind::Scroll: {
        auto* s = new QScrollBar(c.height > c.width ? Qt::Vertical : Qt::Horizontal, parent_);
        s->setRange(0, 100);
        QObject::connect(s, &QScrollBar::valueChanged, s, [win, name, index](int v) {
            logicevent([=] {
                if (Control* k = win->find(name, index)) {
                    k->value = v;
                    if (k->onchange) k->onchange(index);
                }
            });
        });
        widget = s;
        break;
    }
    case ControlKind::Picture: return nullptr;
    }
    widget->setObjectName(qs(c.index >= 0 ? c.name + "(" + std::to_string(c.index) + ")" : c.name));
    QRect r;
    bool placed = place_ && place_(c, r);
    if (placed) {
        widget->setGeometry(r);
    } else if (form_ && c.width <= 0) {
        if (c.kind == ControlKind::Text || c.kind == ControlKind::List || c.kind == ControlKind::Scroll)
            form_->addRow(qs(c.caption.empty() ? c.name : c.caption), widget);
        else
            form_->addRow(widget);
    } else {
        delete widget;
        return nullptr;
    }
    return widget;
}

void ControlMirror::sync() {
    for (auto& up : w_.controls) {
        Control& c = *up;
        auto it = widgets_.find(&c);
        if (it == widgets_.end()) it = widgets_.emplace(&c, make(c)).first;
        QWidget* widget = it->second;
        if (!widget) continue;
        QSignalBlocker block(widget);
        // A placed control follows its window's layout (a plot moves its buttons below
        // the frame when it is resized or tiled).
        if (QRect r; place_ && place_(c, r) && widget->geometry() != r) widget->setGeometry(r);
        widget->setToolTip(qs(c.tooltip));
        widget->setEnabled(c.enabled);
        if (auto* b = dynamic_cast<QPushButton*>(widget)) b->setText(qs(c.caption));
        else if (auto* l = dynamic_cast<QLabel*>(widget)) l->setText(qs(c.caption));
        else if (auto* cb = dynamic_cast<QCheckBox*>(widget)) {
            cb->setText(qs(c.caption));
            cb->setChecked(c.value != 0);
        } else if (auto* rb = dynamic_cast<QRadioButton*>(widget)) {
            rb->setText(qs(c.caption));
            rb->setChecked(c.value != 0);
        } else if (auto* e = dynamic_cast<QLineEdit*>(widget)) {
            if (e->text().toStdString() != c.text) {
                e->setText(qs(c.text));
                e->setSelection(c.selstart, c.sellength);
                if (c.sellength == 0) e->setCursorPosition(c.selstart);
            }
        } else if (auto* lw = dynamic_cast<QListWidget*>(widget)) {
            // Rows are rebuilt when their texts changed (a list refilled with as many rows).
            bool same = lw->count() == static_cast<int>(c.items.size());
            for (int i = 0; same && i < lw->count(); ++i)
                same = lw->item(i)->text() == qs(c.items[static_cast<size_t>(i)]);
            if (!same) {
                lw->clear();
                for (auto& s : c.items) lw->addItem(qs(s));
            }
            lw->setCurrentRow(c.listindex);
        } else if (auto* sb = dynamic_cast<QScrollBar*>(widget)) {
            sb->setValue(c.value);
        }
        widget->setVisible(c.visible && w_.loaded);
    }
    // The logic moved the focus: the widget follows, with the selection the logic set.
    if (w_.focusname != focusshown_ || w_.focusindex != focusindexshown_) {
        focusshown_ = w_.focusname;
        focusindexshown_ = w_.focusindex;
        if (Control* c = w_.find(w_.focusname, w_.focusindex)) {
            auto it = widgets_.find(c);
            if (it != widgets_.end() && it->second && it->second->isVisible()) {
                QSignalBlocker block(it->second);
                it->second->setFocus();
                if (auto* e = dynamic_cast<QLineEdit*>(it->second)) e->setSelection(c->selstart, c->sellength);
            }
        }
    }
}

// ---------------------------------------------------------------------------------------

bool scaledwindow(const Window& w) { return w.formname == "schematic" || w.formname == "schematic1"; }

// The schematic and its report laid out as in a window on a 1024 by 768 screen: full-size
// symbols (the half size starts under 600 pixels), and room for the listing's columns and
// the spread lines beside the title block.
QSize scaledlayout() { return QSize(1000, 640); }

Canvas::Canvas(Window& w, QWidget* parent) : QWidget(parent), w_(w), scaled_(scaledwindow(w)) {
    setObjectName("canvas");
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent, w.draws);
    if (scaled_) setFixedSize(scaledlayout());
}

QSize Canvas::sizeHint() const {
    if (scaled_) return scaledlayout() * zoom_;
    return QSize(static_cast<int>(w_.clientwidth / w_.unit), static_cast<int>(w_.clientheight / w_.unit));
}

void Canvas::setzoom(double z) {
    if (!scaled_) return;
    z = std::clamp(z, 1.0, 8.0);
    zoom_ = z;
    QSize l = scaledlayout();
    setFixedSize(static_cast<int>(l.width() * z), static_cast<int>(l.height() * z));
    // The drawing is made again at the density it is shown at, so that lines and text stay
    // sharp at any zoom and on a high-density screen.
    double ratio = z * devicePixelRatioF();
    PixmapSurface& s = surfaceof(w_);
    if (std::abs(s.ratio() - ratio) > 1e-9) {
        s.resize(l.width(), l.height(), ratio);
        Window* w = &w_;
        logicevent([w] { w->resized(); });
    }
    update();
}

void Canvas::wheelEvent(QWheelEvent* e) {
    if (!scaled_ || !(e->modifiers() & Qt::ControlModifier)) {
        QWidget::wheelEvent(e);
        return;
    }
    for (QWidget* p = parentWidget(); p; p = p->parentWidget())
        if (auto* v = dynamic_cast<WindowView*>(p)) {
            int steps = e->angleDelta().y() / 120;
            if (steps != 0) v->zoomby(std::pow(1.25, steps));
            break;
        }
    e->accept();
}

void Canvas::paintEvent(QPaintEvent*) {
    QPainter p(this);
    if (!w_.draws) return;
    if (scaled_) {
        p.fillRect(rect(), Qt::white);
        p.scale(zoom_, zoom_);
    }
    p.drawPixmap(0, 0, surfaceof(w_).pixmap());
    if (w_.overlay.on) {
        p.setPen(hostcolour(w_.overlay.colour));
        p.drawLine(QPointF(w_.overlay.x1 / w_.unit, w_.overlay.y1 / w_.unit),
                   QPointF(w_.overlay.x2 / w_.unit, w_.overlay.y2 / w_.unit));
    }
}

Control* Canvas::target(double x, double y) {
    for (auto it = w_.controls.rbegin(); it != w_.controls.rend(); ++it) {
        Control& c = **it;
        if (c.kind == ControlKind::Picture && c.visible && x >= c.left && x < c.left + c.width && y >= c.top &&
            y < c.top + c.height)
            return &c;
    }
    return w_.find("frame");
}

void Canvas::route(QMouseEvent* e, int kind) {
    QPointF l = tological(e->position());
    double x = l.x(), y = l.y();
    Control* c = kind == 0 ? target(x, y) : (pressed_ ? pressed_ : target(x, y));
    if (!c) return;
    // A picture control sees the pointer in its own box; the window's frame (the plot area
    // of a plot, the client area of a schematic) in the window's, as the batch runner's
    // events give it.
    bool own = c->kind == ControlKind::Picture && c->name != "frame";
    double cx = own ? x - c->left : x;
    double cy = own ? y - c->top : y;
    int button = hostbutton(kind == 2 ? Qt::MouseButtons(e->button()) : (kind == 0 ? Qt::MouseButtons(e->button()) : e->buttons()));
    int shift = hostshift(e->modifiers());
    std::string name = c->name;
    int index = c->index;
    Window* w = &w_;
    bool click = kind == 2 && pressed_ == c && e->button() == Qt::LeftButton;
    if (kind == 0) pressed_ = c;
    if (kind == 2) pressed_ = nullptr;
    logicevent([=] {
        w->mouse(name, index, kind, button, shift, cx, cy);
        if (click && w->loaded) w->click(name, index);
    });
}

bool Canvas::event(QEvent* e) {
    if (e->type() == QEvent::ToolTip) {
        auto* h = static_cast<QHelpEvent*>(e);
        QPointF l = tological(h->pos());
        const Control* c = target(l.x(), l.y());
        if (c && c->kind == ControlKind::Picture && !c->tooltip.empty())
            QToolTip::showText(h->globalPos(), qs(c->tooltip), this);
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(e);
}

void Canvas::mousePressEvent(QMouseEvent* e) { route(e, 0); }
void Canvas::mouseMoveEvent(QMouseEvent* e) { route(e, 1); }
void Canvas::mouseReleaseEvent(QMouseEvent* e) { route(e, 2); }

void Canvas::mouseDoubleClickEvent(QMouseEvent* e) {
    QPointF l = tological(e->position());
    double x = l.x(), y = l.y();
    if (Control* c = target(x, y)) {
        std::string name = c->name;
        int index = c->index;
        Window* w = &w_;
        logicevent([=] { w->dblclick(name, index); });
    }
}

void Canvas::resizeEvent(QResizeEvent*) {
    // A scaled window keeps its layout: the view's size only changes the zoom.
    if (!w_.draws || scaled_) return;
    double cw = width() * w_.unit, ch = height() * w_.unit;
    if (cw == w_.clientwidth && ch == w_.clientheight) return;
    w_.clientwidth = cw;
    w_.clientheight = ch;
    surfaceof(w_).resize(width(), height());
    Window* w = &w_;
    logicevent([w] { w->resized(); });
}

// ---------------------------------------------------------------------------------------

WindowView::WindowView(Window& w, QWidget* parent) : QWidget(parent), w_(w) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    canvas_ = new Canvas(w, this);
    bool anyplaced = w.draws;
    for (auto& c : w.controls) anyplaced = anyplaced || c->width > 0;
    auto* formholder = new QWidget(this);
    formholder_ = formholder;
    auto* form = new QFormLayout(formholder);
    if (canvas_->scaled()) {
        scroll_ = new QScrollArea(this);
        scroll_->setObjectName("scroll");
        scroll_->setFrameShape(QFrame::NoFrame);
        scroll_->setAlignment(Qt::AlignCenter);
        scroll_->setStyleSheet("QScrollArea { background: white; }");
        scroll_->setWidgetResizable(false);
        scroll_->setWidget(canvas_);
        scroll_->setMinimumSize(50, 50);
        scroll_->viewport()->installEventFilter(this);
        layout->addWidget(scroll_, 1);
    } else if (anyplaced) {
        canvas_->setMinimumSize(w.draws ? QSize(50, 50) : canvas_->sizeHint());
        layout->addWidget(canvas_, 1);
    } else {
        canvas_->hide();
    }
    layout->addWidget(formholder, anyplaced ? 0 : 1);
    // Placed controls go onto the canvas, the others into the form under it.
    auto placed = [this](const Control& c, QRect& r) {
        if (c.width <= 0) return false;
        r = QRect(static_cast<int>(c.left / w_.unit), static_cast<int>(c.top / w_.unit),
                  static_cast<int>(c.width / w_.unit), static_cast<int>(c.height / w_.unit));
        return true;
    };
    mirror_ = new ControlMirror(w, canvas_, nullptr, placed);
    formmirror_ = new ControlMirror(w, formholder, form, [](const Control& c, QRect&) {
        (void)c;
        return false;
    });
    sync();
}

void WindowView::fit() {
    if (!scroll_) return;
    fit_ = true;
    QSize room = scroll_->maximumViewportSize();
    QSize l = scaledlayout();
    canvas_->setzoom(std::min(room.width() / static_cast<double>(l.width()), room.height() / static_cast<double>(l.height())));
}

void WindowView::zoomby(double factor) {
    if (!scroll_) return;
    fit_ = false;
    canvas_->setzoom(canvas_->zoom() * factor);
}

bool WindowView::eventFilter(QObject* o, QEvent* e) {
    if (scroll_ && o == scroll_->viewport() && e->type() == QEvent::Resize && fit_) fit();
    return QWidget::eventFilter(o, e);
}

WindowView::~WindowView() {
    delete mirror_;
    delete formmirror_;
}

void WindowView::sync() {
    mirror_->sync();
    formmirror_->sync();
    // The form under a drawing takes room only when it holds a visible row.
    bool anyrow = false;
    for (QWidget* child : formholder_->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        anyrow = anyrow || !child->isHidden();
    formholder_->setVisible(anyrow || canvas_->isHidden());
    canvas_->update();
}

// ---------------------------------------------------------------------------------------

WindowDialog::WindowDialog(Window& w, QWidget* parent, bool) : QDialog(parent), w_(w) {
    setWindowTitle(qs(w.caption));
}

WindowDialog::WindowDialog(Window& w, QWidget* parent) : WindowDialog(w, parent, true) {
    auto* layout = new QVBoxLayout(this);
    view_ = new WindowView(w, this);
    layout->addWidget(view_);
    setObjectName(qs(w.formname));
}

void WindowDialog::sync() {
    setWindowTitle(qs(w_.caption));
    if (view_) view_->sync();
}

void WindowDialog::closeEvent(QCloseEvent* e) {
    e->ignore();
    Window* w = &w_;
    logicevent([w] { w->closebox(); });
}

void WindowDialog::reject() {
    // Escape is the window's Cancel button where it has one, else its close box.
    Window* w = &w_;
    for (auto& up : w_.controls) {
        Control& c = *up;
        if (c.kind != ControlKind::Button || !c.visible || !c.enabled) continue;
        QString caption = qs(c.caption).remove('&').trimmed();
        if (caption.compare("Cancel", Qt::CaseInsensitive) == 0 || caption.compare("Abort", Qt::CaseInsensitive) == 0) {
            std::string name = c.name;
            int index = c.index;
            logicevent([w, name, index] { w->click(name, index); });
            return;
        }
    }
    logicevent([w] { w->closebox(); });
}

// ---------------------------------------------------------------------------------------

namespace {

// The keypad, laid out like a pocket calculator: digits on the left, operators in the
// middle, the unit prefixes on the right (key 21 has no key).
constexpr int keypadgrid[5][6] = {{7, 8, 9, 25, 11, 20},
                                  {4, 5, 6, 24, 12, 14},
                                  {1, 2, 3, 23, 16, 13},
                                  {0, 10, 27, 22, 15, 17},
                                  {28, 29, 26, 19, 18, -1}};
const char* const keyfallback[30] = {"0", "1", "2",  "3", "4", "5", "6", "7", "8", "9",
                                     ".", "bksp", "p", "m", "n", "K", "\u00b5", "M", "Cancel", "tab",
                                     "CLR", "", "+", "-", "*", "/", "=", "%", "x\u00b2", "\u221a"};

class PanelPicture : public QWidget {
  public:
    explicit PanelPicture(QWidget* parent) : QWidget(parent) { setObjectName("getdataimage"); }
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), Qt::white);
        p.setPen(QColor(160, 160, 160));
        p.drawRect(rect().adjusted(0, 0, -1, -1));
        PainterSurface s(&p, width(), height(), 1);
        const std::string& key = getdata.picturekey;
        try {
            if (key.rfind("image ", 0) == 0)
                drawpanelimage(s, std::stoi(key.substr(6)), 4, 4, width() - 8, height() - 8);
            else if (key.rfind("dipole ", 0) == 0)
                drawdipolepicture(s, std::stoi(key.substr(7)), false, width() / 2.0 - 64, height() / 2.0 - 64, 128, 128);
        } catch (...) {
            // A picture key the panel cannot read shows an empty picture.
        }
    }
    void mouseReleaseEvent(QMouseEvent* e) override {
        if (e->button() == Qt::LeftButton) logicevent([] { getdata.click("getdataimage", 0); });
    }
};

} // namespace

GetdataDialog::GetdataDialog(Window& w, QWidget* parent) : WindowDialog(w, parent, true) {
    setObjectName("Getdata");
    // Left column: picture and note; right: rows, keypad, buttons.
    constexpr int picw = 300, pich = 220, rowx = 320, rowy = 10, rowh = 27, labelw = 90, textw = 150;
    constexpr int keyx = rowx, keyy = rowy + 9 * rowh + 10, keyw = 40, keyh = 28;
    setFixedSize(rowx + labelw + textw + 20 > keyx + 6 * keyw + 20 ? rowx + labelw + textw + 20 : keyx + 6 * keyw + 20,
                 keyy + 5 * keyh + 60);
    picture_ = new PanelPicture(this);
    picture_->setGeometry(10, 10, picw, pich);
    notes_ = new QLabel(this);
    notes_->setObjectName("Notes");
    notes_->setWordWrap(true);
    notes_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    notes_->setGeometry(10, 20 + pich, picw, height() - pich - 80);
    notes_->setFrameShape(QFrame::StyledPanel);
    int bottom = height() - 40;
    rows_ = new ControlMirror(w, this, nullptr, [=](const Control& c, QRect& r) {
        if (c.name == "Label2") r = QRect(rowx, rowy + rowh * c.index + 3, labelw, rowh - 4);
        else if (c.name == "getvalue") r = QRect(rowx + labelw, rowy + rowh * c.index, textw, rowh - 3);
        else if (c.name == "keypad") {
            for (int row = 0; row < 5; ++row)
                for (int col = 0; col < 6; ++col)
                    if (keypadgrid[row][col] == c.index) {
                        // Cancel takes the place of the missing key beside it.
                        int span = c.index == 18 ? 2 : 1;
                        r = QRect(keyx + col * keyw, keyy + row * keyh, keyw * span - 2, keyh - 2);
                        return true;
                    }
            return false;
        } else if (c.name == "accept") r = QRect(10, bottom, 90, 30);
        else if (c.name == "set") r = QRect(110, bottom, 120, 30);
        else if (c.name == "restore") r = QRect(240, bottom, 120, 30);
        else if (c.name == "selectT") r = QRect(370, bottom, 150, 30);
        else return false;
        return true;
    });
    sync();
    for (QPushButton* b : findChildren<QPushButton*>()) {
        if (b->objectName().startsWith("keypad")) b->setFocusPolicy(Qt::NoFocus);
        if (b->objectName() == "accept") b->setDefault(true);
    }
}

void GetdataDialog::sync() {
    setWindowTitle(qs(w_.caption.empty() ? std::string("Enter Data") : w_.caption));
    rows_->sync();
    for (QPushButton* b : findChildren<QPushButton*>()) {
        QString n = b->objectName();
        if (n.startsWith("keypad(") && b->text().isEmpty()) {
            int i = n.mid(7, n.size() - 8).toInt();
            if (i >= 0 && i < 30) b->setText(QString::fromUtf8(keyfallback[i]));
            if (i == 21) b->hide();
        }
    }
    notes_->setText(qs(getdata.note()));
    picture_->update();
}

} // namespace zelk::qt
