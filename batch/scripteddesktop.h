// The scripted desktop: the Desktop port of the batch runner. Modal windows take their
// answers from a queue filled by the script; nothing ever waits for a keyboard.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "batch/scriptreader.h"
#include "core/desktop.h"
#include "core/surface.h"

namespace zelk {

// A run stops: status 1 (a line that cannot be run) or 2 (a modal window without an
// answer, or answers nobody asked for).
struct BatchStop {
    int status;
    std::string message;
};

struct QueuedAnswer {
    std::string window;
    std::vector<std::string> actions; // raw tokens
    bool optional = false;
    long serial = 0; // commands started before it was queued
    int line = 0;
};

struct MessageRecord {
    std::string title;
    int buttons;
    std::string answer;
    std::string text;
};

class ScriptedDesktop : public Desktop {
  public:
    ScriptedDesktop();

    std::deque<QueuedAnswer> queue;
    std::vector<MessageRecord> messages;
    std::map<std::string, std::string> settings; // "app/section/key" -> value
    std::string settingsfile;                  // --settings FILE, written back on change
    std::string programdir_, userdatadir_;
    std::vector<std::string> opened; // pages and programs asked to be opened
    std::vector<std::pair<std::string, std::string>> unread; // files not read, and why

    void showmodal(Window& w) override;
    void show(Window& w) override;
    void hide(Window&) override {}
    void unload(Window&) override {}
    int msgbox(const std::string& text, int buttonsandicon, const std::string& title) override;
    bool filedialog(FileDialogRequest& request) override;
    void filenotread(const std::string& path, const std::string& reason) override {
        unread.push_back({path, reason});
    }
    std::string getsetting(const std::string& app, const std::string& section,
                           const std::string& key, const std::string& def) override;
    void savesetting(const std::string& app, const std::string& section, const std::string& key,
                     const std::string& value) override;
    double rnd() override;
    // Seeds from the clock, or from `seed` when the script fixed one (option seed N).
    void randomize() override;
    long runpasses() override { return passes; }
    bool seeded = false;
    unsigned long long seed = 0;
    // Passes after which a statistical run stops itself (option passes N).
    long passes = 1;
    std::string date() override;
    bool openurl(const std::string& url) override;
    bool startprogram(const std::string& path) override;
    void printwindow(Window&) override {}
    void clipboardwindow(Window&) override {}
    void printersetup() override {}
    // SVG from the recording; PDF and PNG drawn by cairo.
    bool picture(Window& w, const std::string& format, std::string& bytes, std::string& why) override;
    std::string programdir() override { return programdir_; }
    std::string userdatadir() override { return userdatadir_; }

    // Gives a window that draws a recording surface of its size.
    RecordingSurface& surfacefor(Window& w);
    void loadsettings(const std::string& file);

    // Applies one action token to an open window (click, type, close, bare text).
    void apply(Window& w, const std::string& action);
    // Takes the answer for a window that opens, by the queue's rules; nullptr when the
    // queue holds none for it (`mayskip`: a box with only OK needs none).
    bool take(const std::string& window, QueuedAnswer& out, bool mayskip);

  private:
    std::map<Window*, std::unique_ptr<RecordingSurface>> surfaces_;
    std::mt19937_64 random_{1};
    void savesettingsfile();
    [[noreturn]] void unanswered(const std::string& window);
};

} // namespace zelk
