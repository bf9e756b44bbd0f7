// The desktop application driven through its real widgets: menus from the model, a
// Butterworth low-pass clicked through the selector and panel dialogs and compared with
// the same design run as a batch script, options kept across a restart, New closing the
// child windows. Runs on the offscreen platform.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QMimeData>
#include <QPrinter>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <deque>
#include <functional>
#include <sstream>
#include <vector>

#include "batch/runner.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "schematic/inductors.h"
#include "shell/frame.h"
#include "shell/help.h"
#include <QScreen>
#include "schematic/schematicview.h"
#include "shell/qt/qtdesktop.h"
#include "shell/qt/views.h"
#include "testsupport.h"

using namespace zelk;
using namespace zelk::qt;

namespace {

// Answers modal windows as a user would, one step per window, from a timer that runs
// inside the dialogs' own event loops.
struct Clicker {
    QtDesktop& desk;
    std::deque<std::pair<std::string, std::function<void(QWidget*)>>> steps;
    std::vector<std::string> seen;
    QTimer timer;
    explicit Clicker(QtDesktop& d) : desk(d) {
        timer.setInterval(20);
        QObject::connect(&timer, &QTimer::timeout, [this] { tick(); });
        timer.start();
    }
    void tick() {
        auto stack = desk.modalstack();
        if (stack.empty()) return;
        Window* w = stack.back();
        QWidget* view = desk.viewof(*w);
        if (!view || !view->isVisible()) return;
        if (steps.empty() || steps.front().first != w->formname) {
            // Not expected: close it so that the test cannot hang.
            seen.push_back("unexpected " + w->formname);
            view->close();
            return;
        }
        auto step = steps.front();
        steps.pop_front();
        seen.push_back(w->formname);
        step.second(view);
    }
};

QPushButton* button(QWidget* view, const QString& name) {
    for (QPushButton* b : view->findChildren<QPushButton*>())
        if (b->objectName() == name) return b;
    return nullptr;
}

void typeinto(QWidget* view, int row, const QString& text) {
    auto* e = view->findChild<QLineEdit*>(QString("getvalue(%1)").arg(row));
    ASSERT_NE(e, nullptr) << row;
    e->setFocus();
    e->selectAll();
    QTest::keyClick(e, Qt::Key_Backspace);
    if (!text.isEmpty()) QTest::keyClicks(e, text);
}

// Queues a Butterworth design through the real dialogs: the selector's kind button (for T
// also one click on its configuration picture), the rows of the design panel from the top
// ("" clears a row), the Q row ("" keeps its default) and the design title.
void queuebutterworth(Clicker& c, int kind, bool tee, std::vector<QString> rows, QString q, QString title) {
    c.steps.push_back({"selfunction", [kind, tee](QWidget* v) {
                           QTest::mouseClick(button(v, QString("selection(%1)").arg(kind)), Qt::LeftButton);
                           if (tee) QTest::mouseClick(v->findChild<QWidget*>("canvas"), Qt::LeftButton, {}, QPoint(100, 100));
                           QTest::mouseClick(button(v, "selection(4)"), Qt::LeftButton);
                       }});
    c.steps.push_back({"Getdata", [rows](QWidget* v) {
                           for (int i = 0; i < static_cast<int>(rows.size()); ++i) typeinto(v, i, rows[static_cast<size_t>(i)]);
                           QTest::mouseClick(button(v, "accept"), Qt::LeftButton);
                       }});
    c.steps.push_back({"Getdata", [q](QWidget* v) {
                           if (!q.isEmpty()) typeinto(v, 0, q);
                           QTest::mouseClick(button(v, "accept"), Qt::LeftButton);
                       }});
    c.steps.push_back({"designtitle", [title](QWidget* v) {
                           auto* e = v->findChild<QLineEdit*>("Text1");
                           e->selectAll();
                           QTest::keyClicks(e, title);
                           QTest::mouseClick(button(v, "Command1"), Qt::LeftButton);
                       }});
}

std::string slotdump() {
    std::ostringstream out;
    dumpslot(0, out);
    return out.str();
}

// Answers the next modal Qt dialog (message box, file dialog) that `fn` accepts.
struct ModalAnswer {
    QTimer timer;
    bool done = false;
    explicit ModalAnswer(std::function<bool(QWidget*)> fn) {
        timer.setInterval(20);
        QObject::connect(&timer, &QTimer::timeout, [this, fn] {
            QWidget* m = QApplication::activeModalWidget();
            if (!done && m && m->isVisible() && fn(m)) {
                done = true;
                timer.stop();
            }
        });
        timer.start();
    }
};

bool clickbox(QWidget* m, QMessageBox::StandardButton b) {
    auto* box = qobject_cast<QMessageBox*>(m);
    if (!box || box->objectName() != "savechanges") return false;
    box->button(b)->click();
    return true;
}

void trigger(DesignFrame* f, const char* name) {
    QAction* a = f->action(name);
    ASSERT_NE(a, nullptr) << name;
    ASSERT_TRUE(a->isEnabled()) << name;
    a->trigger();
}

} // namespace

TEST(QtShell, MenusOptionsAndNew) {
    QSettings("filter", "filter").clear();
    {
        QtDesktop desk;
        DesignFrame* f = desk.start();
        f->show();
        // The bar mirrors the model: FILE first, the edit pop-up is no part of it.
        ASSERT_NE(f->menu("file"), nullptr);
        ASSERT_NE(f->menu("edit"), nullptr);
        EXPECT_EQ(f->action("newfilter")->text(), "&New");
        EXPECT_EQ(f->action("newfilter")->shortcut(), QKeySequence(QKeySequence::New));
        EXPECT_EQ(f->action("exitfilter")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
        // Start-up states of the nothing-open block.
        EXPECT_TRUE(f->action("openfilter")->isEnabled());
        EXPECT_FALSE(f->action("savefilter")->isEnabled());
        EXPECT_FALSE(f->action("PEG")->isEnabled());
        EXPECT_FALSE(f->action("undo")->isEnabled());
        EXPECT_TRUE(f->action("design")->isEnabled());
        // First start: the installation's help line is on.
        EXPECT_TRUE(f->helppanel()->isVisibleTo(f));
        // Options through their menu items, saved in the settings store.
        trigger(f, "nano");
        EXPECT_TRUE(f->action("nano")->isChecked());
        EXPECT_TRUE(f->helppanel()->isVisibleTo(f));
        EXPECT_EQ(QSettings("filter", "filter").value("options/nano").toString(), "1");
        // A menu title writes its help lines into the panel.
        Q_EMIT f->menu("utilities")->aboutToShow();
        EXPECT_EQ(f->helplabel(1)->text().toStdString(), "Append or Insert a filter to concatinate two filters.");

        // New closes the child windows.
        trigger(f, "troubleshoot");
        auto visiblechildren = [f] {
            int n = 0;
            for (QMdiSubWindow* s : f->mdi()->subWindowList()) n += s->isVisible() ? 1 : 0;
            return n;
        };
        EXPECT_EQ(visiblechildren(), 1);
        trigger(f, "newfilter");
        QApplication::processEvents();
        EXPECT_EQ(visiblechildren(), 0);
        delete f;
        setdesktop(nullptr);
    }
    // A restart reads the options back.
    QtDesktop desk;
    DesignFrame* f = desk.start();
    EXPECT_TRUE(menuchecked("nano"));
    EXPECT_TRUE(f->action("nano")->isChecked());
    EXPECT_TRUE(f->action("helpL")->isChecked());
    EXPECT_TRUE(f->action("sfp")->isChecked()); // installation default
    EXPECT_FALSE(f->action("showcoil")->isChecked());
    EXPECT_EQ(f->helplabel(0)->text().toStdString(), "Select a filter response.");
    trigger(f, "nano");
    trigger(f, "helpL");
    delete f;
    setdesktop(nullptr);
}

// First start writes the installation's options once; a later start keeps what the user
// chose since, and an options section that holds anything at all is never filled in.
TEST(QtShell, FirstStartDefaultsWrittenOnce) {
    struct Case {
        const char* what;
        std::vector<std::pair<const char*, const char*>> before; // settings before the start
        std::vector<std::pair<const char*, bool>> checked;       // menu items after it
    };
    const Case cases[] = {
        {"fresh store", {}, {{"helpL", true}, {"partslist", true}, {"sfp", true}, {"nano", false}, {"showcoil", false}, {"exacttime", false}}},
        {"user turned parts list off", {{"helpl", "1"}, {"partslist", "0"}, {"showparameters", "1"}},
         {{"helpL", true}, {"partslist", false}, {"sfp", true}}},
        {"only a help folder saved", {{"zkhelplocation", "/nowhere"}}, {{"helpL", false}, {"partslist", false}, {"sfp", false}}},
    };
    for (const Case& c : cases) {
        QSettings("filter", "filter").clear();
        for (auto& [k, v] : c.before) QSettings("filter", "filter").setValue(QString("options/") + k, v);
        QtDesktop desk;
        DesignFrame* f = desk.start();
        for (auto& [item, on] : c.checked) EXPECT_EQ(f->action(item)->isChecked(), on) << c.what << ": " << item;
        if (c.before.empty()) {
            // Written, and a choice made after the first start survives the next start.
            EXPECT_EQ(QSettings("filter", "filter").value("options/showparameters").toString(), "1");
            trigger(f, "partslist");
            delete f;
            setdesktop(nullptr);
            QtDesktop again;
            DesignFrame* g = again.start();
            EXPECT_FALSE(g->action("partslist")->isChecked());
            EXPECT_TRUE(g->action("helpL")->isChecked());
            delete g;
        } else {
            delete f;
        }
        setdesktop(nullptr);
    }
    QSettings("filter", "filter").clear();
}

TEST(QtShell, ButterworthLowPassThroughTheDialogs) {
    QSettings("filter", "filter").clear();
    // The same design as a batch script: T configuration, 10 MHz / 15 MHz, order 5, Q 100.
    std::string expected;
    {
        test::Session s;
        ASSERT_EQ(s.run("> selfunction: selection(0) picture \"Accept design\"\n"
                        "> Getdata: 10M 15M 3 \"\" 5 50 50\n"
                        "> Getdata: 100\n"
                        ">? designtitle: Text1=\"Qt low-pass\" Command1\n"
                        "butterworth\n"),
                  0)
            << s.err.str();
        expected = slotdump();
        setdesktop(nullptr);
    }
    ASSERT_NE(expected.find("code = \"BLP\""), std::string::npos);

    QtDesktop desk;
    DesignFrame* f = desk.start();
    f->show();
    Clicker c(desk);
    // Low-pass, one click on the configuration picture steps from Pi to T.
    queuebutterworth(c, 0, true, {"10M", "15M", "3", "", "5", "50", "50"}, "100", "Qt low-pass");
    trigger(f, "butterworth");
    // The design title window opens only when the schematic asks for it.
    if (!c.steps.empty() && c.steps.front().first == "designtitle") c.steps.pop_front();
    EXPECT_TRUE(c.steps.empty());
    for (const std::string& s : c.seen) EXPECT_EQ(s.rfind("unexpected", 0), std::string::npos) << s;
    EXPECT_EQ(slotdump(), expected);

    // The schematic shows its layout scaled to the window; a click on each dipole at 1:1,
    // at 2:1 and at the fitted zoom selects that dipole.
    QMdiSubWindow* sub = nullptr;
    for (QMdiSubWindow* s : f->mdi()->subWindowList())
        if (s->objectName() == "schematic") sub = s;
    ASSERT_NE(sub, nullptr);
    auto* view = dynamic_cast<WindowView*>(sub->widget());
    ASSERT_NE(view, nullptr);
    Canvas* canvas = view->canvas();
    sub->resize(scaledlayout());
    QApplication::processEvents();
    double small = canvas->zoom();
    EXPECT_DOUBLE_EQ(small, 1.0);
    sub->resize(scaledlayout() * 2 + QSize(40, 60));
    QApplication::processEvents();
    EXPECT_GT(canvas->zoom(), 1.8);
    EXPECT_TRUE(view->fitting());
    int count = slot(0).count();
    ASSERT_GE(count, 3);
    auto clickall = [&](const char* what) {
        double z = canvas->zoom();
        for (int n = 1; n <= count; ++n) {
            const Control* sym = schematicwindow(0).find("symbol", n);
            if (!sym || !sym->visible || sym->width <= 0) continue;
            schem.selecteddipole = -1;
            QPoint at(static_cast<int>((sym->left + sym->width / 2) * z), static_cast<int>((sym->top + sym->height / 2) * z));
            QTest::mouseClick(canvas, Qt::LeftButton, {}, at);
            EXPECT_EQ(schem.selecteddipole, n) << what << " zoom " << z;
        }
    };
    clickall("fit");
    sub->resize(scaledlayout());
    QApplication::processEvents();
    view->zoomby(0.5); // never below 1:1
    EXPECT_DOUBLE_EQ(canvas->zoom(), 1.0);
    EXPECT_FALSE(view->fitting());
    clickall("100%");
    view->zoomby(2);
    EXPECT_DOUBLE_EQ(canvas->zoom(), 2.0);
    EXPECT_EQ(canvas->width(), scaledlayout().width() * 2);
    clickall("200%");
    view->fit();
    EXPECT_TRUE(view->fitting());

    // New over the unsaved design asks first; Cancel keeps the design.
    ASSERT_FALSE(frame.designsaved);
    {
        ModalAnswer cancel([](QWidget* m) { return clickbox(m, QMessageBox::Cancel); });
        trigger(f, "newfilter");
        EXPECT_TRUE(cancel.done);
        EXPECT_EQ(store.lastslot, 0);
        EXPECT_EQ(slotdump(), expected);
    }
    // Save with a name typed without an extension: the dialog adds ".sch".
    QString saveddir;
    {
        ModalAnswer save([&saveddir](QWidget* m) {
            auto* d = qobject_cast<QFileDialog*>(m);
            if (!d) return false;
            auto* name = d->findChild<QLineEdit*>("fileNameEdit");
            if (!name) return false;
            saveddir = d->directory().absolutePath();
            QFile::remove(QDir(saveddir).filePath("my butter.sch"));
            name->setText("my butter");
            static_cast<QDialog*>(d)->accept(); // the dialog's own accept: adds the suffix
            return true;
        });
        trigger(f, "savefilter");
        EXPECT_TRUE(save.done);
    }
    EXPECT_TRUE(QFileInfo(QDir(saveddir).filePath("my butter.sch")).isFile()) << saveddir.toStdString();
    EXPECT_FALSE(QFileInfo(QDir(saveddir).filePath("my bu.sch")).exists());
    EXPECT_TRUE(frame.designsaved);

    // Design Inductors through the mirrored lists: the first inductor air-wound on half
    // an inch in AWG 22. The toggle refills the form list with the diameters.
    std::string item;
    c.steps.push_back({"inductors", [&item](QWidget* v) {
                           QTest::mouseClick(button(v, "Command3"), Qt::LeftButton);
                           auto* l1 = v->findChild<QListWidget*>("List1");
                           auto* l2 = v->findChild<QListWidget*>("List2");
                           auto* l3 = v->findChild<QListWidget*>("List3");
                           ASSERT_TRUE(l1 && l2 && l3);
                           ASSERT_EQ(l1->count(), 37);
                           l1->setCurrentRow(l1->row(l1->findItems(".500", Qt::MatchExactly).value(0)));
                           l2->setCurrentRow(l2->row(l2->findItems("22", Qt::MatchExactly).value(0)));
                           ASSERT_GT(l3->count(), 0);
                           item = l3->item(0)->text().toStdString();
                           l3->setCurrentRow(0);
                           QTest::mouseClick(button(v, "Command1"), Qt::LeftButton);
                           QTest::mouseClick(button(v, "Command2"), Qt::LeftButton);
                       }});
    trigger(f, "dinductor");
    EXPECT_TRUE(c.steps.empty());
    ASSERT_EQ(item.rfind("L ", 0), 0u) << item;
    {
        const Dipole& d = slot(0).dip(static_cast<int>(Val(item.substr(2))));
        EXPECT_EQ(d.Lcore, "air");
        EXPECT_EQ(d.Lturns, airwinding(d.L * 1000000, 0.5, 36.56).turns);
    }
    // The winding left the design unsaved; the New further down is about the window
    // state, not the save question, so the design counts as saved again.
    EXPECT_FALSE(frame.designsaved);
    frame.designsaved = true;

    // One design: the menus of the one-design block, through the actions.
    EXPECT_TRUE(f->action("savefilter")->isEnabled());
    EXPECT_TRUE(f->action("PEG")->isEnabled());
    EXPECT_FALSE(f->action("design")->isEnabled());
    EXPECT_FALSE(f->action("enter")->isEnabled());
    EXPECT_TRUE(f->action("dinductor")->isEnabled());
    // Two designs: the design menu comes back with only the unnamed families reachable.
    store.lastslot = 1;
    updatemenus();
    desk.afterevent();
    EXPECT_FALSE(f->action("openfilter")->isEnabled());
    EXPECT_TRUE(f->action("design")->isEnabled());
    EXPECT_FALSE(f->action("butterworth")->isEnabled());
    EXPECT_TRUE(f->action("MCL")->isEnabled());
    EXPECT_FALSE(f->action("nano")->isEnabled());
    // New with the schematic maximised (saved: no question) gives the frame its own title
    // and an empty work area back.
    sub->showMaximized();
    QApplication::processEvents();
    trigger(f, "newfilter");
    QApplication::processEvents();
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_TRUE(f->action("butterworth")->isEnabled());
    EXPECT_EQ(f->windowTitle(), "ZELK Filter Design");
    EXPECT_FALSE(sub->isMaximized());
    delete f;
    setdesktop(nullptr);
}

// Esc is Cancel: in the function selector it abandons the design instead of accepting.
// The top menus answer Alt + their first letter.
TEST(QtShell, EscapeCancelsAndMenuKeys) {
    QtDesktop desk;
    DesignFrame* f = desk.start();
    f->show();
    for (const char* m : {"file", "utilities", "analysis", "design", "options", "window", "about"})
        EXPECT_TRUE(f->menu(m)->title().startsWith('&')) << m;
    Clicker c(desk);
    c.steps.push_back({"selfunction", [](QWidget* v) { QTest::keyClick(v, Qt::Key_Escape); }});
    trigger(f, "butterworth");
    EXPECT_TRUE(c.steps.empty());
    for (const std::string& s : c.seen) EXPECT_EQ(s.rfind("unexpected", 0), std::string::npos) << s;
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_TRUE(f->action("butterworth")->isEnabled());
    delete f;
    setdesktop(nullptr);
}

// Enter Design: the series palette is a window of pictures beside the schematic; a click
// on the resistor picture opens its value panel and brings up the shunt palette, whose
// CANCEL button drops the entry.
TEST(QtShell, HandEntryPalettes) {
    QtDesktop desk;
    DesignFrame* f = desk.start();
    f->show();
    trigger(f, "enter");
    auto sub = [&](const char* name) -> QMdiSubWindow* {
        for (QMdiSubWindow* s : f->mdi()->subWindowList())
            if (s->objectName() == name) return s;
        return nullptr;
    };
    QMdiSubWindow* h = sub("dipolesH");
    ASSERT_NE(h, nullptr);
    EXPECT_TRUE(h->isVisible());
    ASSERT_NE(sub("schematic"), nullptr);
    EXPECT_GT(sub("schematic")->x(), h->x());
    auto* hv = dynamic_cast<WindowView*>(h->widget());
    ASSERT_NE(hv, nullptr);
    EXPECT_NE(button(h->widget(), "Hdipole(8)"), nullptr);
    EXPECT_EQ(button(h->widget(), "Hdipole(26)")->text(), "CANCEL");

    Clicker c(desk);
    c.steps.push_back({"Getdata", [](QWidget* v) {
                           typeinto(v, 0, "75");
                           QTest::mouseClick(button(v, "accept"), Qt::LeftButton);
                       }});
    const Control* r = findwindow("dipolesH")->find("Hdipole", 1);
    ASSERT_NE(r, nullptr);
    QTest::mouseClick(hv->canvas(), Qt::LeftButton, {},
                      QPoint(static_cast<int>(r->left + r->width / 2), static_cast<int>(r->top + r->height / 2)));
    EXPECT_TRUE(c.steps.empty());
    EXPECT_EQ(slot(0).count(), 1);
    EXPECT_EQ(slot(0).dip(1).R, 75);
    QMdiSubWindow* v = sub("dipolesV");
    ASSERT_NE(v, nullptr);
    EXPECT_TRUE(v->isVisible());
    EXPECT_FALSE(h->isVisible());
    QTest::mouseClick(button(v->widget(), "vdipole(30)"), Qt::LeftButton);
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_FALSE(store.entering);
    delete f;
    setdesktop(nullptr);
}

// With ZELK_SCREENSHOTS set (run under a real display, 1400 by 900): a fresh start, a
// band-pass with its schematic maximised, four tiled plots and the help viewer.
TEST(QtShell, ScreenshotTour) {
    if (qEnvironmentVariableIsEmpty("ZELK_SCREENSHOTS")) GTEST_SKIP() << "ZELK_SCREENSHOTS not set";
    QSettings("filter", "filter").clear();
    QtDesktop desk;
    DesignFrame* f = desk.start();
    f->show();
    auto settle = [] {
        for (int i = 0; i < 20; ++i) {
            QApplication::processEvents();
            QTest::qWait(20);
        }
    };
    auto shoot = [&](const char* name) {
        settle();
        QDir dir(QString::fromLocal8Bit(qgetenv("ZELK_SCREENSHOTS")));
        QGuiApplication::primaryScreen()->grabWindow(0).save(dir.filePath(name));
    };
    shoot("tour-1-start.png");
    // Every prompt answered with its defaults; the selector picks a band-pass.
    Clicker c(desk);
    queuebutterworth(c, 2, false, {"10M", "1M", "2", "3", "60", "", "50", "50"}, "100", "Band-pass 10 MHz");
    trigger(f, "butterworth");
    for (QMdiSubWindow* s : f->mdi()->subWindowList())
        if (s->objectName() == "schematic") s->showMaximized();
    shoot("tour-2-bandpass.png");
    for (const char* plot : {"PIG", "GD", "inputz", "USR"}) {
        for (int i = 0; i < 3; ++i)
            c.steps.push_back({"Getdata", [](QWidget* v) { QTest::mouseClick(button(v, "accept"), Qt::LeftButton); }});
        ModalAnswer yes([](QWidget* m) {
            auto* box = qobject_cast<QMessageBox*>(m);
            if (!box) return false;
            box->defaultButton() ? box->defaultButton()->click() : box->accept();
            return true;
        });
        trigger(f, plot);
        c.steps.clear();
        settle();
    }
    trigger(f, "tileH");
    shoot("tour-3-plots.png");
    desk.showhelp(QString::fromStdString(helppagepath(HELPFILE)));
    shoot("tour-4-help.png");
    frame.designsaved = true;
    delete f;
    setdesktop(nullptr);
}

// The print entries of a plot and of the schematic printed to a PDF file through the same
// code as from the menu (the dialog left out), rendered by pdftoppm: lines and texts on
// the page, the labels in it, no button caption; the buttons are up again afterwards.
// Then the Export entries write every format through the file dialog.
TEST(QtShell, PrintAndExportEntries) {
    if (std::system("pdftoppm -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "pdftoppm (poppler-utils) is not installed";
    QSettings("filter", "filter").clear();
    QtDesktop desk;
    DesignFrame* f = desk.start();
    f->show();
    Clicker c(desk);
    queuebutterworth(c, 0, false, {"10M", "15M", "3", "", "5"}, "", "Printed low-pass");
    trigger(f, "butterworth");
    c.steps.clear();
    for (int i = 0; i < 3; ++i)
        c.steps.push_back({"Getdata", [](QWidget* v) { QTest::mouseClick(button(v, "accept"), Qt::LeftButton); }});
    trigger(f, "PEG");
    c.steps.clear();
    Window* plot = findwindow("plotPEG");
    ASSERT_NE(plot, nullptr);
    ASSERT_TRUE(plot->loaded);

    QDir dir(QDir::temp().filePath("zelk-qt-print"));
    dir.removeRecursively();
    QDir().mkpath(dir.path());
    desk.askprinter = false;
    desk.printer().setOutputFormat(QPrinter::PdfFormat);
    struct Case {
        const char* entry;
        const char* file;
        const char* label; // a text of the drawing that the PDF must carry
    };
    const Case cases[] = {{"pPEG", "peg.pdf", "Power Effective Gain"}, {"pSch", "schematic.pdf", "Printed low-pass"}};
    std::vector<std::string> captions;
    for (const char* n : {"Command1", "Command2", "Command3"})
        if (Control* b = plot->find(n)) captions.push_back(b->caption);
    ASSERT_FALSE(captions.empty());
    for (const Case& k : cases) {
        QString pdf = dir.filePath(k.file);
        desk.printer().setOutputFileName(pdf);
        trigger(f, k.entry);
        ASSERT_TRUE(QFileInfo(pdf).size() > 1000) << k.entry;
        QString base = dir.filePath(QString(k.file).replace(".pdf", ""));
        std::string render = "pdftoppm -r 60 -png -singlefile '" + pdf.toStdString() + "' '" + base.toStdString() + "'";
        ASSERT_EQ(std::system(render.c_str()), 0) << render;
        std::string totext = "pdftotext '" + pdf.toStdString() + "' '" + base.toStdString() + ".txt'";
        ASSERT_EQ(std::system(totext.c_str()), 0) << totext;
        QImage page(base + ".png");
        ASSERT_FALSE(page.isNull()) << k.entry;
        // Dark pixels of the frame, curve and labels, on a page that is mostly white.
        long dark = 0;
        for (int y = 0; y < page.height(); ++y)
            for (int x = 0; x < page.width(); ++x) dark += qGray(page.pixel(x, y)) < 128;
        EXPECT_GT(dark, 300) << k.entry;
        EXPECT_LT(dark, page.width() * page.height() / 4) << k.entry;
        QFile t(base + ".txt");
        ASSERT_TRUE(t.open(QIODevice::ReadOnly));
        // pdftotext writes the ligature of "ff" as one character.
        QString text = QString::fromUtf8(t.readAll()).replace(QChar(0xFB00), "ff").simplified();
        EXPECT_TRUE(text.contains(k.label)) << k.entry << ": " << text.toStdString();
        for (const std::string& cap : captions)
            EXPECT_FALSE(!cap.empty() && text.contains(QString::fromStdString(cap))) << k.entry << " shows " << cap;
    }
    for (const char* n : {"Command1", "Command2", "Command3"})
        if (Control* b = plot->find(n)) {
            EXPECT_TRUE(b->visible) << n;
        }
    QWidget* view = desk.viewof(*plot);
    ASSERT_NE(view, nullptr);
    for (QPushButton* b : view->findChildren<QPushButton*>()) EXPECT_TRUE(b->isVisible()) << b->objectName().toStdString();

    // FILE > Export: each entry's file dialog answered with a name; the format follows it.
    const std::pair<const char*, const char*> exports[] = {
        {"xPEG", "x-peg.svg"}, {"xPEG", "x-peg.pdf"}, {"xPEG", "x-peg.png"},         {"xPEG", "x-peg.csv"},
        {"xSch", "x-sch.svg"}, {"xSch", "x-sch.pdf"}, {"xSch", "x-sch.png"},         {"xTouchstone", "x-filter.s2p"},
        {"xSpice", "x-filter.cir"}};
    for (auto& [entry, name] : exports) {
        QString path = dir.filePath(name);
        ModalAnswer save([path](QWidget* m) {
            auto* d = qobject_cast<QFileDialog*>(m);
            auto* edit = d ? d->findChild<QLineEdit*>("fileNameEdit") : nullptr;
            if (!edit) return false;
            edit->setText(path);
            static_cast<QDialog*>(d)->accept();
            return true;
        });
        trigger(f, entry);
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::ReadOnly)) << entry << ' ' << name;
        QByteArray head = out.read(16);
        QString ext = QFileInfo(path).suffix();
        if (ext == "svg") {
            EXPECT_TRUE(head.startsWith("<?xml")) << name;
        }
        if (ext == "pdf") {
            EXPECT_TRUE(head.startsWith("%PDF-")) << name;
        }
        if (ext == "png") {
            EXPECT_TRUE(head.startsWith("\x89PNG")) << name;
        }
        if (ext == "csv") {
            EXPECT_TRUE(head.startsWith("Frequency (Hz)")) << name;
        }
        if (ext == "s2p") {
            EXPECT_TRUE(head.startsWith("! ZELK")) << name;
        }
        if (ext == "cir") {
            EXPECT_TRUE(head.startsWith("* ")) << name;
        }
    }
    // The clipboard entry: a bitmap and the SVG drawing.
    trigger(f, "cPEG");
    const QMimeData* clip = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(clip, nullptr);
    EXPECT_TRUE(clip->hasImage());
    EXPECT_TRUE(clip->data("image/svg+xml").contains("Power Effective Gain"));

    frame.designsaved = true;
    delete f;
    setdesktop(nullptr);
}

// The Options item draws the exact curve on the open step plot through the Qt surface:
// the plot's bitmap on the clipboard has the curve's green, and loses it with the option.
TEST(QtShell, ExactTimeResponseOnTheStepPlot) {
    QSettings("filter", "filter").clear();
    QtDesktop desk;
    DesignFrame* f = desk.start();
    f->show();
    Clicker c(desk);
    queuebutterworth(c, 0, false, {"1M", "2M", "3", "", "5"}, "", "Exact step");
    trigger(f, "butterworth");
    c.steps.clear();
    c.steps.push_back({"Getdata", [](QWidget* v) { QTest::mouseClick(button(v, "accept"), Qt::LeftButton); }});
    trigger(f, "USR");
    c.steps.clear();
    auto green = [f] {
        trigger(f, "cUSR");
        QImage im = QGuiApplication::clipboard()->image();
        long n = 0;
        for (int y = 0; y < im.height(); ++y)
            for (int x = 0; x < im.width(); ++x) {
                QRgb p = im.pixel(x, y);
                n += qGreen(p) > 100 && qRed(p) < 60 && qBlue(p) < 60;
            }
        return n;
    };
    EXPECT_EQ(green(), 0);
    trigger(f, "exacttime");
    EXPECT_TRUE(f->action("exacttime")->isChecked());
    EXPECT_EQ(QSettings("filter", "filter").value("options/exacttime").toString(), "1");
    EXPECT_GT(green(), 200);
    trigger(f, "exacttime");
    EXPECT_EQ(green(), 0);
    frame.designsaved = true;
    delete f;
    setdesktop(nullptr);
    QSettings("filter", "filter").clear();
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
