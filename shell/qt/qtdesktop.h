// The Desktop port on Qt 6 Widgets: the frame window with its MDI area, menus mirrored
// from the menu model and the four-line help panel; logic windows shown as MDI children
// or dialogs; message boxes, file dialogs, settings, printing and the clipboard.
#pragma once

#include <QMainWindow>
#include <QMdiSubWindow>
#include <QPointer>
#include <map>
#include <memory>
#include <random>

#include "core/desktop.h"

class QAction;
class QEventLoop;
class QPagedPaintDevice;
class QLabel;
class QMdiArea;
class QMenu;
class QFrame;
class QPrinter;

namespace zelk::qt {

class HelpViewer;

class PixmapSurface;
class WindowDialog;
class WindowView;

// The main window DesignFrame.
class DesignFrame : public QMainWindow {
  public:
    DesignFrame();
    ~DesignFrame() override;
    // Builds the menu bar from the menu model.
    void buildmenubar();
    // Enabled, checked, captions and visibility of every menu entry from the model; the
    // help panel from the frame state.
    void syncmenus();
    QMdiArea* mdi() { return mdi_; }
    QFrame* helppanel() { return helppanel_; }
    QAction* action(const std::string& name);
    QMenu* menu(const std::string& name);
    // Runs a menu command as a click would (refused while disabled).
    void runmenu(const std::string& name);
    // Before New, Open and exit: "Save changes to ...?" while the design is not saved.
    // Save runs the Save command; false when the user cancelled (or cancelled the save).
    bool confirmdiscard();
    // The caption of the menu command running now ("" between commands), for fault boxes.
    static std::string runningcommand();
    void closeEvent(QCloseEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    bool eventFilter(QObject*, QEvent*) override;
    QLabel* helplabel(int i) { return labels_[i]; }

  private:
    QMdiArea* mdi_;
    QFrame* helppanel_;
    QLabel* labels_[4];
    std::map<std::string, QAction*> actions_;
    std::map<std::string, QMenu*> menus_;
    void fillmenu(QMenu* m, const std::string& parent);
};

class QtDesktop : public Desktop {
  public:
    QtDesktop();
    ~QtDesktop() override;
    static QtDesktop* instance();

    // Creates the frame and runs the start-up sequence.
    DesignFrame* start();
    DesignFrame* frameWindow() { return frame_; }

    void showmodal(Window& w) override;
    void show(Window& w) override;
    void hide(Window& w) override;
    void unload(Window& w) override;
    void refresh(Window& w) override;
    void popupmenu(const std::string& name) override;
    void arrange(int code) override;
    int msgbox(const std::string& text, int buttonsandicon, const std::string& title) override;
    bool filedialog(FileDialogRequest& request) override;
    void filenotread(const std::string& path, const std::string& reason) override;
    std::string getsetting(const std::string& app, const std::string& section, const std::string& key,
                           const std::string& def) override;
    void savesetting(const std::string& app, const std::string& section, const std::string& key,
                     const std::string& value) override;
    double rnd() override;
    std::string date() override;
    void doevents() override;
    void yield() override;
    void randomize() override;
    void busy(bool on) override;
    bool openurl(const std::string& url) override;
    bool startprogram(const std::string& path) override;
    void printwindow(Window& w) override;
    void clipboardwindow(Window& w) override;
    void printersetup() override;
    bool picture(Window& w, const std::string& format, std::string& bytes, std::string& why) override;
    std::string programdir() override;
    std::string userdatadir() override;

    // After any event: every open view and the menus from the logic; Exit ends the program.
    void afterevent();
    PixmapSurface& surfacefor(Window& w);
    // The view of a window that is up (dialog or MDI child), or nullptr.
    QWidget* viewof(Window& w);
    // The modal windows open now, innermost last (for tests).
    std::vector<Window*> modalstack() const;
    // The program's own help viewer, made on first use; F1 opens the contents in it.
    HelpViewer* helpviewer();
    void showhelp(const QString& pathorurl);
    // First start: with no options in the settings store at all, the installation's
    // choices (Help Line, Parts List, Show Filter Parameters) are written once.
    static void installdefaults();
    // The printer the print entries use, set up by Printer Setup and the print dialog.
    QPrinter& printer();
    // False: the print entries print to printer() as it is set, without the print dialog
    // (tests print to a PDF file this way).
    bool askprinter = true;
    // Draws window w onto the printer's page as lines and texts, scaled to the page with
    // its aspect kept. The page is the printer's current one.
    void printsurface(Window& w, QPagedPaintDevice& device);

  private:
    struct View {
        // Guarded: the frame owns them and may go first when the program ends.
        QPointer<WindowDialog> dialog;  // modal and free windows that do not draw
        QPointer<QMdiSubWindow> sub;    // windows that draw, as MDI children
        WindowView* view = nullptr;
        QEventLoop* loop = nullptr;
    };
    std::map<Window*, View> views_;
    std::map<Window*, std::unique_ptr<PixmapSurface>> surfaces_;
    std::vector<Window*> modal_;
    DesignFrame* frame_ = nullptr;
    std::mt19937_64 random_;
    std::unique_ptr<QPrinter> printer_;
    QPointer<HelpViewer> help_;
    bool syncing_ = false;
    int busy_ = 0;
    WindowDialog* makedialog(Window& w);
    void placepanel(QWidget* d, Window& w);
    void syncall();
};

} // namespace zelk::qt
