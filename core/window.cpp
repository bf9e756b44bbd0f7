#include "core/window.h"

#include <algorithm>

#include "core/desktop.h"
#include "core/hostmath.h"

namespace zelk {

std::vector<Window*>& windows() {
    static std::vector<Window*> w;
    return w;
}

Window* findwindow(std::string_view formname) {
    for (Window* w : windows())
        if (w->formname == formname) return w;
    return nullptr;
}

Window::Window(std::string name, std::string cap) : formname(std::move(name)), caption(std::move(cap)) {
    windows().push_back(this);
}

Window::~Window() {
    auto& w = windows();
    w.erase(std::remove(w.begin(), w.end(), this), w.end());
}

Control& Window::add(ControlKind kind, std::string name, int index, std::string cap) {
    auto c = std::make_unique<Control>();
    c->kind = kind;
    c->name = std::move(name);
    c->index = index;
    c->caption = std::move(cap);
    controls.push_back(std::move(c));
    return *controls.back();
}

Control* Window::find(std::string_view name, int index) {
    for (auto& c : controls)
        if (c->name == name && c->index == index) return c.get();
    return nullptr;
}

const Control* Window::find(std::string_view name, int index) const {
    for (auto& c : controls)
        if (c->name == name && c->index == index) return c.get();
    return nullptr;
}

Control& Window::ctl(std::string_view name, int index) {
    if (Control* c = find(name, index)) return *c;
    raisefault(9);
}

Control* Window::findcaption(std::string_view cap) {
    for (auto& c : controls)
        if (c->caption == cap) return c.get();
    return nullptr;
}

bool Window::click(std::string_view name, int index) {
    Control* c = find(name, index);
    if (!c) return false;
    if (c->kind == ControlKind::Check) c->value = c->value ? 0 : 1;
    if (c->kind == ControlKind::Option) c->value = 1;
    if (c->onclick) c->onclick(index);
    return true;
}

bool Window::dblclick(std::string_view name, int index) {
    Control* c = find(name, index);
    if (!c) return false;
    if (c->ondblclick) c->ondblclick(index);
    return true;
}

bool Window::settext(std::string_view name, int index, const std::string& text) {
    Control* c = find(name, index);
    if (!c) return false;
    if (focusname != name || focusindex != index) focus(name, index);
    c->text = text;
    c->selstart = static_cast<int>(text.size());
    c->sellength = 0;
    if (c->onchange) c->onchange(index);
    return true;
}

bool Window::selectitem(std::string_view name, int index, int item) {
    Control* c = find(name, index);
    if (!c || item < -1 || item >= static_cast<int>(c->items.size())) return false;
    c->listindex = item;
    if (c->onclick) c->onclick(index);
    return true;
}

int Window::finditem(std::string_view name, int index, std::string_view text) const {
    const Control* c = find(name, index);
    if (!c) return -1;
    auto trim = [](std::string_view t) {
        while (!t.empty() && (t.front() == ' ' || t.front() == '\t')) t.remove_prefix(1);
        while (!t.empty() && (t.back() == ' ' || t.back() == '\t')) t.remove_suffix(1);
        return t;
    };
    for (size_t i = 0; i < c->items.size(); ++i)
        if (trim(c->items[i]) == trim(text)) return static_cast<int>(i);
    return -1;
}

bool Window::focus(std::string_view name, int index) {
    Control* c = find(name, index);
    if (!c) return false;
    focusname = std::string(name);
    focusindex = index;
    if (c->ongotfocus) c->ongotfocus(index);
    return true;
}

bool Window::mouse(std::string_view name, int index, int kind, int button, int shift, double x,
                   double y) {
    Control* c = find(name, index);
    if (!c) return false;
    // The pointer is always somewhere on the window: a position that is not a number is
    // no event, and one beyond the edges is taken at the nearest edge, so that the
    // handlers' arithmetic (a plot's frequency at the pointer) stays finite.
    if (!std::isfinite(x) || !std::isfinite(y)) return true;
    x = std::clamp(x, 0.0, std::max(clientwidth, 0.0));
    y = std::clamp(y, 0.0, std::max(clientheight, 0.0));
    auto& h = kind == 0 ? c->onmousedown : kind == 1 ? c->onmousemove : c->onmouseup;
    if (h) h(index, button, shift, x, y);
    return true;
}

void Window::showmodal() {
    loaded = true;
    visible = true;
    modal = true;
    desktop().showmodal(*this);
    modal = false;
}

void Window::show() {
    loaded = true;
    visible = true;
    desktop().show(*this);
}

void Window::hide() {
    if (visible) deactivate();
    visible = false;
    desktop().hide(*this);
}

void Window::unload() {
    bool was = loaded;
    if (visible) deactivate();
    visible = false;
    loaded = false;
    if (was) desktop().unload(*this);
}

void Window::refresh() { desktop().refresh(*this); }

} // namespace zelk
