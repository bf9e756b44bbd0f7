#include "shell/qt/qtdesktop.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QCursor>
#include <QDate>
#include <QDesktopServices>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QBuffer>
#include <QMimeData>
#include <QPageSetupDialog>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>
#include <QVBoxLayout>
#include <chrono>
#include <cmath>
#include <filesystem>

#include <algorithm>

#include "analysis/plotframe.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "entry/panel.h"
#include "core/framestate.h"
#include "shell/frame.h"
#include "shell/help.h"
#include "shell/qt/helpviewer.h"
#include "shell/qt/qtsurface.h"
#include "shell/qt/views.h"

namespace zelk::qt {

namespace {
QtDesktop* current = nullptr;
QString qs(const std::string& s) { return QString::fromStdString(s); }

// The menu command running now and its kind, for the plain line under a fault box.
std::string running;
CommandKind runningkind = CommandKind::Plain;

// A menu's caption on the bar: top menus answer Alt + their first letter.
QString barcaption(const MenuItem& m) {
    QString caption = qs(m.caption);
    if (m.parent.empty() && !m.popup && !caption.contains('&')) caption.prepend('&');
    return caption;
}

std::string plaincaption(std::string c) {
    c.erase(std::remove(c.begin(), c.end(), '&'), c.end());
    return c;
}

// Keyboard shortcuts of the frame's menu entries.
const std::map<std::string, QKeySequence>& shortcuts() {
    static const std::map<std::string, QKeySequence> s = {
        {"newfilter", QKeySequence::New},   {"openfilter", QKeySequence::Open}, {"savefilter", QKeySequence::Save},
        {"pSch", QKeySequence::Print},      {"undo", QKeySequence::Undo},       {"exitfilter", QKeySequence(Qt::CTRL | Qt::Key_Q)},
    };
    return s;
}
} // namespace

// =======================================================================================
// DesignFrame

DesignFrame::DesignFrame() {
    setObjectName("DesignFrame");
    setWindowTitle("ZELK Filter Design");
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    helppanel_ = new QFrame(central);
    helppanel_->setObjectName("helpline");
    helppanel_->setFrameShape(QFrame::StyledPanel);
    helppanel_->setStyleSheet("QFrame#helpline { background: #ffffe8; }");
    auto* hl = new QVBoxLayout(helppanel_);
    hl->setContentsMargins(8, 3, 8, 3);
    hl->setSpacing(0);
    for (int i = 0; i < 4; ++i) {
        labels_[i] = new QLabel(helppanel_);
        labels_[i]->setObjectName(QString("Label%1").arg(i + 1));
        labels_[i]->setTextFormat(Qt::PlainText);
        hl->addWidget(labels_[i]);
    }
    mdi_ = new QMdiArea(central);
    mdi_->setObjectName("mdi");
    mdi_->setBackground(QColor(128, 128, 128));
    mdi_->viewport()->installEventFilter(this);
    layout->addWidget(helppanel_);
    layout->addWidget(mdi_, 1);
    setCentralWidget(central);
    // F10 opens the first menu of the bar, F1 the help contents in the program's viewer.
    new QShortcut(QKeySequence(Qt::Key_F10), this, [this] {
        for (QAction* a : menuBar()->actions())
            if (a->isVisible() && a->isEnabled()) {
                menuBar()->setFocus(Qt::MenuBarFocusReason);
                menuBar()->setActiveAction(a);
                break;
            }
    });
    new QShortcut(QKeySequence::HelpContents, this, [] {
        if (QtDesktop* d = QtDesktop::instance()) {
            std::string page = helppagepath(HELPFILE);
            if (page.empty()) guarded(helper_Click);
            else d->showhelp(qs(page));
            d->afterevent();
        }
    });
}

DesignFrame::~DesignFrame() = default;

void DesignFrame::fillmenu(QMenu* m, const std::string& parent) {
    for (const MenuItem& item : menuitems()) {
        if (item.parent != parent) continue;
        bool haschildren = false;
        for (const MenuItem& c : menuitems()) haschildren = haschildren || c.parent == item.name;
        std::string name = item.name;
        if (haschildren) {
            QMenu* sub = m->addMenu(qs(item.caption));
            sub->setObjectName(qs(name));
            menus_[name] = sub;
            fillmenu(sub, name);
        } else {
            QAction* a = m->addAction(qs(item.caption));
            a->setObjectName(qs(name));
            if (auto it = shortcuts().find(name); it != shortcuts().end()) a->setShortcut(it->second);
            QObject::connect(a, &QAction::triggered, this, [this, name] { runmenu(name); });
            actions_[name] = a;
        }
        // The edit pop-up puts a separator under "For Dipole".
        if (name == "fordipole") m->addSeparator();
    }
}

void DesignFrame::buildmenubar() {
    menuBar()->clear();
    for (auto& [n, m] : menus_)
        if (!m->parent() || m->parent() == this) m->deleteLater();
    actions_.clear();
    menus_.clear();
    for (const MenuItem& top : menuitems()) {
        if (!top.parent.empty()) continue;
        std::string name = top.name;
        QString caption = barcaption(top);
        QMenu* m = top.popup ? new QMenu(caption, this) : menuBar()->addMenu(caption);
        m->setObjectName(qs(name));
        menus_[name] = m;
        fillmenu(m, name);
        // A click on a menu title refreshes the help panel with that menu's lines.
        QObject::connect(m, &QMenu::aboutToShow, this, [name] {
            menutitle_Click(name);
            if (QtDesktop* d = QtDesktop::instance()) d->afterevent();
        });
        if (top.popup) continue;
    }
    syncmenus();
}

std::string DesignFrame::runningcommand() { return running; }

bool DesignFrame::confirmdiscard() {
    if (store.lastslot < 0 || frame.designsaved) return true;
    std::string title = slot(0).designtitle.empty() ? std::string("this design") : "\"" + slot(0).designtitle + "\"";
    QMessageBox box(this);
    box.setObjectName("savechanges");
    box.setWindowTitle("ZELK Filter Design");
    box.setIcon(QMessageBox::Question);
    box.setText(qs("Save changes to " + title + "?"));
    box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Save);
    box.setEscapeButton(QMessageBox::Cancel);
    int answer = box.exec();
    if (answer == QMessageBox::Discard) return true;
    if (answer != QMessageBox::Save) return false;
    if (const Command* c = findcommand("savefilter")) {
        running = "Save";
        runningkind = c->kind;
        runcommand(*c);
        running.clear();
    }
    if (QtDesktop* d = QtDesktop::instance()) d->afterevent();
    return frame.designsaved;
}

QAction* DesignFrame::action(const std::string& name) {
    if (auto it = actions_.find(name); it != actions_.end()) return it->second;
    if (auto it = menus_.find(name); it != menus_.end()) return it->second->menuAction();
    return nullptr;
}

QMenu* DesignFrame::menu(const std::string& name) {
    auto it = menus_.find(name);
    return it == menus_.end() ? nullptr : it->second;
}

void DesignFrame::syncmenus() {
    for (const MenuItem& item : menuitems()) {
        QAction* a = action(item.name);
        if (!a) continue;
        a->setEnabled(item.enabled);
        a->setText(barcaption(item));
        a->setVisible(item.visible);
        bool optionlike = item.checked || item.parent == "options" || item.parent == "window";
        a->setCheckable(optionlike);
        if (optionlike) a->setChecked(item.checked);
    }
    helppanel_->setVisible(frame.helppanelshown);
    for (int i = 0; i < 4; ++i) labels_[i]->setText(qs(frame.helplabel[i]));
}

void DesignFrame::runmenu(const std::string& name) {
    // The checked state of a checkable action is the model's, not the click's.
    if (!menuenabled(name)) return;
    // New, Open and Exit would drop a design that is not saved: ask first.
    if ((name == "newfilter" || name == "openfilter" || name == "exitfilter") && !confirmdiscard()) {
        if (QtDesktop* d = QtDesktop::instance()) d->afterevent();
        return;
    }
    const Command* c = findcommand(name);
    if (!c) {
        MsgBox("This command is not available in this version.", vbOKOnly | vbInformation, "ZELK Filter Design");
        if (QtDesktop* d = QtDesktop::instance()) d->afterevent();
        return;
    }
    std::string outer = running;
    CommandKind outerkind = runningkind;
    if (const MenuItem* m = findmenu(name)) running = plaincaption(m->caption);
    runningkind = c->kind;
    if (name == "exitfilter") frame.designsaved = true; // already asked
    runcommand(*c);
    running = outer;
    runningkind = outerkind;
    if (QtDesktop* d = QtDesktop::instance()) d->afterevent();
}

void DesignFrame::closeEvent(QCloseEvent* e) {
    if (!frame.ending) {
        if (!confirmdiscard()) {
            e->ignore();
            return;
        }
        frame.designsaved = true;
        guarded(frame_close);
    }
    e->accept();
    qApp->quit();
}

void DesignFrame::resizeEvent(QResizeEvent* e) {
    QMainWindow::resizeEvent(e);
    frame.framewidth = width();
    frame.frameheight = height();
    frame.helppanelheight = helppanel_->isVisible() ? helppanel_->height() : 0;
    // Plots size themselves from the client area of the frame, in twips (the MDI area is
    // laid out after this event, so its size is taken from the frame's).
    int clienth = height() - menuBar()->height() - frame.helppanelheight;
    plotshared.frameclientwidth = std::max(width(), 300) * 15.0;
    plotshared.frameclientheight = std::max(clienth, 200) * 15.0;
}

bool DesignFrame::eventFilter(QObject* o, QEvent* e) {
    if (e->type() == QEvent::Close) {
        if (auto* sub = qobject_cast<QMdiSubWindow*>(o)) {
            // An MDI child's close box is its window's close box.
            if (Window* w = findwindow(sub->objectName().toStdString())) {
                e->ignore();
                logicevent([w] { w->closebox(); });
                return true;
            }
        }
    }
    if (o == mdi_->viewport() && e->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(e)->button() == Qt::RightButton) {
        guarded(frame_rightclick);
        if (QtDesktop* d = QtDesktop::instance()) d->afterevent();
        return true;
    }
    return QMainWindow::eventFilter(o, e);
}

// =======================================================================================
// QtDesktop

QtDesktop::QtDesktop()
    : random_(static_cast<unsigned long long>(std::chrono::system_clock::now().time_since_epoch().count())) {
    current = this;
}

QtDesktop::~QtDesktop() {
    for (auto& [w, v] : views_) {
        if (v.loop) v.loop->quit();
        delete v.dialog;
        delete v.sub;
        w->surface = nullptr;
    }
    views_.clear();
    for (auto& [w, s] : surfaces_) w->surface = nullptr;
    if (current == this) current = nullptr;
}

QtDesktop* QtDesktop::instance() { return current; }

DesignFrame* QtDesktop::start() {
    frame_ = new DesignFrame;
    frame_->setAttribute(Qt::WA_DeleteOnClose, false);
    setdesktop(this);
    installdefaults();
    resetall();
    frame_->buildmenubar();
    // Top left, the screen's full width and 0.95 of its height.
    if (QScreen* s = QGuiApplication::primaryScreen()) {
        QRect g = s->availableGeometry();
        frame_->setGeometry(g.left(), g.top(), g.width(), static_cast<int>(g.height() * 0.95));
    } else {
        frame_->resize(1024, 700);
    }
    guarded(designframe_load);
    frame.framewidth = frame_->width();
    frame.frameheight = frame_->height();
    afterevent();
    return frame_;
}

void QtDesktop::installdefaults() {
    QSettings s("filter", "filter");
    s.beginGroup("options");
    if (!s.childKeys().isEmpty()) return;
    for (const OptionItem& o : optionitems()) {
        std::string item = o.item;
        if (item == "helpL" || item == "partslist" || item == "sfp") s.setValue(o.key, "1");
    }
    s.endGroup();
    s.sync();
}

HelpViewer* QtDesktop::helpviewer() {
    if (!help_) help_ = new HelpViewer(frame_);
    return help_;
}

void QtDesktop::showhelp(const QString& page) {
    HelpViewer* h = helpviewer();
    if (frame_ && !h->isVisible()) {
        QRect f = frame_->geometry();
        h->resize(std::min(900, f.width() - 80), std::min(700, f.height() - 80));
        h->move(f.left() + (f.width() - h->width()) / 2, f.top() + (f.height() - h->height()) / 2);
    }
    h->showpage(page);
}

PixmapSurface& QtDesktop::surfacefor(Window& w) {
    auto& s = surfaces_[&w];
    if (!s) {
        double u = w.unit > 0 ? w.unit : 1;
        s = std::make_unique<PixmapSurface>(w.clientwidth / u, w.clientheight / u, u);
    }
    w.surface = s.get();
    return *s;
}

QWidget* QtDesktop::viewof(Window& w) {
    auto it = views_.find(&w);
    if (it == views_.end()) return nullptr;
    if (it->second.sub) return it->second.sub;
    return it->second.dialog;
}

std::vector<Window*> QtDesktop::modalstack() const { return modal_; }

WindowDialog* QtDesktop::makedialog(Window& w) {
    WindowDialog* d = w.formname == "Getdata" ? static_cast<WindowDialog*>(new GetdataDialog(w, frame_))
                                              : new WindowDialog(w, frame_);
    d->setAttribute(Qt::WA_DeleteOnClose, false);
    return d;
}

void QtDesktop::placepanel(QWidget* d, Window& w) {
    if (!frame_) return;
    d->adjustSize();
    QRect f = frame_->geometry();
    int x = f.left() + (f.width() - d->width()) / 2;
    int y = f.top() + (f.height() - d->height()) / 8;
    if (w.formname != "Getdata") y = f.top() + (f.height() - d->height()) / 2;
    d->move(x < 0 ? 0 : x, y < 0 ? 0 : y);
}

void QtDesktop::showmodal(Window& w) {
    if (w.draws) surfacefor(w);
    View& v = views_[&w];
    bool first = !v.dialog;
    if (!v.dialog) v.dialog = makedialog(w);
    v.dialog->setWindowModality(Qt::ApplicationModal);
    w.activate();
    v.dialog->sync();
    if (first) placepanel(v.dialog, w);
    v.dialog->show();
    v.dialog->raise();
    v.dialog->activateWindow();
    afterevent();
    modal_.push_back(&w);
    QEventLoop loop;
    views_[&w].loop = &loop;
    while (w.visible && w.loaded) loop.exec();
    if (auto it = views_.find(&w); it != views_.end()) it->second.loop = nullptr;
    modal_.erase(std::remove(modal_.begin(), modal_.end(), &w), modal_.end());
}

void QtDesktop::show(Window& w) {
    // A scaled window opens as large as the logic asked, and draws its fixed layout.
    double askedw = w.clientwidth, askedh = w.clientheight;
    if (scaledwindow(w)) {
        double u = w.unit > 0 ? w.unit : 1;
        QSize l = scaledlayout();
        w.clientwidth = l.width() * u;
        w.clientheight = l.height() * u;
        if (auto it = surfaces_.find(&w); it != surfaces_.end() && it->second) {
            PixmapSurface& s = *it->second;
            if (s.scalewidth() != w.clientwidth || s.scaleheight() != w.clientheight) s.resize(l.width(), l.height(), s.ratio());
        }
    }
    if (w.draws) surfacefor(w);
    View& v = views_[&w];
    if (w.draws) {
        if (!v.sub) {
            v.view = new WindowView(w);
            v.sub = frame_ ? frame_->mdi()->addSubWindow(v.view) : nullptr;
            if (v.sub) {
                v.sub->setObjectName(qs(w.formname));
                v.sub->setAttribute(Qt::WA_DeleteOnClose, false);
                // The close box is the window's own.
                v.sub->installEventFilter(frame_);
                QObject::connect(v.sub, &QObject::destroyed, [this, &w] { views_.erase(&w); });
                double u = w.unit > 0 ? w.unit : 1;
                v.sub->resize(static_cast<int>(askedw / u) + 12, static_cast<int>(askedh / u) + 34);
                if (scaledwindow(w)) {
                    // Zoom in, out and fit: keys while the window is active, and its
                    // window menu.
                    WindowView* view = v.view;
                    auto add = [&](const char* text, QList<QKeySequence> keys, std::function<void()> fn) {
                        auto* a = new QAction(text, v.sub);
                        a->setShortcuts(keys);
                        a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
                        QObject::connect(a, &QAction::triggered, v.sub, fn);
                        v.sub->addAction(a);
                        v.sub->systemMenu()->addAction(a);
                    };
                    v.sub->systemMenu()->addSeparator();
                    add("Zoom &In", {QKeySequence::ZoomIn, QKeySequence(Qt::CTRL | Qt::Key_Equal)}, [view] { view->zoomby(1.25); });
                    add("Zoom &Out", {QKeySequence::ZoomOut}, [view] { view->zoomby(1 / 1.25); });
                    add("&Fit to Window", {QKeySequence(Qt::CTRL | Qt::Key_0)}, [view] { view->fit(); });
                }
                v.sub->move(static_cast<int>(w.left / u), static_cast<int>(w.top / u));
            }
        }
        if (v.sub) {
            v.sub->setWindowTitle(qs(w.caption));
            v.sub->show();
        }
    } else {
        if (!v.dialog) {
            v.dialog = makedialog(w);
            v.dialog->setWindowModality(Qt::NonModal);
            placepanel(v.dialog, w);
        }
        v.dialog->show();
    }
    w.activate();
    afterevent();
}

void QtDesktop::hide(Window& w) {
    auto it = views_.find(&w);
    if (it == views_.end()) return;
    if (it->second.loop) it->second.loop->quit();
    if (it->second.dialog) it->second.dialog->hide();
    if (it->second.sub) {
        // A maximised child hands the frame its title and buttons back before it goes.
        if (it->second.sub->isMaximized()) it->second.sub->showNormal();
        it->second.sub->hide();
    }
}

void QtDesktop::unload(Window& w) {
    auto it = views_.find(&w);
    if (it == views_.end()) return;
    View v = it->second;
    views_.erase(it);
    if (v.loop) v.loop->quit();
    if (v.dialog) {
        v.dialog->hide();
        v.dialog->deleteLater();
    }
    if (v.sub) {
        if (v.sub->isMaximized()) v.sub->showNormal();
        v.sub->hide();
        QObject::disconnect(v.sub, &QObject::destroyed, nullptr, nullptr);
        v.sub->deleteLater();
    }
}

void QtDesktop::refresh(Window& w) {
    auto it = views_.find(&w);
    if (it == views_.end()) return;
    if (it->second.dialog) it->second.dialog->sync();
    if (it->second.sub) {
        it->second.sub->setWindowTitle(qs(w.caption));
        it->second.view->sync();
    }
}

void QtDesktop::syncall() {
    if (syncing_) return;
    syncing_ = true;
    std::vector<Window*> ws;
    for (auto& [w, v] : views_) ws.push_back(w);
    for (Window* w : ws) refresh(*w);
    if (frame_) {
        frame_->syncmenus();
        // Nothing open (after New): the plain title again.
        bool anyshown = false;
        for (QMdiSubWindow* s : frame_->mdi()->subWindowList()) anyshown = anyshown || s->isVisible();
        if (!anyshown && frame_->windowTitle() != "ZELK Filter Design") frame_->setWindowTitle("ZELK Filter Design");
    }
    syncing_ = false;
}

void QtDesktop::afterevent() {
    syncall();
    if (frame.ending && frame_) {
        frame.ending = false;
        for (auto& [w, v] : views_)
            if (v.loop) v.loop->quit();
        frame_->close();
    }
}

void QtDesktop::popupmenu(const std::string& name) {
    if (!frame_) return;
    if (QMenu* m = frame_->menu(name)) {
        frame_->syncmenus();
        m->popup(QCursor::pos());
    }
}

void QtDesktop::arrange(int code) {
    if (!frame_) return;
    QMdiArea* mdi = frame_->mdi();
    QList<QMdiSubWindow*> subs;
    for (QMdiSubWindow* s : mdi->subWindowList())
        if (s->isVisible() && !s->isMinimized()) subs.push_back(s);
    switch (code) {
    case 0: mdi->cascadeSubWindows(); break;
    case 1:
    case 2: {
        // Tile: two windows side by side (vertical) or stacked (horizontal); more in a
        // grid of near-square cells, filled row by row (horizontal) or column by column
        // (vertical), so that no plot gets a strip too thin for its labels and buttons.
        if (subs.isEmpty()) break;
        QRect area = mdi->viewport()->rect();
        int n = static_cast<int>(subs.size());
        int cols = n <= 2 ? (code == 2 ? n : 1) : static_cast<int>(std::ceil(std::sqrt(static_cast<double>(n))));
        int rows = (n + cols - 1) / cols;
        for (int i = 0; i < n; ++i) {
            int row = code == 2 && n > 2 ? i % rows : i / cols;
            int col = code == 2 && n > 2 ? i / rows : i % cols;
            QRect r(area.width() * col / cols, area.height() * row / rows, area.width() / cols, area.height() / rows);
            subs[i]->showNormal();
            subs[i]->setGeometry(r);
        }
        break;
    }
    default: {
        // Icons: the minimised children lined up along the foot of the area.
        int x = 0;
        for (QMdiSubWindow* s : mdi->subWindowList())
            if (s->isMinimized()) {
                s->move(x, mdi->viewport()->height() - s->height());
                x += s->width();
            }
        break;
    }
    }
}

int QtDesktop::msgbox(const std::string& text, int flags, const std::string& title) {
    QMessageBox box(frame_);
    box.setWindowTitle(qs(title));
    std::string shown = text;
    // A run-time fault keeps the host's box and adds what ran and what to look at.
    if (text.rfind("Run-time error '", 0) == 0) {
        std::string what = running.empty() ? std::string("The last action") : "The command \"" + running + "\"";
        std::string check = runningkind == CommandKind::Design
                                ? "check that every typed value is a positive number in range."
                            : runningkind == CommandKind::Edit
                                ? "check the value typed for the dipole; the edit was put back."
                                : "check the design's values and any file it reads.";
        shown += "\n\n" + what + " stopped here: " + check;
    }
    box.setText(qs(shown));
    box.setTextFormat(Qt::PlainText);
    switch (flags & 0x70) {
    case vbCritical: box.setIcon(QMessageBox::Critical); break;
    case vbQuestion: box.setIcon(QMessageBox::Question); break;
    case vbExclamation: box.setIcon(QMessageBox::Warning); break;
    case vbInformation: box.setIcon(QMessageBox::Information); break;
    default: box.setIcon(QMessageBox::NoIcon); break;
    }
    static const std::vector<std::pair<QMessageBox::StandardButton, int>> sets[6] = {
        {{QMessageBox::Ok, vbOK}},
        {{QMessageBox::Ok, vbOK}, {QMessageBox::Cancel, vbCancel}},
        {{QMessageBox::Abort, vbAbort}, {QMessageBox::Retry, vbRetry}, {QMessageBox::Ignore, vbIgnore}},
        {{QMessageBox::Yes, vbYes}, {QMessageBox::No, vbNo}, {QMessageBox::Cancel, vbCancel}},
        {{QMessageBox::Yes, vbYes}, {QMessageBox::No, vbNo}},
        {{QMessageBox::Retry, vbRetry}, {QMessageBox::Cancel, vbCancel}},
    };
    int b = flags & 7;
    const auto& set = sets[b < 6 ? b : 0];
    QMessageBox::StandardButtons buttons;
    for (auto& [sb, v] : set) buttons |= sb;
    box.setStandardButtons(buttons);
    box.setDefaultButton(set.front().first);
    // Esc answers Cancel where there is one, else the only or first answer.
    bool hascancel = false;
    for (auto& [sb, v] : set) hascancel = hascancel || v == vbCancel;
    box.setEscapeButton(hascancel ? QMessageBox::Cancel : set.front().first);
    // The close box answers Cancel where there is one, else the only or first answer.
    int ret = box.exec();
    for (auto& [sb, v] : set)
        if (ret == sb) return v;
    for (auto& [sb, v] : set)
        if (v == vbCancel) return v;
    return set.front().second;
}

bool QtDesktop::filedialog(FileDialogRequest& r) {
    // "Description (*.sch)|*.sch|..." into Qt's "Description (*.sch);;..."
    QStringList filters;
    QStringList parts = qs(r.filter).split('|');
    for (int i = 0; i + 1 < parts.size(); i += 2)
        filters << (parts[i].contains('(') ? parts[i] : parts[i] + " (" + parts[i + 1].replace(';', ' ') + ")");
    if (filters.isEmpty() && !r.filter.empty()) filters << qs(r.filter);
    filters << "All Files (*)";
    QString start = qs(r.initdir);
    if (!r.filename.empty()) start = QDir(start).filePath(QFileInfo(qs(r.filename)).fileName());
    QFileDialog dlg(frame_, qs(r.title), start, filters.join(";;"));
    dlg.setObjectName("filedialog");
    dlg.setOption(QFileDialog::DontUseNativeDialog);
    dlg.setAcceptMode(r.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dlg.setFileMode(r.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // A name typed without an extension gets the first filter's, as desktop dialogs do:
    // the program then takes the last four characters for the extension.
    QString first = parts.size() > 1 ? parts[1] : QString();
    if (first.startsWith("*.") && first.lastIndexOf('*') == 0) dlg.setDefaultSuffix(first.mid(2));
    if (r.save && !r.filename.empty() && r.filename.find('*') == std::string::npos)
        dlg.selectFile(QFileInfo(qs(r.filename)).fileName());
    int ok = dlg.exec();
    afterevent();
    QStringList chosen = dlg.selectedFiles();
    if (ok != QDialog::Accepted || chosen.isEmpty() || chosen.front().isEmpty()) return false;
    r.filename = chosen.front().toStdString();
    return true;
}

void QtDesktop::filenotread(const std::string& path, const std::string& reason) {
    QMessageBox::warning(frame_, "ZELK Filter Design", qs("Cannot read " + path + "\n" + reason));
    afterevent();
}

std::string QtDesktop::getsetting(const std::string& app, const std::string& section, const std::string& key,
                                  const std::string& def) {
    QSettings s("filter", qs(app));
    return s.value(qs(section + "/" + key), qs(def)).toString().toStdString();
}

void QtDesktop::savesetting(const std::string& app, const std::string& section, const std::string& key,
                            const std::string& value) {
    QSettings s("filter", qs(app));
    s.setValue(qs(section + "/" + key), qs(value));
    s.sync();
}

double QtDesktop::rnd() { return std::uniform_real_distribution<double>(0.0, 1.0)(random_); }

std::string QtDesktop::date() {
    QDate d = QDate::currentDate();
    return std::to_string(d.month()) + "/" + std::to_string(d.day()) + "/" + std::to_string(d.year());
}

void QtDesktop::doevents() {
    if (frame_) frame_->syncmenus();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

// A long run gives way with the user's input too: a click on its label stops it.
void QtDesktop::yield() {
    if (frame_) frame_->syncmenus();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtDesktop::randomize() {
    random_.seed(static_cast<unsigned long long>(
        std::chrono::steady_clock::now().time_since_epoch().count()));
}

void QtDesktop::busy(bool on) {
    if (on) {
        ++busy_;
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else if (busy_ > 0) {
        --busy_;
        QApplication::restoreOverrideCursor();
    }
}

bool QtDesktop::openurl(const std::string& url) {
    QUrl u(qs(url));
    if (QDesktopServices::openUrl(u)) return true;
    // No web browser: the installed pages open in the program's own viewer.
    if (u.isLocalFile() && QFileInfo(u.toLocalFile()).isFile()) {
        showhelp(u.toLocalFile());
        return true;
    }
    return false;
}

bool QtDesktop::startprogram(const std::string& path) { return QProcess::startDetached(qs(path), {}); }

QPrinter& QtDesktop::printer() {
    if (!printer_) printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *printer_;
}

void QtDesktop::printsurface(Window& w, QPagedPaintDevice& device) {
    const RecordingSurface& rec = surfacefor(w).recording();
    const double u = rec.unit() > 0 ? rec.unit() : 1;
    const double W = std::max(1.0, rec.scalewidth() / u), H = std::max(1.0, rec.scaleheight() / u);
    QPainter p(&device);
    // The painter's window is the printable area in device pixels; the surface's pixels
    // are scaled to fill it with the aspect kept, from the top left corner.
    const QRect page = p.viewport();
    const double scale = std::min(page.width() / W, page.height() / H);
    p.scale(scale, scale);
    p.setClipRect(QRectF(0, 0, W, H));
    replay(rec, p);
}

void QtDesktop::printwindow(Window& w) {
    if (!w.draws) return;
    // The buttons and the cursor bar are no part of the surface: the replay of its
    // recording holds the frame, the curves and the labels only.
    if (askprinter) {
        QPrintDialog dlg(&printer(), frame_);
        dlg.setWindowTitle(qs("Print " + w.caption));
        int ok = dlg.exec();
        afterevent();
        if (ok != QDialog::Accepted) return;
    }
    printsurface(w, printer());
}

void QtDesktop::clipboardwindow(Window& w) {
    if (!w.draws) return;
    QClipboard* c = QGuiApplication::clipboard();
    c->clear();
    // A bitmap for every program, and the same drawing as SVG for those that take it
    // (office documents paste it sharp at any size).
    auto* data = new QMimeData;
    data->setImageData(surfacefor(w).pixmap().toImage());
    data->setData("image/svg+xml", QByteArray::fromStdString(surfacefor(w).recording().svg()));
    c->setMimeData(data);
}

void QtDesktop::printersetup() {
    // The page setup of the printer the print entries use; a cancel changes nothing.
    QPageSetupDialog dlg(&printer(), frame_);
    dlg.setWindowTitle("Printer Setup");
    dlg.exec();
    afterevent();
}

bool QtDesktop::picture(Window& w, const std::string& format, std::string& bytes, std::string& why) {
    if (!w.draws) {
        why = "the window has no drawing";
        return false;
    }
    PixmapSurface& s = surfacefor(w);
    if (format == "svg") {
        bytes = s.recording().svg();
        return true;
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (format == "png") {
        if (!s.pixmap().save(&buffer, "PNG")) {
            why = "cannot make the PNG image";
            return false;
        }
    } else if (format == "pdf") {
        // One page the size of the window at 96 pixels to the inch, no margins.
        const RecordingSurface& rec = s.recording();
        const double u = rec.unit() > 0 ? rec.unit() : 1;
        QPdfWriter pdf(&buffer);
        pdf.setCreator("ZELK Filter Design");
        pdf.setTitle(qs(w.caption));
        pdf.setPageSize(QPageSize(QSizeF(rec.scalewidth() / u * 0.75, rec.scaleheight() / u * 0.75), QPageSize::Point));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        printsurface(w, pdf);
    } else {
        why = "no picture format " + format;
        return false;
    }
    bytes = buffer.data().toStdString();
    return true;
}

std::string QtDesktop::programdir() {
    namespace fs = std::filesystem;
    if (const char* p = std::getenv("ZELK_PROGRAMDIR"); p && *p) return p;
    fs::path dir = QCoreApplication::applicationDirPath().toStdString();
    std::error_code ec;
    for (fs::path p : {dir, dir.parent_path(), dir.parent_path() / "share" / "zelkfilter"})
        if (fs::exists(p / "tables", ec)) return p.string();
    return dir.string();
}

std::string QtDesktop::userdatadir() {
    if (const char* u = std::getenv("ZELK_USERDIR"); u && *u) return u;
    QString d = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(d);
    return d.toStdString();
}

} // namespace zelk::qt
