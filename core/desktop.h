// The Desktop port: everything the logic asks of the platform. The Qt application and
// the batch runner's scripted desktop each implement it.
#pragma once

#include <string>

#include "core/window.h"

namespace zelk {

// Message box buttons and icons, and the answers, numbered as the host numbers them.
inline constexpr int vbOKOnly = 0, vbOKCancel = 1, vbAbortRetryIgnore = 2, vbYesNoCancel = 3,
                     vbYesNo = 4, vbRetryCancel = 5;
inline constexpr int vbCritical = 16, vbQuestion = 32, vbExclamation = 48, vbInformation = 64;
inline constexpr int vbOK = 1, vbCancel = 2, vbAbort = 3, vbRetry = 4, vbIgnore = 5, vbYes = 6,
                     vbNo = 7;

// A common file dialog request; `filename` carries the default in and the choice out.
struct FileDialogRequest {
    bool save = false;
    std::string title;
    std::string initdir;  // folder the dialog starts in (a real path)
    std::string filename; // default name in, chosen path out
    std::string filter;   // "Filter Files (*.sch)|*.sch"
};

class Desktop {
  public:
    virtual ~Desktop() = default;

    // Shows a window modally: returns when the window is hidden or unloaded.
    virtual void showmodal(Window& w) = 0;
    // Shows a window without waiting (schematics, plots, palettes).
    virtual void show(Window& w) = 0;
    virtual void hide(Window& w) = 0;
    virtual void unload(Window& w) = 0;
    // The window's surface, caption, controls or overlay changed.
    virtual void refresh(Window&) {}
    // Pops up a menu of the menu model (its top item's name, "edit" or "design") at the
    // pointer.
    virtual void popupmenu(const std::string&) {}
    // Arranges the frame's child windows: 0 cascade, 1 tile horizontally, 2 tile
    // vertically, 3 arrange icons.
    virtual void arrange(int) {}

    // A message box. buttons + icon as the host combines them; returns the answer.
    virtual int msgbox(const std::string& text, int buttonsandicon, const std::string& title) = 0;
    // A common file dialog; false when the user cancelled.
    virtual bool filedialog(FileDialogRequest& request) = 0;
    // A file the user chose could not be read (a folder, no permission, gone): the file
    // command goes on silently as for any file that cannot be opened; a desktop with a
    // user in front of it says which file and why.
    virtual void filenotread(const std::string& path, const std::string& reason) {
        (void)path;
        (void)reason;
    }

    // The settings store (application, section, key).
    virtual std::string getsetting(const std::string& app, const std::string& section,
                                   const std::string& key, const std::string& def) = 0;
    virtual void savesetting(const std::string& app, const std::string& section,
                             const std::string& key, const std::string& value) = 0;

    // A random number uniform on [0, 1), and today's date as the host prints it.
    virtual double rnd() = 0;
    // Seeds the random source from the clock (a host may keep a fixed seed for tests).
    virtual void randomize() {}
    virtual std::string date() = 0;
    // Gives way to the event loop.
    virtual void doevents() {}
    // Gives way to the event loop with the user's input too, so that a click can stop a
    // long run; by default the same as doevents.
    virtual void yield() { doevents(); }
    // The passes after which a statistical run stops itself as a second click would
    // (a scripted host has no second click); 0 runs until stopped.
    virtual long runpasses() { return 0; }
    // Busy cursor on and off during a long sweep.
    virtual void busy(bool) {}

    // Opens a page or file through the platform's shell; false when it could not.
    virtual bool openurl(const std::string& url) = 0;
    // Starts an external program; false when it could not be started.
    virtual bool startprogram(const std::string& path) = 0;

    // Printing and the clipboard of a window's surface.
    virtual void printwindow(Window& w) = 0;
    virtual void clipboardwindow(Window& w) = 0;
    virtual void printersetup() = 0;
    // A window's surface as a picture file in memory: `format` "svg", "pdf" or "png".
    // Vector formats keep the lines and texts as such. False, with the reason in `why`,
    // when this desktop cannot make that format. The default makes SVG of a recording
    // surface only.
    virtual bool picture(Window& w, const std::string& format, std::string& bytes, std::string& why);

    // The folder that holds tables/ (programdir), and the user's writable folders.
    virtual std::string programdir() = 0;
    virtual std::string userdatadir() = 0;
};

// The desktop in use; set by the binding at start.
Desktop& desktop();
void setdesktop(Desktop* d);

// Shorthand for a message box.
inline int MsgBox(const std::string& text, int buttonsandicon = vbOKOnly,
                  const std::string& title = "ZELK Filter Design") {
    return desktop().msgbox(text, buttonsandicon, title);
}

} // namespace zelk
