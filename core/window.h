// Windows as logic objects: a window is the state of its controls (captions, texts,
// enabled, visible, checked, tool tips) and one function per event. It knows nothing of
// widgets: the desktop binding mirrors the controls into widgets and routes widget
// events to the handlers, and the scripted desktop of the batch runner replays queued
// actions into the same handlers.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zelk {

class Surface;

enum class ControlKind { Button, Label, Text, Picture, Check, Option, List, Frame, Scroll };

struct Control {
    std::string name;
    int index = -1; // element of a control array, or -1
    ControlKind kind = ControlKind::Button;
    std::string caption; // buttons, labels, check boxes, frames
    std::string text;    // text boxes
    std::string tooltip;
    bool enabled = true;
    bool visible = true;
    int value = 0;                  // check boxes, option buttons, scroll bars
    int selstart = 0, sellength = 0; // text boxes
    std::vector<std::string> items; // list boxes
    int listindex = -1;
    // Placement hint for the desktop binding, in the window's own units (0 = free).
    double left = 0, top = 0, width = 0, height = 0;

    // Event handlers; an empty handler ignores the event.
    std::function<void(int index)> onclick;
    std::function<void(int index)> ondblclick;
    std::function<void(int index)> onchange;   // text typed or set
    std::function<void(int index)> ongotfocus;
    std::function<void(int index, int button, int shift, double x, double y)> onmousedown,
        onmousemove, onmouseup;
};

class Window {
  public:
    // Every window registers itself by its form name for the desktop bindings.
    Window(std::string formname, std::string caption);
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    const std::string formname;
    std::string caption;
    bool loaded = false;
    bool visible = false;
    bool modal = false;
    // Client size in the window's own units (pixels, or twips for plots).
    double clientwidth = 0, clientheight = 0;
    // Surface units per pixel: 1 for pixels, 15 for twips.
    double unit = 1;
    // True for a window that draws on a surface of its own (schematic, plots, pictures).
    bool draws = false;
    double left = 0, top = 0;
    // The drawing surface of a window that draws; set by the binding.
    Surface* surface = nullptr;
    // A line drawn over the surface but not part of it (a plot's cursor bar): the binding
    // draws it on the screen; it is never printed, copied or exported.
    struct Overlay {
        bool on = false;
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        long colour = 255;
    } overlay;
    std::vector<std::unique_ptr<Control>> controls;
    // The control that has the focus (name and index), as the window sees it.
    std::string focusname;
    int focusindex = -1;

    Control& add(ControlKind kind, std::string name, int index = -1, std::string caption = {});
    Control* find(std::string_view name, int index = -1);
    const Control* find(std::string_view name, int index = -1) const;
    // A control by name; a name the window lacks is a programming fault.
    Control& ctl(std::string_view name, int index = -1);
    // A control by its caption (buttons named by caption in scripts).
    Control* findcaption(std::string_view caption);

    // Events, as the user makes them. Each returns false when the control is unknown.
    bool click(std::string_view name, int index = -1);
    bool dblclick(std::string_view name, int index = -1);
    bool settext(std::string_view name, int index, const std::string& text);
    // A list box: selects row `item` (-1 none) and fires the click, as a click on the row.
    bool selectitem(std::string_view name, int index, int item);
    // A list box: the first row whose text, blanks trimmed at both ends, is `text`; -1 when
    // none is.
    int finditem(std::string_view name, int index, std::string_view text) const;
    bool focus(std::string_view name, int index = -1);
    bool mouse(std::string_view name, int index, int kind, int button, int shift, double x,
               double y); // kind 0 down, 1 move, 2 up

    // The close box: by default the window unloads.
    virtual void closebox() { unload(); }
    // Shown and hidden by the window's own logic.
    virtual void activate() {}
    virtual void deactivate() {}
    virtual void resized() {}
    // Rebuilds the controls to their state at program start.
    virtual void reset() {}

    // Show and hide through the desktop.
    void showmodal();
    void show();
    void hide();
    void unload();
    // The surface has new content; the binding repaints it.
    void refresh();
};

// Every window of the program, by form name.
std::vector<Window*>& windows();
Window* findwindow(std::string_view formname);

} // namespace zelk
