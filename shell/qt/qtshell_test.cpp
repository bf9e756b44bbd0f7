// The desktop application driven through its real widgets: menus from the model, a
// Butterworth low-pass clicked through the selector and panel dialogs and compared with
// the same design run as a batch script, options kept across a restart, New closing the
// child windows. Runs on the offscreen platform; with ZELK_SCREENSHOTS set to a folder the
// dialogs are also saved there as PNG files.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QListWidget>
#include <QTest>
#include <QTimer>
#include <deque>
#include <functional>
#include <sstream>

#include "batch/runner.h"
#include "core/commands.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "schematic/inductors.h"
#include "shell/frame.h"
#include "shell/qt/qtdesktop.h"
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

void screenshot(QWidget* w, const char* name) {
    QByteArray dir = qgetenv("ZELK_SCREENSHOTS");
    if (dir.isEmpty()) return;
    QDir().mkpath(QString::fromLocal8Bit(dir));
    w->grab().save(QDir(QString::fromLocal8Bit(dir)).filePath(name));
}

std::string slotdump() {
    std::ostringstream out;
    dumpslot(0, out);
    return out.str();
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
        screenshot(f, "frame-start.png");
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
        // No settings: the help panel is hidden.
        EXPECT_FALSE(f->helppanel()->isVisibleTo(f));
        // Options through their menu items, saved in the settings store.
        trigger(f, "helpL");
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
        screenshot(f, "frame-trouble.png");
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
    EXPECT_FALSE(f->action("sfp")->isChecked());
    EXPECT_EQ(f->helplabel(0)->text().toStdString(), "Select a filter response.");
    trigger(f, "nano");
    trigger(f, "helpL");
    delete f;
    setdesktop(nullptr);
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
    c.steps.push_back({"selfunction", [](QWidget* v) {
                           QTest::mouseClick(button(v, "selection(0)"), Qt::LeftButton);
                           // One click on the configuration picture steps from Pi to T.
                           QTest::mouseClick(v->findChild<QWidget*>("canvas"), Qt::LeftButton, {}, QPoint(100, 100));
                           screenshot(v, "selfunction.png");
                           QTest::mouseClick(button(v, "selection(4)"), Qt::LeftButton);
                       }});
    c.steps.push_back({"Getdata", [](QWidget* v) {
                           typeinto(v, 0, "10M");
                           typeinto(v, 1, "15M");
                           typeinto(v, 2, "3");
                           typeinto(v, 3, "");
                           typeinto(v, 4, "5");
                           typeinto(v, 5, "50");
                           typeinto(v, 6, "50");
                           screenshot(v, "getdata.png");
                           QTest::mouseClick(button(v, "accept"), Qt::LeftButton);
                       }});
    c.steps.push_back({"Getdata", [](QWidget* v) {
                           typeinto(v, 0, "100");
                           QTest::mouseClick(button(v, "accept"), Qt::LeftButton);
                       }});
    c.steps.push_back({"designtitle", [](QWidget* v) {
                           auto* e = v->findChild<QLineEdit*>("Text1");
                           e->selectAll();
                           QTest::keyClicks(e, "Qt low-pass");
                           QTest::mouseClick(button(v, "Command1"), Qt::LeftButton);
                       }});
    trigger(f, "butterworth");
    // The design title window opens only when the schematic asks for it.
    if (!c.steps.empty() && c.steps.front().first == "designtitle") c.steps.pop_front();
    EXPECT_TRUE(c.steps.empty());
    for (const std::string& s : c.seen) EXPECT_EQ(s.rfind("unexpected", 0), std::string::npos) << s;
    EXPECT_EQ(slotdump(), expected);

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
                           screenshot(v, "inductors.png");
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
    trigger(f, "newfilter");
    EXPECT_EQ(store.lastslot, -1);
    EXPECT_TRUE(f->action("butterworth")->isEnabled());
    delete f;
    setdesktop(nullptr);
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
