// The desktop application driven through its real widgets on the offscreen platform: the
// options written at the first start and kept afterwards, the bar mirroring the menu
// model, a Butterworth low-pass clicked through the dialogs against the same design run
// as a batch script, the schematic's zoom and dipole clicks, the save and unsaved-changes
// questions, the print and export entries, Escape and the entry palettes, all in one
// session. (The
// inductor window's lists are the batch tests'.)
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPrinter>
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
#include "schematic/schematicview.h"
#include "shell/frame.h"
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
    // Every step taken and no window that was not expected.
    void expectdone() {
        EXPECT_TRUE(steps.empty());
        for (const std::string& s : seen) EXPECT_EQ(s.rfind("unexpected", 0), std::string::npos) << s;
    }
};

QPushButton* button(QWidget* view, const QString& name) { return view->findChild<QPushButton*>(name); }

void click(QWidget* view, const QString& name) { QTest::mouseClick(button(view, name), Qt::LeftButton); }

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
                           click(v, QString("selection(%1)").arg(kind));
                           if (tee) QTest::mouseClick(v->findChild<QWidget*>("canvas"), Qt::LeftButton, {}, QPoint(100, 100));
                           click(v, "selection(4)");
                       }});
    c.steps.push_back({"Getdata", [rows](QWidget* v) {
                           for (int i = 0; i < static_cast<int>(rows.size()); ++i) typeinto(v, i, rows[static_cast<size_t>(i)]);
                           click(v, "accept");
                       }});
    c.steps.push_back({"Getdata", [q](QWidget* v) {
                           if (!q.isEmpty()) typeinto(v, 0, q);
                           click(v, "accept");
                       }});
    c.steps.push_back({"designtitle", [title](QWidget* v) {
                           auto* e = v->findChild<QLineEdit*>("Text1");
                           e->selectAll();
                           QTest::keyClicks(e, title);
                           click(v, "Command1");
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

// A file dialog answered with a name typed into its own field and its own accept (which
// adds the suffix of the chosen type when the name has none); `dir` gets its folder, where
// no file `name`.sch is left from an earlier run.
std::function<bool(QWidget*)> typename_(const QString& name, QString* dir = nullptr) {
    return [name, dir](QWidget* m) {
        auto* d = qobject_cast<QFileDialog*>(m);
        auto* edit = d ? d->findChild<QLineEdit*>("fileNameEdit") : nullptr;
        if (!edit) return false;
        if (dir) {
            *dir = d->directory().absolutePath();
            QFile::remove(QDir(*dir).filePath(name + ".sch"));
        }
        edit->setText(name);
        static_cast<QDialog*>(d)->accept();
        return true;
    };
}

void trigger(DesignFrame* f, const char* name) {
    QAction* a = f->action(name);
    ASSERT_NE(a, nullptr) << name;
    ASSERT_TRUE(a->isEnabled()) << name;
    a->trigger();
}

QMdiSubWindow* child(DesignFrame* f, const char* name) {
    for (QMdiSubWindow* s : f->mdi()->subWindowList())
        if (s->objectName() == name) return s;
    return nullptr;
}

void stop(DesignFrame* f) {
    frame.designsaved = true;
    delete f;
    setdesktop(nullptr);
}

} // namespace

// First start writes the installation's options once; a later start keeps what the user
// chose since, and an options section that holds anything at all is never filled in.
TEST(QtShell, FirstStartWritesTheOptionsOnce) {
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
        EXPECT_EQ(f->helppanel()->isVisibleTo(f), f->action("helpL")->isChecked()) << c.what;
        if (!c.before.empty()) {
            stop(f);
            continue;
        }
        // Written, and the choices made through the menu items survive the next start.
        EXPECT_EQ(QSettings("filter", "filter").value("options/showparameters").toString(), "1");
        trigger(f, "partslist");
        trigger(f, "nano");
        EXPECT_EQ(QSettings("filter", "filter").value("options/nano").toString(), "1");
        stop(f);
        QtDesktop again;
        DesignFrame* g = again.start();
        EXPECT_FALSE(g->action("partslist")->isChecked());
        EXPECT_TRUE(g->action("nano")->isChecked());
        EXPECT_TRUE(g->action("helpL")->isChecked());
        EXPECT_EQ(g->helplabel(0)->text().toStdString(), "Select a filter response.");
        stop(g);
    }
    QSettings("filter", "filter").clear();
}

// The bar is built from the menu model: captions, shortcuts, Alt letters and the states
// of the nothing-open block; a menu title writes its help lines; New closes the children.
TEST(QtShell, MenuBarMirrorsTheModel) {
    QSettings("filter", "filter").clear();
    QtDesktop desk;
    DesignFrame* f = desk.start();
    f->show();
    ASSERT_NE(f->menu("edit"), nullptr);
    for (const char* m : {"file", "utilities", "analysis", "design", "options", "window", "about"})
        EXPECT_TRUE(f->menu(m)->title().startsWith('&')) << m;
    EXPECT_EQ(f->action("newfilter")->text(), "&New");
    EXPECT_EQ(f->action("newfilter")->shortcut(), QKeySequence(QKeySequence::New));
    EXPECT_EQ(f->action("exitfilter")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    for (const char* name : {"openfilter", "savefilter", "PEG", "undo", "design"})
        EXPECT_EQ(f->action(name)->isEnabled(), menuenabled(name)) << name;
    EXPECT_FALSE(f->action("savefilter")->isEnabled());
    Q_EMIT f->menu("utilities")->aboutToShow();
    EXPECT_EQ(f->helplabel(1)->text().toStdString(), "Append or Insert a filter to concatinate two filters.");
    auto visiblechildren = [f] {
        int n = 0;
        for (QMdiSubWindow* s : f->mdi()->subWindowList()) n += s->isVisible() ? 1 : 0;
        return n;
    };
    trigger(f, "troubleshoot");
    EXPECT_EQ(visiblechildren(), 1);
    trigger(f, "newfilter");
    QApplication::processEvents();
    EXPECT_EQ(visiblechildren(), 0);
    stop(f);
}

TEST(QtShell, ButterworthLowPassThroughTheDialogs) {
    QSettings("filter", "filter").clear();
    // The same design as a batch script: T configuration, 10 MHz / 15 MHz, order 5, Q 100.
    std::string expected;
    {
        test::Session s;
        ASSERT_EQ(s.run("> selfunction: selection(0) picture \"Accept design\"\n"
                        "> Getdata: 10M 15M 3 \"\" 5 50 50\n> Getdata: 100\n"
                        ">? designtitle: Text1=\"Qt low-pass\" Command1\nbutterworth\n"),
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
    queuebutterworth(c, 0, true, {"10M", "15M", "3", "", "5", "50", "50"}, "100", "Qt low-pass");
    trigger(f, "butterworth");
    // The design title window opens only when the schematic asks for it.
    if (!c.steps.empty() && c.steps.front().first == "designtitle") c.steps.pop_front();
    c.expectdone();
    EXPECT_EQ(slotdump(), expected);

    // The schematic shows its layout scaled to the window; a click on each dipole at the
    // fitted zoom, at 1:1 and at 2:1 selects that dipole.
    QMdiSubWindow* sub = child(f, "schematic");
    ASSERT_NE(sub, nullptr);
    auto* view = dynamic_cast<WindowView*>(sub->widget());
    ASSERT_NE(view, nullptr);
    Canvas* canvas = view->canvas();
    sub->resize(scaledlayout());
    QApplication::processEvents();
    EXPECT_DOUBLE_EQ(canvas->zoom(), 1.0);
    sub->resize(scaledlayout() * 2 + QSize(40, 60));
    QApplication::processEvents();
    EXPECT_GT(canvas->zoom(), 1.8);
    EXPECT_TRUE(view->fitting());
    const int count = slot(0).count();
    ASSERT_GE(count, 3);
    auto clickall = [&](const char* what) {
        const double z = canvas->zoom();
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
        ModalAnswer cancel([](QWidget* m) {
            auto* box = qobject_cast<QMessageBox*>(m);
            if (!box || box->objectName() != "savechanges") return false;
            box->button(QMessageBox::Cancel)->click();
            return true;
        });
        trigger(f, "newfilter");
        EXPECT_TRUE(cancel.done);
        EXPECT_EQ(store.lastslot, 0);
        EXPECT_EQ(slotdump(), expected);
    }
    // Save with a name typed without an extension: the dialog adds ".sch".
    QString saveddir;
    {
        ModalAnswer save(typename_("my butter", &saveddir));
        trigger(f, "savefilter");
        EXPECT_TRUE(save.done);
    }
    EXPECT_TRUE(QFileInfo(QDir(saveddir).filePath("my butter.sch")).isFile()) << saveddir.toStdString();
    EXPECT_FALSE(QFileInfo(QDir(saveddir).filePath("my bu.sch")).exists());
    EXPECT_TRUE(frame.designsaved);

    // The print entries of the gain plot and of the schematic printed to PDF files through
    // the same code as from the menu (the dialog left out), read back by pdftotext: the
    // labels on the page, no button caption; the buttons are up again afterwards. Then the
    // Export entries write every format through the file dialog, and the clipboard entry
    // copies a bitmap and the drawing.
    const bool pdftotext = std::system("pdftotext -v > /dev/null 2>&1") == 0;
    c.steps.clear();
    for (int i = 0; i < 3; ++i) c.steps.push_back({"Getdata", [](QWidget* v) { click(v, "accept"); }});
    trigger(f, "PEG");
    Window* plot = findwindow("plotPEG");
    ASSERT_TRUE(plot && plot->loaded);

    QDir dir(QDir::temp().filePath("zelk-qt-print"));
    dir.removeRecursively();
    QDir().mkpath(dir.path());
    desk.askprinter = false;
    desk.printer().setOutputFormat(QPrinter::PdfFormat);
    std::vector<QString> captions;
    for (const char* n : {"Command1", "Command2", "Command3"})
        if (Control* b = plot->find(n)) captions.push_back(QString::fromStdString(b->caption));
    ASSERT_FALSE(captions.empty());
    for (auto [entry, label] : {std::pair{"pPEG", "Power Effective Gain"}, std::pair{"pSch", "Qt low-pass"}}) {
        const QString base = dir.filePath(entry), pdf = base + ".pdf";
        desk.printer().setOutputFileName(pdf);
        trigger(f, entry);
        ASSERT_GT(QFileInfo(pdf).size(), 1000) << entry;
        if (!pdftotext) continue; // poppler-utils not installed: the page is not read back
        const std::string b = base.toStdString();
        ASSERT_EQ(std::system(("pdftotext '" + b + ".pdf' '" + b + ".txt'").c_str()), 0) << entry;
        QFile t(base + ".txt");
        ASSERT_TRUE(t.open(QIODevice::ReadOnly));
        // pdftotext writes the ligature of "ff" as one character.
        const QString text = QString::fromUtf8(t.readAll()).replace(QChar(0xFB00), "ff").simplified();
        EXPECT_TRUE(text.contains(label)) << entry << ": " << text.toStdString();
        for (const QString& cap : captions) EXPECT_FALSE(!cap.isEmpty() && text.contains(cap)) << entry;
    }
    for (QPushButton* b : desk.viewof(*plot)->findChildren<QPushButton*>())
        EXPECT_TRUE(b->isVisible()) << b->objectName().toStdString();

    // FILE > Export: each entry's file dialog answered with a name; the format follows it.
    const struct {
        const char *entry, *name, *head;
    } exports[] = {{"xPEG", "x-peg.svg", "<?xml"},         {"xPEG", "x-peg.pdf", "%PDF-"},
                   {"xPEG", "x-peg.png", "\x89PNG"},       {"xPEG", "x-peg.csv", "Frequency (Hz)"},
                   {"xSch", "x-sch.svg", "<?xml"},         {"xSch", "x-sch.pdf", "%PDF-"},
                   {"xSch", "x-sch.png", "\x89PNG"},       {"xTouchstone", "x-filter.s2p", "! ZELK"},
                   {"xSpice", "x-filter.cir", "* "}};
    for (const auto& x : exports) {
        ModalAnswer save(typename_(dir.filePath(x.name)));
        trigger(f, x.entry);
        QFile out(dir.filePath(x.name));
        ASSERT_TRUE(out.open(QIODevice::ReadOnly)) << x.name;
        EXPECT_TRUE(out.read(16).startsWith(x.head)) << x.name;
    }
    trigger(f, "cPEG");
    const QMimeData* clip = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(clip, nullptr);
    EXPECT_TRUE(clip->hasImage());
    EXPECT_TRUE(clip->data("image/svg+xml").contains("Power Effective Gain"));

    // New with the schematic maximised (saved: no question) gives the frame its own title
    // and an empty work area back.
    frame.designsaved = true;
    sub->showMaximized();
    QApplication::processEvents();
    trigger(f, "newfilter");
    QApplication::processEvents();
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_TRUE(f->action("butterworth")->isEnabled());
    EXPECT_EQ(f->windowTitle(), "ZELK Filter Design");
    EXPECT_FALSE(sub->isMaximized());
    // Esc is Cancel: in the function selector it abandons the design instead of accepting.
    // Enter Design: the series palette is a window of pictures beside the schematic; a
    // click on the resistor picture opens its value panel and brings up the shunt palette,
    // whose CANCEL button drops the entry.
    c.steps.clear();
    c.seen.clear();
    c.steps.push_back({"selfunction", [](QWidget* v) { QTest::keyClick(v, Qt::Key_Escape); }});
    trigger(f, "butterworth");
    c.expectdone();
    EXPECT_EQ(store.lastslot, -1);

    trigger(f, "enter");
    QMdiSubWindow* h = child(f, "dipolesH");
    ASSERT_NE(h, nullptr);
    EXPECT_TRUE(h->isVisible());
    ASSERT_NE(child(f, "schematic"), nullptr);
    EXPECT_GT(child(f, "schematic")->x(), h->x());
    EXPECT_EQ(button(h->widget(), "Hdipole(26)")->text(), "CANCEL");
    c.steps.push_back({"Getdata", [](QWidget* v) {
                           typeinto(v, 0, "75");
                           click(v, "accept");
                       }});
    const Control* r = findwindow("dipolesH")->find("Hdipole", 1);
    ASSERT_NE(r, nullptr);
    QTest::mouseClick(dynamic_cast<WindowView*>(h->widget())->canvas(), Qt::LeftButton, {},
                      QPoint(static_cast<int>(r->left + r->width / 2), static_cast<int>(r->top + r->height / 2)));
    c.expectdone();
    EXPECT_EQ(slot(0).dip(1).R, 75);
    QMdiSubWindow* v = child(f, "dipolesV");
    ASSERT_NE(v, nullptr);
    EXPECT_TRUE(v->isVisible());
    EXPECT_FALSE(h->isVisible());
    click(v->widget(), "vdipole(30)");
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_FALSE(store.entering);
    stop(f);
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
