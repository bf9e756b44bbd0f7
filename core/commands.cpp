#include "core/commands.h"

#include <map>

#include "core/desktop.h"
#include "core/designstore.h"
#include "core/hostmath.h"
#include "shell/frame.h"

namespace zelk {

namespace {
std::vector<Command>& table() {
    static std::vector<Command> t;
    return t;
}
std::map<std::string, DumpHandler, std::less<>>& dumps() {
    static std::map<std::string, DumpHandler, std::less<>> d;
    return d;
}
std::map<std::string, ExportHandler, std::less<>>& exports() {
    static std::map<std::string, ExportHandler, std::less<>> e;
    return e;
}
} // namespace

bool registercommand(std::string name, void (*run)(), CommandKind kind) {
    for (Command& c : table())
        if (c.name == name) {
            c.run = run;
            c.kind = kind;
            return true;
        }
    table().push_back({std::move(name), run, kind});
    return true;
}

const Command* findcommand(std::string_view name) {
    for (const Command& c : table())
        if (c.name == name) return &c;
    return nullptr;
}

bool guarded(const std::function<void()>& fn, CommandKind kind) {
    // The store as the command found it, for the values a fault must not leave behind.
    const DesignStore before = store;
    try {
        fn();
        // A value that is no longer finite came from an operation the host would have
        // stopped with its overflow; the command ends as that fault would end it.
        if (!storefinite()) raisefault(6);
        return true;
    } catch (const RuntimeFault& f) {
        restorefinite(before);
        MsgBox("Run-time error '" + std::to_string(f.number) + "':\n\n" + f.description,
               vbOKOnly | vbCritical, "ZELK Filter Design");
        try {
            if (kind == CommandKind::Design) {
                newfilter_Click();
            } else if (kind == CommandKind::Edit && restoreafterfault) {
                restoreafterfault();
            }
        } catch (const RuntimeFault&) {
            // The recovery itself faulted: the store is left as it stands.
        }
        restorefinite(before);
        return false;
    }
}

bool runcommand(const Command& c) { return guarded(c.run, c.kind); }

std::vector<MenuItem>& menuitems() {
    static std::vector<MenuItem> m;
    return m;
}

MenuItem& addmenu(std::string name, std::string caption, std::string parent, bool popup) {
    if (MenuItem* m = findmenu(name)) return *m;
    MenuItem m;
    m.name = std::move(name);
    m.caption = std::move(caption);
    m.parent = std::move(parent);
    m.popup = popup;
    menuitems().push_back(std::move(m));
    return menuitems().back();
}

MenuItem* findmenu(std::string_view name) {
    for (MenuItem& m : menuitems())
        if (m.name == name) return &m;
    return nullptr;
}

bool menuchecked(std::string_view name) {
    MenuItem* m = findmenu(name);
    return m && m->checked;
}

bool menuenabled(std::string_view name) {
    MenuItem* m = findmenu(name);
    return m && m->enabled;
}

void setenabled(std::string_view name, bool on) {
    if (MenuItem* m = findmenu(name)) m->enabled = on;
}

void setchecked(std::string_view name, bool on) {
    if (MenuItem* m = findmenu(name)) m->checked = on;
}

std::string dumptext(const std::string& s) {
    std::string o = "\"";
    for (size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        if (c == '"') o += "\"\"";
        else if (c == '\r' && i + 1 < s.size() && s[i + 1] == '\n') continue;
        else if (c == '\n' || c == '\r') o += "\\n";
        else o += c;
    }
    return o + "\"";
}

bool registerdump(std::string what, DumpHandler h) {
    dumps()[std::move(what)] = h;
    return true;
}

DumpHandler finddump(std::string_view what) {
    auto it = dumps().find(what);
    return it == dumps().end() ? nullptr : it->second;
}

bool registerexport(std::string kind, ExportHandler h) {
    exports()[std::move(kind)] = h;
    return true;
}

ExportHandler findexport(std::string_view kind) {
    auto it = exports().find(kind);
    return it == exports().end() ? nullptr : it->second;
}

} // namespace zelk
